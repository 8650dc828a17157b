// The Meetings tab: the microphone, the next meeting and today's events with their links.
#pragma once

#include "App/Ui/ArrangedWidget.h"

#include <QTimer>

#include <optional>

class AccessPrompt;
class AddressOpener;
class AudioInput;
class Button;
class CalendarModel;
class EventList;
class Label;
class NextMeetingCard;
class ScrollArea;
class UserDefaults;

class MeetingsView final : public ArrangedWidget {
    Q_OBJECT

public:
    MeetingsView(
        CalendarModel& model, AudioInput& input, UserDefaults& defaults, AddressOpener& opener);

private:
    void build();
    void nameParts();
    void connectControls();
    void refresh();
    void setShown(QWidget* part, bool shown);
    void refreshMute();
    void readMute();
    void toggleMute();
    void arrange() override;
    void arrangeMute();
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

    CalendarModel& m_model;
    AudioInput& m_input;
    UserDefaults& m_defaults;
    AddressOpener& m_opener;
    std::optional<bool> m_muted; // Absent: it cannot be muted.
    QTimer m_askAgain;

    Button* m_mute;
    Label* m_note;
    NextMeetingCard* m_card;
    Label* m_heading;
    AccessPrompt* m_denied;
    AccessPrompt* m_notAsked;
    Label* m_noEvents;
    EventList* m_list;
    ScrollArea* m_scroll;
};
