#include "App/Meetings/MeetingsView.h"

#include "App/Meetings/AccessPrompt.h"
#include "App/Meetings/CalendarModel.h"
#include "App/Meetings/EventList.h"
#include "App/Meetings/MeetingTimes.h"
#include "App/Meetings/MeetingsContent.h"
#include "App/Meetings/Microphone.h"
#include "App/Meetings/NextMeetingCard.h"
#include "App/Platform/AddressOpener.h"
#include "App/Ui/Accessibility.h"
#include "App/Ui/Button.h"
#include "App/Ui/Label.h"
#include "App/Ui/ScrollArea.h"
#include "App/Ui/Theme.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QKeyEvent>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace {

constexpr int padding = 14;
constexpr int spacing = 10;
constexpr int noteGap = 8;
constexpr int aboveNoEvents = 20;
const auto settingsAddress
    = u"x-apple.systempreferences:com.apple.preference.security?Privacy_Calendars"_s;

}

MeetingsView::MeetingsView(
    CalendarModel& model, AudioInput& input, UserDefaults& defaults, AddressOpener& opener)
    : m_model(model)
    , m_input(input)
    , m_defaults(defaults)
    , m_opener(opener)
{
    build();
    nameParts();
    connectControls();
    refresh();
    refreshMute();
    // Nobody sees the minutes pass over a closed popover.
    m_model.observe(this, [this] {
        if (isVisible())
            refresh();
    });
}

void MeetingsView::build()
{
    m_mute = new Button(Button::Kind::normal, {}, this);
    m_note = new Label(TextRole::caption, &Colors::secondary, this);
    m_note->setElided(true);
    m_note->setText(u"Input can't be muted"_s);
    m_card = new NextMeetingCard(this);
    m_heading = new Label(TextRole::captionHeading, &Colors::secondary, this);
    m_heading->setElided(true);
    m_heading->setText(u"Today"_s);
    m_denied = new AccessPrompt(u"Calendar access is off. Allow it in System Settings → Privacy & "
                                "Security → Calendars."_s,
        u"Open Settings"_s, this);
    m_notAsked = new AccessPrompt(u"Corvella shows today's events and finds meeting links."_s,
        u"Allow calendar access"_s, this);
    m_noEvents = new Label(TextRole::body, &Colors::secondary, this);
    m_noEvents->setText(u"No events today."_s);
    m_noEvents->setAlignment(Qt::AlignCenter);
    m_list = new EventList(padding);
    m_scroll = new ScrollArea(this);
    m_scroll->setWidget(m_list);
    m_list->setAutoFillBackground(false); // The ground is the window's.
}

void MeetingsView::nameParts()
{
    m_mute->setObjectName(u"mute"_s);
    m_note->setObjectName(u"note"_s);
    m_card->setObjectName(u"card"_s);
    m_heading->setObjectName(u"heading"_s);
    m_denied->setObjectName(u"denied"_s);
    m_notAsked->setObjectName(u"notAsked"_s);
    m_noEvents->setObjectName(u"noEvents"_s);
    m_scroll->setObjectName(u"scroll"_s);
    setAccessibleName(u"Meetings"_s);
    Accessibility::describe(staticMetaObject,
        [](QWidget* widget) { return new QAccessibleWidget(widget, QAccessible::Grouping); });
}

void MeetingsView::connectControls()
{
    const auto open = [this](const QString& address) { m_opener.open(address); };
    connect(m_mute, &Button::clicked, this, &MeetingsView::toggleMute);
    m_askAgain.setSingleShot(true);
    connect(&m_askAgain, &QTimer::timeout, this, &MeetingsView::readMute);
    connect(m_card, &NextMeetingCard::joined, this, open);
    connect(m_list, &EventList::joined, this, open);
    connect(&m_notAsked->button(), &Button::clicked, &m_model, &CalendarModel::requestAccess);
    connect(&m_denied->button(), &Button::clicked, this, [=] { open(settingsAddress); });
    connect(m_list, &EventList::reached, m_scroll, &ScrollArea::bringIntoSight);
}

