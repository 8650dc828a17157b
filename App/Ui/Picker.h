// A button that shows the chosen one of several titles and offers all of them in a menu.
#pragma once

#include <QAbstractButton>
#include <QMenu>

class Interaction;

class Picker final : public QAbstractButton {
    Q_OBJECT

public:
    // The name is not shown; it is what assistive technology says.
    explicit Picker(const QString& name, QWidget* parent = nullptr);

    int current() const { return m_current; } // -1: none.
    QRect box() const; // In the picker's own coordinates.
    QSize sizeHint() const override;

    void setTitles(const QStringList& titles);
    void setCurrent(int index); // Silent; -1 for none.
    void setPlaceholder(const QString& text); // Shown where nothing is chosen.

    void placeBox(const QRect& box); // In the parent's coordinates.

Q_SIGNALS:
    void chosen(int index); // By the user.

protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void openMenu();
    void fillMenu();
    void choose(int index);
    void showTitle();
    QColor fillColor() const;

    Interaction* m_interaction;
    QMenu m_menu;
    QStringList m_titles;
    QString m_placeholder;
    int m_current = -1;
};
