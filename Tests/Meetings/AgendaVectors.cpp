// Compares the events of one local day of a calendar file with those it should have:
//     AgendaVectors FILE.ics EXPECTED.json ZONE YYYY-MM-DD
// expands the file by the helper of the resident program, as that does. The expected events are
// objects with uid, start and end (Unix seconds), allday and title, in any order.
#include "App/Platform/Linux/Calendar/HelperEventExpander.h"

#include <QCoreApplication>
#include <QDate>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimeZone>

#include <algorithm>
#include <ctime>
#include <iostream>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

constexpr int usageError = 2;

struct Question {
    QString file;
    QStringList expected; // One line an event, ordered.
    Moment start;
    Moment end;
};

QString line(const QString& uid, const QString& title, double start, double end, bool isAllDay)
{
    // Events without a UID are told apart by their titles.
    return u"%1\t%2\t%3\t%4\t%5"_s.arg(uid.isEmpty() ? title : uid, QString::number(start, 'f', 0),
        QString::number(end, 'f', 0), isAllDay ? u"all day"_s : u"timed"_s, title);
}

QString line(const CalendarEvent& event)
{
    return line(event.identifier.value_or(QString()).section(u'\n', -2, -2),
        event.title.value_or(QString()), event.start.time_since_epoch().count(),
        event.end.time_since_epoch().count(), event.isAllDay);
}

QString line(const QJsonObject& event)
{
    return line(event[u"uid"].toString(), event[u"title"].toString(), event[u"start"].toDouble(),
        event[u"end"].toDouble(), event[u"allday"].toBool());
}

std::optional<QStringList> readExpected(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const auto document = QJsonDocument::fromJson(file.readAll());
    if (!document.isArray())
        return {};
    QStringList lines;
    for (const auto& event : document.array())
        lines << line(event.toObject());
    lines.sort();
    return lines;
}

Moment startOf(QDate date, const QTimeZone& zone)
{
    const auto milliseconds = date.startOfDay(zone).toMSecsSinceEpoch();
    return Moment(std::chrono::duration<double>(static_cast<double>(milliseconds) / 1000));
}

std::optional<Question> refuse(const QString& why)
{
    std::cerr << why.toStdString() << std::endl;
    return {};
}

std::optional<Question> question(const QStringList& arguments)
{
    if (arguments.size() != 5)
        return refuse(u"Usage: AgendaVectors FILE.ics EXPECTED.json ZONE YYYY-MM-DD"_s);
    const auto& file = arguments[1];
    if (!QFileInfo(file).isFile() || !QFileInfo(file).isReadable())
        return refuse(u"%1 is no file that can be read"_s.arg(file));
    const auto expected = readExpected(arguments[2]);
    if (!expected)
        return refuse(u"%1 holds no JSON array that can be read"_s.arg(arguments[2]));
    const QTimeZone zone(arguments[3].toUtf8());
    if (!zone.isValid())
        return refuse(u"%1 is no time zone of this system"_s.arg(arguments[3]));
    const auto date = QDate::fromString(arguments[4], Qt::ISODate);
    if (!date.isValid())
        return refuse(u"%1 is no date of the form 2026-03-29"_s.arg(arguments[4]));
    return Question { QFileInfo(file).absoluteFilePath(), *expected, startOf(date, zone),
        startOf(date.addDays(1), zone) };
}

QStringList lines(const EventExpander::Result& result)
{
    QStringList lines;
    for (const auto& event : result.events)
        lines << line(event);
    lines.sort();
    return lines;
}

void print(const char* what, const QStringList& lines)
{
    for (const auto& line : lines)
        std::cout << what << ": " << line.toStdString() << '\n';
}

int compare(const Question& question, const std::optional<EventExpander::Result>& result)
{
    if (!result || !result->isComplete) {
        std::cerr << "The helper gave no complete answer" << std::endl;
        return 1;
    }
    const auto found = lines(*result);
    QStringList missing;
    QStringList extra;
    std::ranges::set_difference(question.expected, found, std::back_inserter(missing));
    std::ranges::set_difference(found, question.expected, std::back_inserter(extra));
    print("missing", missing);
    print("extra", extra);
    print("unknown zone", result->unknownZones);
    std::cout << question.expected.size() - missing.size() << " passed, "
              << missing.size() + extra.size() << " failed" << std::endl;
    return missing.isEmpty() && extra.isEmpty() ? 0 : 1;
}

}

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const auto asked = question(QCoreApplication::arguments());
    if (!asked)
        return usageError;
    // Inherited by the helper.
    qputenv("TZ", argv[3]);
    HelperEventExpander expander(QStringLiteral(CORVELLA_HELPERS_DIR "/expand-events"));
    EventExpander::Request request;
    request.start = asked->start;
    request.end = asked->end;
    request.paths = QStringList { asked->file };
    expander.expand(request, &application,
        [&](const auto& result) { QCoreApplication::exit(compare(*asked, result)); });
    return QCoreApplication::exec();
}
