#include "App/Platform/Linux/Calendar/DesktopEventStore.h"
#include "App/Platform/Linux/Calendar/EdsCalendars.h"
#include "App/Platform/Linux/Calendar/HelperEventExpander.h"
#include "App/Platform/Linux/Calendar/IcsFolders.h"
#include "Tests/Fakes/FakeClock.h"
#include "Tests/Fakes/FakeUserDefaults.h"
#include "Tests/Support/CalendarService.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

Moment at(const QDateTime& time)
{
    return Moment(std::chrono::milliseconds(time.toMSecsSinceEpoch()));
}

// From calendars to today's events, with all that is real but the clock.
struct Setup {
    explicit Setup(QDate date, const QStringList& paths = {})
        : start(at(date.startOfDay()))
        , end(at(date.addDays(1).startOfDay()))
        , folders(expander, paths)
        , store({ &desktop, &folders }, defaults, clock)
    {
    }

    QList<CalendarEvent> events() { return store.events(start, end); }

    // As "title hour", in order.
    QStringList told()
    {
        QStringList told;
        for (const auto& event : events()) {
            const auto since
                = std::chrono::duration_cast<std::chrono::minutes>(event.start - start);
            told.append(u"%1 %2"_s.arg(event.title.value_or(u"?"_s)).arg(since.count() / 60));
        }
        return told;
    }

    Moment start;
    Moment end;
    FakeUserDefaults defaults { { { u"calendarAccess"_s, true } } };
    FakeClock clock;
    HelperEventExpander expander { QStringLiteral(CORVELLA_HELPERS_DIR "/expand-events") };
    EdsCalendars desktop { expander };
    IcsFolders folders;
    DesktopEventStore store;
    QSignalSpy changes { &store, &EventStore::changed };
};

QString line(const QString& uid, const QString& title, double start, double end, bool isAllDay)
{
    // One that came without a UID has one that somebody made up.
    const auto name = title == u"nouid"_s ? title : uid;
    return u"%1|%2|%3|%4|%5"_s.arg(name, title, QString::number(start, 'f', 0),
        QString::number(end, 'f', 0), isAllDay ? u"day"_s : u"time"_s);
}

QStringList lines(const QList<CalendarEvent>& events)
{
    QStringList lines;
    for (const auto& event : events) {
        lines << line(event.identifier.value_or(QString()).section(u'\n', -2, -2),
            event.title.value_or(QString()), event.start.time_since_epoch().count(),
            event.end.time_since_epoch().count(), event.isAllDay);
    }
    lines.sort();
    return lines;
}

QStringList expectedLines(const QString& path)
{
    QFile file(path);
    if (!file.open(QFile::ReadOnly))
        return {};
    QStringList lines;
    for (const auto& value : QJsonDocument::fromJson(file.readAll()).array()) {
        const auto event = value.toObject();
        lines << line(event[u"uid"_s].toString(), event[u"title"_s].toString(),
            event[u"start"_s].toDouble(), event[u"end"_s].toDouble(), event[u"allday"_s].toBool());
    }
    lines.sort();
    return lines;
}

QString sample(QDate date)
{
    return QStringLiteral(CORVELLA_SAMPLES "/fx-") + date.toString(Qt::ISODate) + u".ics"_s;
}

bool calendar(const QStringList& words)
{
    return QProcess::execute(QStringLiteral(CORVELLA_TOOLS "/calendar"), words) == 0;
}

}

class DesktopCalendarsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(QTimeZone::systemTimeZoneId(), QByteArray("Europe/Berlin")); }

    void aFolderGivesExactlyTheEventsOfTheDay_data() { days(); }

    void aFolderGivesExactlyTheEventsOfTheDay()
    {
        QFETCH(QDate, date);
        QTemporaryDir home;
        const auto folder = home.filePath(u".calendars"_s);
        Setup s(date, { folder });
        QVERIFY(s.events().isEmpty());
        QVERIFY(QDir().mkpath(folder + u"/office"_s));
        QVERIFY(QFile::copy(sample(date), folder + u"/office/sample.ics"_s));
        const auto expected = expectedLines(sample(date) + u".expected.json"_s);
        QVERIFY(!expected.isEmpty());
        QTRY_COMPARE(lines(s.events()), expected);
        QVERIFY(std::ranges::is_sorted(s.events(), {}, &CalendarEvent::start));
        QVERIFY(s.changes.count() > 0);
    }

    void theDesktopGivesExactlyTheEventsOfTheDay_data() { days(); }

    void theDesktopGivesExactlyTheEventsOfTheDay()
    {
        QFETCH(QDate, date);
        const auto uid = date.toString(Qt::ISODate);
        const auto folder = qEnvironmentVariable("XDG_DATA_HOME") + u"/evolution/calendar/"_s + uid;
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(QFile::copy(sample(date), folder + u"/calendar.ics"_s));
        QVERIFY(QFile::setPermissions(
            folder + u"/calendar.ics"_s, QFile::ReadOwner | QFile::WriteOwner));
        CalendarService service;
        QVERIFY(service.addCalendar(uid));
        Setup s(date);
        const auto expected = expectedLines(sample(date) + u".expected.json"_s);
        QVERIFY(!expected.isEmpty());
        QTRY_COMPARE_WITH_TIMEOUT(lines(s.events()), expected, 10'000);
        QVERIFY(service.removeCalendar(uid));
        QTRY_VERIFY(s.events().isEmpty());
    }

    void followsTheServer()
    {
        Setup s(QDate(2026, 11, 21));
        QVERIFY(s.events().isEmpty());
        QVERIFY(calendar({ u"put"_s, u"a"_s, u"2026-11-21T10:00"_s, u"2026-11-21T11:00"_s,
            u"Review"_s, u"LOCATION:https://zoom.us/j/1"_s }));
        QTRY_COMPARE_WITH_TIMEOUT(s.told(), QStringList { u"Review 10"_s }, 10'000);
        QVERIFY(s.changes.count() > 0);
        QCOMPARE(s.events().constFirst().location, u"https://zoom.us/j/1"_s);
        QVERIFY(calendar({ u"put"_s, u"b"_s, u"2026-11-21T09:00"_s, u"2026-11-21T09:15"_s,
            u"Daily"_s, u"RRULE:FREQ=DAILY"_s }));
        QTRY_COMPARE_WITH_TIMEOUT(s.told(), QStringList({ u"Daily 9"_s, u"Review 10"_s }), 10'000);
        QVERIFY(calendar(
            { u"put"_s, u"a"_s, u"2026-11-21T08:00"_s, u"2026-11-21T08:30"_s, u"Review"_s }));
        QTRY_COMPARE_WITH_TIMEOUT(s.told(), QStringList({ u"Review 8"_s, u"Daily 9"_s }), 10'000);
        QVERIFY(calendar({ u"remove"_s, u"b"_s }));
        QTRY_COMPARE_WITH_TIMEOUT(s.told(), QStringList { u"Review 8"_s }, 10'000);
        QVERIFY(calendar(
            { u"put"_s, u"a"_s, u"2026-11-25T08:00"_s, u"2026-11-25T08:30"_s, u"Review"_s }));
        QTRY_VERIFY_WITH_TIMEOUT(s.events().isEmpty(), 10'000);
        QVERIFY(calendar({ u"remove"_s, u"a"_s }));
    }

private:
    static void days()
    {
        QTest::addColumn<QDate>("date");
        QTest::newRow("summer begins") << QDate(2026, 3, 29);
        QTest::newRow("autumn") << QDate(2026, 11, 21);
    }
};

QTEST_GUILESS_MAIN(DesktopCalendarsTest)
#include "DesktopCalendarsTest.moc"
