// A row of segments of which exactly one is chosen. One stop of the keyboard: arrows choose.
#pragma once

#include <QList>
#include <QWidget>

class Interaction;
class Segment;

class SegmentedPicker final : public QWidget {
    Q_OBJECT

public:
    // The name is not shown; it is what assistive technology says.
    SegmentedPicker(const QString& name, const QStringList& titles, QWidget* parent = nullptr);

    int current() const; // 0 is the leading segment.
    QRect box() const; // In the picker's own coordinates.
    QSize sizeHint() const override;

    void setCurrent(int index); // Silent.

    void placeBox(const QRect& box); // In the parent's coordinates.

Q_SIGNALS:
    void chosen(int index); // By the user.

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void layOut();
    void choose(int index);

    Interaction* m_interaction;
    QList<Segment*> m_segments;
};
