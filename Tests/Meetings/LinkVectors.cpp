// Compares the links found in the texts of a file with those that are to be found:
//     LinkVectors FILE
// The file is a JSON array of objects with "location", "notes", "url", "link" and "service", each a
// string, or null when absent.
#include "App/Meetings/MeetingEvent.h"
#include "App/Platform/EventStore.h"
#include "Tests/Support/VectorsCheck.h"

#include <QJsonObject>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

bool isVector(const QJsonValue& value)
{
    const auto isTextOrNull
        = [](const QJsonValue& text) { return text.isNull() || text.isString(); };
    const auto isMissing = [](const QJsonValue& text) { return text.isUndefined(); };
    const auto isCandidate
        = [&](const QString& key) { return isMissing(value[key]) || isTextOrNull(value[key]); };
    return isTextOrNull(value[u"link"_s]) && isTextOrNull(value[u"service"_s])
        && isCandidate(u"location"_s) && isCandidate(u"notes"_s) && isCandidate(u"url"_s);
}

std::optional<QString> textOf(const QJsonValue& vector, const QString& key)
{
    const auto value = vector[key];
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

QString described(const std::optional<QString>& link, const std::optional<QString>& service)
{
    return link.value_or(u"no link"_s) + u", "_s + service.value_or(u"no service"_s);
}

bool passes(const QJsonValue& vector, qsizetype number)
{
    const MeetingEvent event({ .location = textOf(vector, u"location"_s),
        .notes = textOf(vector, u"notes"_s),
        .url = textOf(vector, u"url"_s) });
    const auto link = textOf(vector, u"link"_s);
    const auto service = textOf(vector, u"service"_s);
    if (event.link == link && event.service == service)
        return true;
    std::printf("%lld: expected %s, found %s\n", static_cast<long long>(number),
        qPrintable(described(link, service)), qPrintable(described(event.link, event.service)));
    return false;
}

}

int main(int argc, char** argv)
{
    const VectorsCheck check { u"LinkVectors"_s, u"an array of texts with their links"_s,
        u"texts with their link"_s, isVector, passes };
    return check.run(argc, argv);
}
