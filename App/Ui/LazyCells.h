// The cells of a long list, of which only those in sight have a widget. It stays with what it shows
// however the list changes, so that neither the keyboard nor a finger on it finds something else.
#pragma once

#include <QStringList>
#include <QWidget>

class LazyCells : public QWidget {
    Q_OBJECT

public:
    LazyCells();
    ~LazyCells() override;

    qsizetype count() const { return m_cells.size(); }
    const QList<QWidget*>& cells() const { return m_cells; } // Null where one has no widget.
    QWidget& cell(qsizetype index); // Made where there is none.
    qsizetype current() const; // The one with the keyboard; -1 without.

    void focusCell(qsizetype index, Qt::FocusReason reason); // One that has a control.

Q_SIGNALS:
    // The keyboard has come to this place.
    void reached(const QRect& cell);

protected:
    // What is in the list, by a key that lasts: adopted once everything below tells of it.
    void setKeys(const QStringList& keys);

    virtual QWidget* makeCell() = 0; // As a child.
    virtual void fillCell(QWidget& cell, qsizetype index) = 0;
    virtual QRect placeOf(qsizetype index) const = 0;
    virtual bool hasControl(qsizetype index) const = 0;
    // Of a cell that has been filled: what takes the keyboard in it, maybe the cell itself.
    virtual QWidget* controlOf(QWidget& cell) const = 0;

    bool focusNextPrevChild(bool next) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* viewport, QEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QList<QWidget*> cellsFor(const QStringList& keys);
    void fillAll();
    bool isNeeded(qsizetype index) const;
    void showWhatIsNeeded();
    void orderControls();
    void tellWhere(const QWidget* focused);

    QStringList m_keys;
    QList<QWidget*> m_cells; // One a key.
    // The keyboard comes in at these.
    qsizetype m_first = -1;
    qsizetype m_last = -1;
};
