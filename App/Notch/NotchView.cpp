#include "App/Notch/NotchView.h"

#include "App/Focus/PomodoroModel.h"
#include "App/Meetings/CalendarModel.h"
#include "App/Meetings/MeetingTimes.h"
#include "App/Notch/NotchController.h"
#include "App/Notch/NotchState.h"
#include "App/Ui/Accessibility.h"
#include "App/Ui/Corners.h"
#include "App/Ui/DigitText.h"
#include "App/Ui/PixelGrid.h"
#include "App/Ui/Symbols.h"
#include "App/Ui/TextLine.h"
#include "App/Ui/Theme.h"

#include <QAccessibleWidget>
#include <QBitmap>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int topPadding = 4;
constexpr int radius = 16;
constexpr int headerHeight = 22;
constexpr int spacing = 6;
constexpr int rowHeight = 16;
constexpr int rowSpacing = 3;
constexpr int detailHeight = 2 * rowHeight + rowSpacing;
constexpr int sidePadding = 16;
constexpr int symbolColumn = 12;
constexpr int symbolSide = 13;
constexpr int dotSide = 7;
constexpr qreal symbolStrength = 0.6;
constexpr qreal wordsStrength = 0.9;

// The time is in the description, which is looked up when somebody asks.
class AccessibleNotch final : public QAccessibleWidget {
public:
    explicit AccessibleNotch(NotchView* view)
        : QAccessibleWidget(view, QAccessible::Pane)
    {
    }

    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Description)
            return spoken(view()->content());
        return QAccessibleWidget::text(kind);
    }

    QAccessible::State state() const override
    {
        auto state = QAccessibleWidget::state();
        state.expandable = true;
        state.expanded = view()->isExpanded();
        return state;
    }

private:
    const NotchView* view() const { return static_cast<const NotchView*>(object()); }
};

QColor colorOf(NotchContent::Dot dot)
{
    switch (dot) {
    case NotchContent::Dot::stopped:
        return 0x8E8E93;
    case NotchContent::Dot::focus:
        return 0xFF5A4F;
    case NotchContent::Dot::rest:
        return 0x3BC463;
    }
    Q_UNREACHABLE();
}

QColor white(qreal strength)
{
    QColor color(Qt::white);
    color.setAlphaF(float(strength));
    return color;
}

}

NotchView::NotchView(NotchState& state, PomodoroModel& timer, CalendarModel& calendar,
    std::function<void(bool inside)> onHover)
    : m_state(state)
    , m_timer(timer)
    , m_calendar(calendar)
    , m_onHover(std::move(onHover))
    , m_tab(NotchController::collapsed)
{
    setAttribute(Qt::WA_TranslucentBackground);
    Accessibility::describe(staticMetaObject,
        [](QWidget* widget) { return new AccessibleNotch(static_cast<NotchView*>(widget)); });
    setAccessibleName(u"Notch widget"_s);
    refresh();
    for (Model* const model : { static_cast<Model*>(&m_timer), static_cast<Model*>(&m_calendar) })
        model->observe(this, [this] { refresh(); });
    state.observe(this, [this] { Accessibility::tellExpanded(this); });
}

void NotchView::refresh()
{
    const auto content = notchContent(m_timer, m_calendar, MeetingTimes(m_calendar.zone()));
    const auto before = std::exchange(m_content, content);
    if (content.dot != before.dot || content.title != before.title)
        update(headerBox());
    if (content.task != before.task)
        update(rowBox(0));
    if (content.meeting != before.meeting)
        update(rowBox(1));
    // The time alone would be read out each second.
    if (content.dot != before.dot || content.task != before.task
        || content.meeting != before.meeting)
        Accessibility::tellDescription(this);
}

bool NotchView::isExpanded() const
{
    return m_state.expanded();
}

QRegion NotchView::shape() const
{
    QBitmap covered(size()); // Closer to what is painted than a region made of a polygon.
    covered.clear();
    QPainter(&covered).fillPath(Corners::continuous(tabBox(), 0, radius), Qt::color1);
    return { covered };
}

QSize NotchView::sizeHint() const
{
    return NotchController::expandedSize;
}

void NotchView::setTab(const QSize& size)
{
    if (m_tab == size)
        return;
    m_tab = size;
    update();
}

QRect NotchView::tabBox() const
{
    return { { (width() - m_tab.width()) / 2, 0 }, m_tab };
}

// From 0, collapsed, to 1.
qreal NotchView::detailStrength() const
{
    constexpr qreal least = NotchController::collapsed.height();
    constexpr qreal most = NotchController::expandedSize.height();
    return std::clamp((m_tab.height() - least) / (most - least), qreal(0), qreal(1));
}

// In the middle of what is below the padding, with the details as far as they are out.
QRect NotchView::headerBox() const
{
    const qreal strength = detailStrength();
    const qreal taken = headerHeight + strength * (spacing + detailHeight);
    const int top = topPadding + int((m_tab.height() - topPadding - taken) / 2);
    return { tabBox().left(), top, m_tab.width(), headerHeight };
}

QRect NotchView::rowBox(int index) const
{
    const int top = headerBox().bottom() + 1 + spacing + index * (rowHeight + rowSpacing);
    return { tabBox().left() + sidePadding, top, m_tab.width() - 2 * sidePadding, rowHeight };
}

void NotchView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto tab = Corners::continuous(tabBox(), 0, radius);
    painter.fillPath(tab, Qt::black);
    paintHeader(painter);
    if (detailStrength() == 0)
        return;
    painter.setOpacity(detailStrength());
    paintRow(painter, rowBox(0), u"target"_s, m_content.task);
    paintRow(painter, rowBox(1), u"calendar"_s, m_content.meeting);
}

void NotchView::paintHeader(QPainter& painter) const
{
    const DigitText title(Theme::current().font(TextRole::statusTitle));
    const auto box = headerBox();
    const qreal words = title.width(m_content.title);
    const qreal left = box.left() + std::round((box.width() - dotSide - spacing - words) / 2);
    const QRectF dot(left, box.top() + (box.height() - dotSide) / 2.0, dotSide, dotSide);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colorOf(m_content.dot));
    painter.drawEllipse(PixelGrid::snapped(painter, dot));
    title.paint(painter, QRectF(dot.right() + spacing, box.top(), words, box.height()),
        m_content.title, Qt::white);
}

void NotchView::paintRow(
    QPainter& painter, const QRect& line, const QString& symbol, const QString& text) const
{
    const auto mirrored
        = [&](const QRect& part) { return QStyle::visualRect(layoutDirection(), line, part); };
    const auto column = mirrored({ line.left(), line.top(), symbolColumn, line.height() });
    Symbols::paint(painter, symbol, Symbols::centered(symbolSide, column), white(symbolStrength));
    const auto words = mirrored(line.adjusted(symbolColumn + spacing, 0, 0, 0));
    painter.setLayoutDirection(layoutDirection());
    TextLine::paint(painter, words, Qt::AlignLeading, text,
        Theme::current().font(TextRole::widgetRow), white(wordsStrength));
}

void NotchView::enterEvent(QEnterEvent*)
{
    if (isVisible())
        m_onHover(true);
}

void NotchView::leaveEvent(QEvent*)
{
    if (isVisible()) // Also after the widget was switched off, while this is being put away.
        m_onHover(false);
}
