#include "App/Meetings/NextMeetingCard.h"

#include "App/Ui/Accessibility.h"
#include "App/Ui/Button.h"
#include "App/Ui/Label.h"
#include "App/Ui/PixelGrid.h"
#include "App/Ui/Surface.h"
#include "App/Ui/Theme.h"

#include <QAccessibleWidget>
#include <QPainter>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace {

constexpr int padding = 10;
constexpr int lineGap = 2;
constexpr int buttonGap = 8;
constexpr int radius = 8;

}

NextMeetingCard::NextMeetingCard(QWidget* parent)
    : ArrangedWidget(parent)
    , m_title(new Label(TextRole::headline, &Colors::text, this))
    , m_time(new Label(TextRole::caption, &Colors::secondary, this))
    , m_join(new Button(Button::Kind::prominent, {}, this))
{
    Accessibility::describe(staticMetaObject,
        [](QWidget* widget) { return new QAccessibleWidget(widget, QAccessible::Grouping); });
    setAccessibleName(u"Next meeting"_s);
    m_title->setElided(true);
    m_time->setElided(true);
    m_title->setObjectName(u"nextTitle"_s);
    m_time->setObjectName(u"nextTime"_s);
    m_join->setObjectName(u"join"_s);
    connect(m_join, &Button::clicked, this, [this] { Q_EMIT joined(*m_card.link); });
}

QSize NextMeetingCard::sizeHint() const
{
    const int lines
        = Theme::lineHeight(TextRole::headline) + lineGap + Theme::lineHeight(TextRole::caption);
    return { 0, lines + 2 * padding };
}

void NextMeetingCard::setCard(const MeetingCard& card)
{
    m_card = card;
    m_title->setText(card.title);
    m_time->setText(card.time);
    m_join->setText(card.join);
    // The keyboard would go on to another meeting.
    if (!card.link && m_join->hasFocus())
        setFocus();
    m_join->setVisible(card.link.has_value());
    arrange();
}

void NextMeetingCard::arrange()
{
    const auto inside = rect().adjusted(padding, padding, -padding, -padding);
    const auto mirrored
        = [&](const QRect& part) { return QStyle::visualRect(layoutDirection(), inside, part); };
    QRect words = inside;
    if (m_card.link) {
        QRect button({}, m_join->boxSize());
        button.moveCenter(inside.center());
        button.moveRight(inside.right());
        m_join->placeBox(mirrored(button));
        words.setRight(button.left() - 1 - buttonGap);
    }
    words.setHeight(Theme::lineHeight(TextRole::headline));
    m_title->setGeometry(mirrored(words));
    words.moveTop(words.bottom() + 1 + lineGap);
    words.setHeight(Theme::lineHeight(TextRole::caption));
    m_time->setGeometry(mirrored(words));
}

void NextMeetingCard::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    Surface::fill(
        painter, PixelGrid::snapped(painter, rect()), radius, Theme::current().colors.card);
}
