#include "App/Meetings/MeetingsContent.h"

#include "App/Meetings/CalendarModel.h"
#include "App/Meetings/MeetingTimes.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

QString oneLine(QString title)
{
    static const QRegularExpression breaks(uR"([\p{Cc}\p{Zl}\p{Zp}]+)"_s);
    return title.replace(breaks, u" "_s);
}

static bool turnsText(QChar c)
{
    switch (c.direction()) {
    case QChar::DirR:
    case QChar::DirAL:
    case QChar::DirAN:
    case QChar::DirLRE:
    case QChar::DirRLE:
    case QChar::DirLRO:
    case QChar::DirRLO:
    case QChar::DirPDF:
    case QChar::DirLRI:
    case QChar::DirRLI:
    case QChar::DirFSI:
    case QChar::DirPDI:
        return true;
    default:
        return c.isSurrogate(); // Some scripts beyond the first plane run from the right.
    }
}

QString isolated(const QString& title)
{
    if (std::ranges::none_of(title, turnsText))
        return title;
    QString balanced(u'\u2068');
    qsizetype open = 1;
    for (const auto c : title) {
        const bool closes = c == u'\u2069';
        if (closes && open == 1)
            continue;
        open += closes ? -1 : c >= u'\u2066' && c <= u'\u2068' ? 1 : 0;
        balanced += c;
    }
    return balanced + QString(open, u'\u2069');
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
            .title = isolated(oneLine(event.title)),
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
