#include "App/Meetings/EventRow.h"

#include "App/Ui/Accessibility.h"
#include "App/Ui/Button.h"
#include "App/Ui/PixelGrid.h"
#include "App/Ui/TextLine.h"
#include "App/Ui/Theme.h"

#include <QAccessibleWidget>
#include <QPainter>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace {

constexpr int contentHeight = 32;
constexpr int lineGap = 2;
constexpr int buttonGap = 8;
constexpr qreal overStrength = 0.45;

}

EventRow::EventRow(int padding, QWidget* parent)
    : ArrangedWidget(parent)
    , m_padding(padding)
{
    Accessibility::describe(staticMetaObject,
        [](QWidget* widget) { return new QAccessibleWidget(widget, QAccessible::ListItem); });
}

void EventRow::setLine(const MeetingLine& line)
{
    if (m_line == line)
        return;
    m_line = line;
    setAccessibleName(said());
    adaptButton();
    update();
}

QString EventRow::said() const
{
    const auto words = m_line.title + u", "_s + m_line.time;
    if (m_line.isOver)
        return words + u", over"_s;
    return m_line.isNext ? words + u", next"_s : words;
}

qreal EventRow::strength() const
{
    return m_line.isOver ? overStrength : 1;
}

// Most rows of a day have no link, and a button costs more than all else of them.
void EventRow::adaptButton()
{
    if (m_line.link && !m_join) {
        m_join = new Button(Button::Kind::small, {}, this);
        connect(m_join, &Button::clicked, this, [this] { Q_EMIT joined(*m_line.link); });
        m_join->show();
    } else if (!m_line.link) {
        dropButton();
    }
    if (!m_join)
        return;
    m_join->setText(m_line.service);
    m_join->setAccessibleDescription(u"Join "_s + m_line.title);
    m_join->setStrength(strength());
    arrange();
}

void EventRow::dropButton()
{
    // The keyboard would go on to another meeting.
    if (m_join && m_join->hasFocus())
        setFocus();
    delete m_join;
    m_join = nullptr;
}

void EventRow::arrange()
{
    if (!m_join)
        return;
    const auto size = m_join->boxSize();
    const QRect box(
        QPoint(width() - m_padding - size.width(), (contentHeight - size.height()) / 2), size);
    m_join->placeBox(QStyle::visualRect(layoutDirection(), rect(), box));
}

void EventRow::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const auto& theme = Theme::current();
    const auto mirrored
        = [this](const QRect& part) { return QStyle::visualRect(layoutDirection(), rect(), part); };
    const QRect inside(m_padding, 0, width() - 2 * m_padding, height);
    const QRectF under(inside.left(), height - 1, inside.width(), 1 / devicePixelRatioF());
    painter.fillRect(PixelGrid::snapped(painter, under), theme.colors.divider);

    const int taken = m_join ? m_join->boxSize().width() + buttonGap : 0;
    QRect words(inside.left(), 0, inside.width() - taken, Theme::lineHeight(TextRole::body));
    painter.setOpacity(strength());
    TextLine::paint(painter, mirrored(words), Qt::AlignLeading, m_line.title,
        theme.font(TextRole::body), theme.colors.text);
    words.moveTop(words.bottom() + 1 + lineGap);
    words.setHeight(Theme::lineHeight(TextRole::caption));
    TextLine::paint(painter, mirrored(words), Qt::AlignLeading, m_line.time,
        theme.font(TextRole::caption), theme.colors.secondary);
}