void MeetingsView::showEvent(QShowEvent*)
{
    readMute();
    // The first answer of a session may take the sound server longer than we wait.
    if (!m_muted)
        m_askAgain.start(1000);
    refresh();
    m_model.checkAuthorization();
}

void MeetingsView::readMute()
{
    m_muted = Microphone::isMuted(m_input);
    refreshMute();
}

void MeetingsView::toggleMute()
{
    if (Microphone::setMuted(m_input, m_defaults, !m_muted.value_or(false)))
        readMute();
}

void MeetingsView::refreshMute()
{
    const bool muted = m_muted.value_or(false);
    m_mute->setText(muted ? u"Unmute microphone"_s : u"Mute microphone"_s);
    m_mute->setSymbol(muted ? u"mic.slash.fill"_s : u"mic.fill"_s);
    m_mute->setKind(muted ? Button::Kind::tinted : Button::Kind::normal);
    m_mute->setEnabled(m_muted.has_value());
    m_mute->setAccessibleDescription(
        m_muted ? muted ? u"Muted"_s : u"Not muted"_s : m_note->text());
    m_note->setVisible(!m_muted);
    arrangeMute();
}

void MeetingsView::refresh()
{
    const MeetingTimes times(m_model.zone());
    const auto card = nextMeeting(m_model, times);
    if (card)
        m_card->setCard(*card);
    setShown(m_card, card.has_value());
    m_list->setLines(meetingLines(m_model, times));
    const auto body = meetingsBody(m_model);
    setShown(m_denied, body == MeetingsBody::denied);
    setShown(m_notAsked, body == MeetingsBody::notAsked);
    setShown(m_noEvents, body == MeetingsBody::noEvents);
    setShown(m_scroll, body == MeetingsBody::events);
    arrange();
}

// Qt would hand the keyboard on to a button that nobody chose.
void MeetingsView::setShown(QWidget* part, bool shown)
{
    if (!shown && part->isAncestorOf(QApplication::focusWidget()))
        setFocus();
    part->setVisible(shown);
}

// The keys that a button leaves alone turn the pages of the list.
void MeetingsView::keyPressEvent(QKeyEvent* event)
{
    if (!m_scroll->scrollBy(event->key()))
        QWidget::keyPressEvent(event);
}

void MeetingsView::arrangeMute()
{
    const QRect row(padding, padding, width() - 2 * padding, m_mute->boxSize().height());
    const auto mirrored
        = [&](const QRect& part) { return QStyle::visualRect(layoutDirection(), row, part); };
    const QRect button(row.topLeft(), m_mute->boxSize());
    m_mute->placeBox(mirrored(button));
    const QRect note(button.right() + 1 + noteGap, row.top(), 0, row.height());
    m_note->setGeometry(mirrored(note.adjusted(0, 0, row.right() - note.right(), 0)));
}

void MeetingsView::arrange()
{
    arrangeMute();
    const int x = padding;
    const int columnWidth = width() - 2 * padding;
    int y = padding + m_mute->boxSize().height() + spacing;
    if (!m_card->isHidden()) {
        m_card->setGeometry(x, y, columnWidth, m_card->sizeHint().height());
        y += m_card->height() + spacing;
    }
    m_heading->setGeometry(x, y, columnWidth, Theme::lineHeight(TextRole::captionHeading));
    y += m_heading->height() + spacing;
    const QRect body(x, y, columnWidth, height() - y);
    m_denied->setGeometry(body);
    m_notAsked->setGeometry(body);
    m_noEvents->setGeometry(x, y + aboveNoEvents, columnWidth, Theme::lineHeight(TextRole::body));
    // To the edges of the tab, where the thumb and the rings of the buttons have room.
    m_scroll->setGeometry(0, y, width(), height() - y);
}
