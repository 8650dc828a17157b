#include "App/Notch/NotchView.h"

#include "App/Focus/PomodoroModel.h"
#include "App/Meetings/CalendarModel.h"
#include "App/Meetings/MeetingTimes.h"
#include "App/Notch/NotchController.h"
#include "App/Ui/Corners.h"
#include "App/Ui/DigitText.h"
#include "App/Ui/Symbols.h"
#include "App/Ui/TextLine.h"
#include "App/Ui/Theme.h"

#include <QPainter>
#include <QPainterPath>

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

NotchView::NotchView(const NotchState& state, PomodoroModel& timer, CalendarModel& calendar,
    std::function<void(bool inside)> onHover)
    : m_state(state)
    , m_timer(timer)
    , m_calendar(calendar)
    , m_onHover(std::move(onHover))
    , m_tab(NotchController::collapsed)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setAccessibleName(u"Corvella"_s);
    refresh();
    for (Model* const model : { static_cast<Model*>(&m_timer), static_cast<Model*>(&m_calendar) })
        model->observe(this, [this] { refresh(); });
}

void NotchView::refresh()
{
    const auto content = notchContent(m_timer, m_calendar, MeetingTimes(m_calendar.zone()));
    if (content == m_content)
        return;
    const bool isHeaderOnly
        = content.task == m_content.task && content.meeting == m_content.meeting;
    m_content = content;
    if (isHeaderOnly || detailStrength() == 0)
        update(headerBox());
    else
        update(tabBox());
}

QRegion NotchView::shape() const
{
    const auto path = Corners::continuous(tabBox(), 0, radius);
    return { path.toFillPolygon().toPolygon() };
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
    QRect line(tabBox().left() + sidePadding, headerBox().bottom() + 1 + spacing,
        m_tab.width() - 2 * sidePadding, rowHeight);
    paintRow(painter, line, u"target"_s, m_content.task);
    line.translate(0, rowHeight + rowSpacing);
    paintRow(painter, line, u"calendar"_s, m_content.meeting);
}

void NotchView::paintHeader(QPainter& painter) const
{
    const DigitText title(Theme::current().font(TextRole::statusTitle));
    const auto box = headerBox();
    const qreal words = title.width(m_content.title);
    const qreal left = box.left() + std::round((box.width() - dotSide - spacing - words) / 2);
    const QRectF dot(left, box.center().y() + 0.5 - dotSide / 2.0, dotSide, dotSide);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colorOf(m_content.dot));
    painter.drawEllipse(dot);
    title.paint(painter, QRectF(dot.right() + spacing, box.top(), words, box.height()),
        m_content.title, Qt::white);
}

void NotchView::paintRow(
    QPainter& painter, const QRect& line, const QString& symbol, const QString& text) const
{
    const QRect column(line.left(), line.top(), symbolColumn, line.height());
    Symbols::paint(painter, symbol, Symbols::centered(symbolSide, column), white(symbolStrength));
    TextLine::paint(painter, line.adjusted(symbolColumn + spacing, 0, 0, 0), Qt::AlignLeft, text,
        Theme::current().font(TextRole::widgetRow), white(wordsStrength));
}

void NotchView::enterEvent(QEnterEvent*)
{
    m_onHover(true);
}

void NotchView::leaveEvent(QEvent*)
{
    m_onHover(false);
}
