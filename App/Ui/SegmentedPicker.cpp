#include "App/Ui/SegmentedPicker.h"

#include "App/Ui/Accessibility.h"
#include "App/Ui/ControlBox.h"
#include "App/Ui/Interaction.h"
#include "App/Ui/Segment.h"
#include "App/Ui/Surface.h"
#include "App/Ui/Theme.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

namespace {

constexpr int boxHeight = 24;
constexpr int inset = 2;
constexpr int separatorHeight = 14;
constexpr qreal radius = 6;

}

SegmentedPicker::SegmentedPicker(const QString& name, const QStringList& titles, QWidget* parent)
    : QWidget(parent)
    , m_interaction(new Interaction(this))
{
    Accessibility::install();
    setAccessibleName(name);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    for (const QString& title : titles) {
        auto* segment = new Segment(title, this);
        const int index = int(m_segments.size());
        connect(segment, &Segment::clicked, this, [this, index] { Q_EMIT chosen(index); });
        // The separators beside it come and go.
        connect(segment, &Segment::toggled, this, qOverload<>(&QWidget::update));
        m_segments << segment;
    }
    setCurrent(0);
}

int SegmentedPicker::current() const
{
    for (int index = 0; index < m_segments.size(); ++index) {
        if (m_segments[index]->isChecked())
            return index;
    }
    return -1;
}

QRect SegmentedPicker::box() const
{
    return ControlBox::of(*this);
}

QSize SegmentedPicker::sizeHint() const
{
    int widest = 0;
    for (const Segment* segment : m_segments)
        widest = qMax(widest, segment->sizeHint().width());
    return ControlBox::outer({ widest * int(m_segments.size()) + 2 * inset, boxHeight });
}

void SegmentedPicker::setCurrent(int index)
{
    if (index >= 0 && index < m_segments.size())
        m_segments[index]->setChecked(true);
}

void SegmentedPicker::placeBox(const QRect& box)
{
    ControlBox::place(*this, box);
}

void SegmentedPicker::paintEvent(QPaintEvent*)
{
    const Colors& c = Theme::current().colors;
    QPainter painter(this);
    Surface::fill(painter, box(), radius, isEnabled() ? c.segmentedTrack : c.disabledFill);
    const int top = box().y() + (box().height() - separatorHeight) / 2;
    for (int index = 1; index < m_segments.size(); ++index) {
        const Segment* before = m_segments[index - 1];
        const Segment* after = m_segments[index];
        if (before->isChecked() || after->isChecked())
            continue;
        const int x = qMax(before->x(), after->x());
        const qreal width = 1 / devicePixelRatioF();
        painter.fillRect(QRectF(x, top, width, separatorHeight), c.separator);
    }
    if (m_interaction->showsFocus())
        Surface::focusRing(painter, box(), radius);
}

void SegmentedPicker::resizeEvent(QResizeEvent*)
{
    layOut();
}

void SegmentedPicker::keyPressEvent(QKeyEvent* event)
{
    const int along = layoutDirection() == Qt::RightToLeft ? -1 : 1;
    switch (event->key()) {
    case Qt::Key_Left:
        return choose(current() - along);
    case Qt::Key_Right:
        return choose(current() + along);
    case Qt::Key_Up:
        return choose(current() - 1);
    case Qt::Key_Down:
        return choose(current() + 1);
    case Qt::Key_Home:
        return choose(0);
    case Qt::Key_End:
        return choose(int(m_segments.size()) - 1);
    default:
        QWidget::keyPressEvent(event);
    }
}

void SegmentedPicker::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange)
        layOut();
}

void SegmentedPicker::layOut()
{
    const QRect track = box().adjusted(inset, 0, -inset, 0);
    const int count = int(m_segments.size());
    for (int index = 0; index < count; ++index) {
        const int start = track.width() * index / count;
        const int end = track.width() * (index + 1) / count;
        const QRect cell(track.x() + start, track.y(), end - start, track.height());
        m_segments[index]->setGeometry(QStyle::visualRect(layoutDirection(), track, cell));
    }
}

void SegmentedPicker::choose(int index)
{
    if (index >= 0 && index < m_segments.size() && index != current())
        m_segments[index]->click();
}
