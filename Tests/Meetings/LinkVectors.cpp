// Compares the links found in the texts of a file with those that are to be found:
//     LinkVectors FILE
// The file is a JSON array of objects with "location", "notes", "url", "link" and "service", each a
// string, or null when absent.
#include "App/Meetings/MeetingEvent.h"
#include "App/Platform/EventStore.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

int fail(const QString& why)
{
    std::fprintf(stderr, "LinkVectors: %s\n", qPrintable(why));
    return 1;
}

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

int check(const QJsonArray& vectors)
{
    qsizetype passed = 0;
    for (qsizetype i = 0; i < vectors.size(); ++i)
        passed += passes(vectors[i], i + 1) ? 1 : 0;
    const auto failed = vectors.size() - passed;
    std::printf("%lld passed, %lld failed\n", static_cast<long long>(passed),
        static_cast<long long>(failed));
    return failed == 0 ? 0 : 1;
}

}

int main(int argc, char** argv)
{
    if (argc != 2)
        return fail(u"usage: LinkVectors FILE"_s);
    QFile file(QString::fromLocal8Bit(argv[1]));
    if (!file.open(QFile::ReadOnly))
        return fail(file.fileName() + u": "_s + file.errorString());
    QJsonParseError error;
    const auto vectors = QJsonDocument::fromJson(file.readAll(), &error).array();
    if (error.error != QJsonParseError::NoError)
        return fail(file.fileName() + u": "_s + error.errorString());
    if (vectors.isEmpty())
        return fail(file.fileName() + u": not an array of texts with their links"_s);
    const auto odd = std::ranges::find_if_not(vectors, isVector);
    if (odd != vectors.end())
        return fail(file.fileName()
            + u": entry %1 is not texts with their link"_s.arg(odd - vectors.begin() + 1));
    return check(vectors);
}
