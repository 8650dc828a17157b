// The address of an online meeting in the texts of a calendar event.
#pragma once

#include <QString>

#include <initializer_list>
#include <optional>

struct MeetingLink {
    QString address; // As it stands in the text.
    QString service; // "Zoom", "Meet" or "Teams".

    friend bool operator==(const MeetingLink&, const MeetingLink&) = default;
};

// The leftmost address of the first text that has one. It need not lead to a meeting service
// itself: one that only mentions such a service, in its path or query, counts as well.
std::optional<MeetingLink> findMeetingLink(std::initializer_list<std::optional<QString>> texts);
