#include "App/Meetings/MeetingsContent.h"

#include "App/Meetings/CalendarModel.h"
#include "App/Meetings/MeetingTimes.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

// A title may hold line breaks, and stands on one line.
static QString oneLine(QString title)
{
    static const QRegularExpression breaks(uR"([\p{Cc}\p{Zl}\p{Zp}]+)"_s);
    return title.replace(breaks, u" "_s);
}

// So that the signs in a title written from right to left stay with it.
static QString isolated(const QString& title)
{
    return title.isRightToLeft() ? u'\u2068' + title + u'\u2069' : title;
}

MeetingsBody meetingsBody(const CalendarModel& model)
{
    if (model.denied())
        return MeetingsBody::denied;
    if (!model.authorized())
        return MeetingsBody::notAsked;
    return model.events().isEmpty() ? MeetingsBody::noEvents : MeetingsBody::events;
}

QList<MeetingLine> meetingLines(const CalendarModel& model, const MeetingTimes& times)
{
    const auto* const next = model.next();
    QList<MeetingLine> lines;
    lines.reserve(model.events().size());
    for (const auto& event : model.events()) {
        lines.append({
            .id = event.id,
            .title = oneLine(event.title),
            .time = times.label(event),
            .link = event.link,
            .service = event.service.value_or(u"Join"_s),
            .isOver = model.isOver(event),
            .isNext = &event == next,
        });
    }
    return lines;
}

std::optional<MeetingCard> nextMeeting(const CalendarModel& model, const MeetingTimes& times)
{
    const auto* const next = model.next();
    if (!next)
        return {};
    return MeetingCard {
        .title = u"Next: "_s + isolated(oneLine(next->title)),
        .time = times.span(*next),
        .link = next->link,
        .join = u"Join "_s + next->service.value_or(QString()),
    };
}
