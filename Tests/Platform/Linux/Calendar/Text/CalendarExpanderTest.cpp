#include "Tests/Platform/Linux/Calendar/Text/CalendarSetup.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using Setup = CalendarSetup;

static const QByteArray good(
    "BEGIN:VEVENT\r\nUID:good\r\nDTSTART:20260329T080000Z\r\nDURATION:PT1H\r\nEND:VEVENT\r\n");
static const auto goodAgenda = u"good 29.10:00-29.11:00"_s;
static const QByteArray daily(
    "DTSTART;TZID=Europe/Berlin:20260101T100000\r\nDURATION:PT1H\r\nRRULE:FREQ=DAILY");

class CalendarExpanderTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Setup::useBerlin(); }

    void findsTheEventsOfTheDay_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("found");
        const auto row = [](const char* name, const QByteArray& text, const char* found) {
            QTest::newRow(name) << text << QString::fromUtf8(found);
        };
        const auto event = Setup::event;
        const auto replacing = [&](const QByteArray& lines) { return event(daily) + event(lines); };
        row("clock that is set forward", event("DTSTART:20260329T023000\r\nDURATION:PT1H"),
            "event 29.03:30-29.04:30");
        row("ends where the day begins", event("DTSTART:20260328T220000Z\r\nDURATION:PT1H"), "");
        row("an instant where the day begins", event("DTSTART:20260328T230000Z"),
            "event 29.00:00-29.00:00");
        row("an instant where the day ends", event("DTSTART:20260329T220000Z"), "");
        row("ends before it starts", event("DTSTART:20260329T100000\r\nDTEND:20260329T090000"),
            "event 29.10:00-29.10:00");
        row("several rules",
            event("DTSTART:20260105T100000\r\nRRULE:FREQ=WEEKLY;BYDAY=SU\r\nRRULE:FREQ=DAILY;"
                  "BYHOUR=12"),
            "event 29.10:00-29.10:00, event 29.12:00-29.12:00");
        row("rules that agree", event(daily + "\r\nRRULE:FREQ=WEEKLY;BYDAY=SU"),
            "event 29.10:00-29.11:00");
        row("a rule of exceptions", event(daily + "\r\nEXRULE:FREQ=MONTHLY;BYDAY=-1SU"), "");
        row("a rule without sense", event("DTSTART:20260329T100000\r\nRRULE:FREQ=NOW"),
            "event 29.10:00-29.10:00");
        row("small letters",
            "begin:vevent\r\nuid:x\r\ndtstart;tzid=Asia/"
            "Tokyo:20260329t200000\r\nrrule:freq=daily\r\nend:vevent\r\n",
            "x 29.13:00-29.13:00");
        row("a date besides the rule",
            event("DTSTART:20260320T100000\r\nRDATE;VALUE=DATE:20260329"),
            "event 29.10:00-29.10:00");
        row("a period besides the rule",
            event("DTSTART:20260320T100000\r\nRDATE;VALUE=PERIOD:20260329T120000/20260329T130000"),
            "event 29.12:00-29.13:00");
        row("an exception by day", event(daily + "\r\nEXDATE;VALUE=DATE:20260329"), "");
        row("an exception elsewhere", event(daily + "\r\nEXDATE;TZID=Asia/Tokyo:20260329T170000"),
            "");
        row("an exception to days",
            event("DTSTART;VALUE=DATE:20260101\r\nRRULE:FREQ=DAILY\r\nEXDATE:20260329T000000Z"),
            "");
        row("the last day in UTC",
            event("DTSTART;VALUE=DATE:20260101\r\nRRULE:FREQ=DAILY;UNTIL=20260329T000000Z"),
            "event 29.00:00-30.00:00");
        row("the last day by date",
            event("DTSTART:20260101T230000\r\nRRULE:FREQ=DAILY;UNTIL=20260329"),
            "event 29.23:00-29.23:00");
        row("moved within the day",
            replacing("RECURRENCE-ID:20260329T080000Z\r\nDTSTART:20260329T150000"),
            "event 29.15:00-29.15:00");
        row("moved out of the day",
            replacing(
                "RECURRENCE-ID;TZID=Europe/Berlin:20260329T100000\r\nDTSTART:20260501T150000"),
            "");
        row("moved into the day",
            replacing(
                "RECURRENCE-ID;TZID=Europe/Berlin:20260501T100000\r\nDTSTART:20260329T150000"),
            "event 29.10:00-29.11:00, event 29.15:00-29.15:00");
        row("replaced by date",
            replacing("RECURRENCE-ID;VALUE=DATE:20260329\r\nDTSTART:20260329T150000"),
            "event 29.15:00-29.15:00");
        row("replaced twice",
            replacing("SEQUENCE:2\r\nRECURRENCE-ID:20260329T080000Z\r\nDTSTART:20260329T150000")
                + event("RECURRENCE-ID:20260329T080000Z\r\nDTSTART:20260329T160000"),
            "event 29.15:00-29.15:00");
        row("an exception to an event without rules",
            event("DTSTART:20260329T100000\r\nEXDATE:20260329T100000"), "");
        row("an exception beside a date far away",
            event("DTSTART:20260329T100000\r\nRDATE:20360329T100000\r\nEXDATE:20260329T100000"),
            "");
        row("an event without rules, replaced",
            event("DTSTART:20260329T100000")
                + event("RECURRENCE-ID:20260329T100000\r\nDTSTART:20260329T150000"),
            "event 29.15:00-29.15:00");
        row("replaced by the event's own clock",
            event("DTSTART;TZID=America/New_York:20260101T100000\r\nRRULE:FREQ=DAILY")
                + event("RECURRENCE-ID:20260329T100000\r\nDTSTART:20260329T180000"),
            "event 29.18:00-29.18:00");
        row("an exception by the event's own clock",
            event("DTSTART;TZID=America/New_York:20260101T100000\r\nRRULE:FREQ=DAILY\r\n"
                  "EXDATE:20260329T100000"),
            "");
        row("blanks around values",
            event("DTSTART: 20260322T080000Z \r\nDTEND:20260322T090000Z\t\r\nRRULE: FREQ=WEEKLY "),
            "event 29.10:00-29.11:00");
        row("a length in small letters", event("DTSTART:20260329T080000Z\r\nDURATION:pt1h30m"),
            "event 29.10:00-29.11:30");
        row("moved from then on, in small letters",
            replacing("RECURRENCE-ID;RANGE=thisandfuture:20260301T090000Z\r\nDTSTART;TZID=Europe/"
                      "Berlin:20260301T133000"),
            "event 29.13:30-29.13:30");
        row("an exception that is moved into the day",
            event("DTSTART;TZID=Europe/Berlin:20260501T100000\r\nRRULE:FREQ=DAILY\r\nEXDATE;TZID="
                  "Europe/Berlin:20260503T100000")
                + event("RECURRENCE-ID;RANGE=THISANDFUTURE;TZID=Europe/"
                        "Berlin:20260501T100000\r\nDTSTART;TZID=Europe/Berlin:20260327T100000"),
            "");
        row("a zone in wrong case", event("DTSTART;TZID=asia/TOKYO:20260329T200000"),
            "event 29.13:00-29.13:00");
        row("cancelled",
            replacing(
                "RECURRENCE-ID:20260329T080000Z\r\nDTSTART:20260329T080000Z\r\nSTATUS:CANCELLED"),
            "event 29.10:00-29.10:00");
        row("moved from then on",
            replacing("RECURRENCE-ID;RANGE=THISANDFUTURE;TZID=Europe/"
                      "Berlin:20260301T100000\r\nDTSTART;TZID=Europe/"
                      "Berlin:20260301T133000\r\nDURATION:PT2H"),
            "event 29.13:30-29.15:30");
        row("moved by days from then on",
            replacing("RECURRENCE-ID;RANGE=THISANDFUTURE;TZID=Europe/"
                      "Berlin:20260327T100000\r\nDTSTART;TZID=Europe/Berlin:20260330T100000"),
            "");
        row("moved later than that",
            replacing(
                "RECURRENCE-ID;RANGE=THISANDFUTURE:20260401T080000Z\r\nDTSTART:20260401T150000"),
            "event 29.10:00-29.11:00");
        row("a newer event",
            event(daily + "\r\nSEQUENCE:1") + event("DTSTART:20260329T150000\r\nSEQUENCE:2"),
            "event 29.15:00-29.15:00");
        row("the same event twice", event(daily) + event(daily), "event 29.10:00-29.11:00");
        row("two events of one name",
            event("DTSTART:20260329T100000") + event("DTSTART:20260329T120000"),
            "event 29.10:00-29.10:00, event 29.12:00-29.12:00");
    }

    void findsTheEventsOfTheDay()
    {
        QFETCH(const QByteArray, text);
        QFETCH(const QString, found);
        QCOMPARE(Setup().agenda("BEGIN:VCALENDAR\r\n" + text + "END:VCALENDAR\r\n"), found);
    }

    void theFirstOfTwoEqualHoursIsMeant()
    {
        QCOMPARE(Setup(QDate(2026, 10, 25))
                     .expand(Setup::event("DTSTART:20261025T023000"))
                     .events.first()
                     .start,
            Moment(std::chrono::seconds(1792888200)));
    }

    void aDateInUtcKeepsItsInstant()
    {
        const auto result
            = Setup(QDate(2026, 10, 25))
                  .expand(Setup::event("DTSTART;TZID=Europe/Berlin:20261001T023000\r\n"
                                       "RDATE:20261025T013000Z"));
        QCOMPARE(result.events.size(), 1);
        QCOMPARE(result.events.first().start, Moment(std::chrono::seconds(1792891800)));
    }

    void aZoneIsWhatItsNameSays_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QString>("found");
        QTest::addColumn<QStringList>("unknown");
        const auto row = [](const char* zone, const char* hour, bool isKnown = true) {
            QTest::newRow(zone) << QByteArray(zone)
                                << u"event 29.%1-29.%1"_s.arg(QString::fromUtf8(hour))
                                << (isKnown ? QStringList() : QStringList(QString::fromUtf8(zone)));
        };
        row("Asia/Tokyo", "05:00");
        row("\"Asia/Tokyo\"", "05:00");
        row("/vendor.org/2026/Asia/Tokyo", "05:00");
        row("/vendor.org/2026/America/Argentina/Buenos_Aires", "17:00");
        row("Tokyo Standard Time", "05:00");
        row("Described", "10:30");
        row("Nowhere/None", "12:00", false);
        row("XXX3", "12:00", false);
        row("UTC+05", "12:00", false);
        row("Europe", "12:00", false);
        row("../zoneinfo/Asia/Tokyo", "12:00", false);
        row("/usr/share/zoneinfo/../zoneinfo/./", "12:00", false);
    }

    void aZoneIsWhatItsNameSays()
    {
        QFETCH(const QByteArray, zone);
        QFETCH(const QString, found);
        QFETCH(const QStringList, unknown);
        const QByteArray described(
            "BEGIN:VTIMEZONE\r\nTZID:Described\r\nBEGIN:STANDARD\r\nDTSTART:20200101T000000\r\n"
            "TZOFFSETFROM:+0330\r\nTZOFFSETTO:+0330\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n");
        const auto result
            = Setup().expand(Setup::event("DTSTART;TZID=" + zone + ":20260329T120000") + described);
        QCOMPARE(Setup::agenda(result), found);
        QCOMPARE(result.unknownZones, unknown);
    }

    void aDescribedZoneChangesItsClock()
    {
        const QByteArray zone(
            "BEGIN:VTIMEZONE\r\nTZID:Mine\r\n"
            "BEGIN:DAYLIGHT\r\nDTSTART:16010101T010000\r\nTZOFFSETFROM:+0000\r\nTZOFFSETTO:+"
            "0100\r\n"
            "RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU\r\nEND:DAYLIGHT\r\n"
            "BEGIN:STANDARD\r\nDTSTART:16010101T020000\r\nTZOFFSETFROM:+0100\r\nTZOFFSETTO:+"
            "0000\r\n"
            "RRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n");
        const auto at = [&](const char* hour) {
            return zone + Setup::event(QByteArray("DTSTART;TZID=Mine:20260329T") + hour);
        };
        QCOMPARE(Setup().agenda(at("003000")), u"event 29.01:30-29.01:30"_s);
        QCOMPARE(Setup().agenda(at("013000")), u"event 29.03:30-29.03:30"_s);
        QCOMPARE(Setup().agenda(at("120000")), u"event 29.13:00-29.13:00"_s);
    }

    void aDescribedZoneIsFoundHoweverItIsWritten()
    {
        const QByteArray zone(
            "BEGIN:VTIMEZONE\r\nTZID:Amsterdam\\, Berlin\r\nBEGIN:DAYLIGHT\r\n"
            "DTSTART:16010101T010000 \r\nTZOFFSETFROM:+0000\r\nTZOFFSETTO:+0530 \r\n"
            "RRULE:freq=yearly;bymonth=3;byday=-1su\r\nEND:DAYLIGHT\r\nBEGIN:STANDARD\r\n"
            "DTSTART:16011001T010000\r\nTZOFFSETFROM:+0530\r\nTZOFFSETTO:+0000\r\n"
            "RRULE:freq=yearly;bymonth=10;byday=-1su\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n");
        for (const QByteArray name : { "\"Amsterdam, Berlin\"", "\"Amsterdam\\, Berlin\"" }) {
            const auto result
                = Setup().expand(zone + Setup::event("DTSTART;TZID=" + name + ":20260329T133000"));
            QCOMPARE(Setup::agenda(result), u"event 29.10:00-29.10:00"_s);
            QCOMPARE(result.unknownZones, QStringList());
        }
    }

    void aNameTooLongForAZoneIsNone()
    {
        const auto result = Setup().expand(
            Setup::event("DTSTART;TZID=" + QByteArray(201, 'x') + ":20260329T120000"));
        QCOMPARE(Setup::agenda(result), u"event 29.12:00-29.12:00"_s);
        QCOMPARE(result.unknownZones, QStringList());
    }

    void aZoneWithAHostileRuleIsNone()
    {
        const QByteArray zone(
            "BEGIN:VTIMEZONE\r\nTZID:Bad\r\nBEGIN:STANDARD\r\nDTSTART:20200101T000000\r\n"
            "TZOFFSETFROM:+0330\r\nTZOFFSETTO:+0330\r\nRRULE:FREQ=MONTHLY\r\nEND:STANDARD\r\nEND:"
            "VTIMEZONE\r\n");
        const auto result = Setup().expand(zone + Setup::event("DTSTART;TZID=Bad:20260329T120000"));
        QCOMPARE(Setup::agenda(result), u"event 29.12:00-29.12:00"_s);
        QCOMPARE(result.unknownZones, QStringList(u"Bad"_s));
    }

    void textsAreReadable()
    {
        const auto event
            = Setup()
                  .expand(Setup::event(
                      "DTSTART:20260329T100000\r\nSUMMARY;ALTREP=\"a:"
                      "b;c\";LANGUAGE=de:T\\, o\\;n\\\\e\\Nx\\y\r\n"
                      "DESCRIPTION:at ftp://caf\xC3\xA9/"
                      "\xFF now,\\nor:(https://c)\r\nLOCATION:\r\nURL:https://a.example/"
                      "?x=1\\,2\r\nCONFERENCE:https://b.example"))
                  .events.first();
        QCOMPARE(event.title, u"T, o;n\\e\nx\\y"_s);
        // Of the notes only what may be an address.
        QCOMPARE(event.notes, u"ftp://café/\uFFFD or:(https://c)"_s);
        QCOMPARE(event.location, std::nullopt);
        QCOMPARE(event.url, u"https://a.example/?x=1\\,2"_s);
        QVERIFY(!event.isAllDay);
    }

    void aConferenceIsTheAddressWhereThereIsNone()
    {
        const auto url = [](const QByteArray& lines) {
            return Setup()
                .expand(Setup::event("DTSTART:20260329T100000\r\n" + lines))
                .events.first()
                .url;
        };
        const QByteArray skype("X-MICROSOFT-SKYPETEAMSMEETINGURL:skype\r\n");
        const QByteArray google("X-GOOGLE-CONFERENCE:google\r\n");
        QCOMPARE(url(skype), u"skype"_s);
        QCOMPARE(url(skype + google), u"google"_s);
        QCOMPARE(url(skype + google + "CONFERENCE;VALUE=URI:conference\r\n"), u"conference"_s);
        QCOMPARE(url(skype + google + "URL:\r\n"), u"google"_s);
        QCOMPARE(url(""), std::nullopt);
    }

    void identifiersTellOccurrencesApart()
    {
        const auto identifier = [](const QByteArray& lines) {
            return Setup().expand(Setup::event(lines)).events.first().identifier;
        };
        QCOMPARE(identifier("DTSTART:20260329T100000"), u"source\nevent\n"_s);
        QCOMPARE(identifier(daily), u"source\nevent\n20260329T080000Z"_s);
        QCOMPARE(identifier("DTSTART;VALUE=DATE:20200329\r\nRRULE:FREQ=YEARLY"),
            u"source\nevent\n20260329"_s);
        QCOMPARE(identifier("RECURRENCE-ID:20260501T080000Z\r\nDTSTART:20260329T100000"),
            u"source\nevent\n20260501T080000Z"_s);
        QCOMPARE(identifier("UID:\r\nDTSTART:20260329T100000"), std::nullopt);
    }

    void whatIsHostileHarmsOnlyItself_data()
    {
        QTest::addColumn<QByteArray>("hostile");
        const auto row = [](const char* name, const QByteArray& lines) {
            QTest::newRow(name) << Setup::event("DTSTART:20260329T100000\r\n" + lines);
        };
        row("every second", "RRULE:FREQ=SECONDLY");
        row("five rules", QByteArray("RRULE:FREQ=DAILY\r\n").repeated(4) + "EXRULE:FREQ=YEARLY");
        row("another calendar", "RRULE:RSCALE=HEBREW;FREQ=YEARLY");
        row("a line too long", "EXDATE:" + QByteArray("20260329T080000Z,").repeated(5000));
        row("an address too long", "URL:" + QByteArray(70'000, 'x'));
        row("too much of it",
            QByteArray("SUMMARY:" + QByteArray(60'000, 'x') + "\r\n").repeated(5));
        row("too many exceptions", QByteArray("EXDATE:20260329T080000Z\r\n").repeated(20'001));
        QTest::newRow("no start") << Setup::event("SUMMARY:x");
        QTest::newRow("a day that is none") << Setup::event("DTSTART:20260229T100000");
        QTest::newRow("a nested alarm")
            << QByteArray("BEGIN:VALARM\r\nDTSTART:20260329T100000\r\nEND:VALARM\r\n");
        QTest::newRow("deep nesting") << QByteArray("BEGIN:X\r\n").repeated(100'000);
        QTest::newRow("an event without end")
            << QByteArray("BEGIN:VEVENT\r\nUID:x\r\nDTSTART:20260329T100000\r\nBEGIN:VALARM\r\n");
        QTest::newRow("ends of nothing")
            << QByteArray("END:VEVENT\r\nEND:VTIMEZONE\r\nEND:VALARM\r\nEND:VCALENDAR\r\n");
        QTest::newRow("bytes") << QByteArray("\0\xFF\r:;=\"\n\xEF\xBB\xBF", 11);
    }

    void whatIsHostileHarmsOnlyItself()
    {
        QFETCH(const QByteArray, hostile);
        auto second = good;
        second.replace("UID:good", "UID:other");
        const auto result = Setup().expand(good + hostile + "\r\n" + second);
        QCOMPARE(Setup::agenda(result), goodAgenda + u", other 29.10:00-29.11:00"_s);
        QVERIFY(result.isComplete);
    }

    void theAlarmOfAnEventIsNotTheEvent()
    {
        QCOMPARE(Setup().agenda(Setup::event(
                     "DTSTART:20260329T100000\r\nBEGIN:VALARM\r\nDURATION:PT5H\r\nDTSTART:"
                     "20250101T000000\r\nEND:VALARM\r\nDTEND:20260329T110000")),
            u"event 29.10:00-29.11:00"_s);
    }

    void longNotesAreCutNotLost()
    {
        const auto event = Setup()
                               .expand(Setup::event("DTSTART:20260329T100000\r\nDESCRIPTION:x://"
                                   + QByteArray("ä").repeated(100'000)))
                               .events.first();
        QVERIFY(event.notes && event.notes->size() > 30'000 && event.notes->endsWith(u'ä'));
    }

    void longTitlesAndLocationsAreCut()
    {
        const QByteArray address = "https://meet.example/" + QByteArray(900, 'a');
        const auto letters = QByteArray("\xC3\xA4").repeated(30'000);
        const auto location = [&](const QByteArray& text) {
            return Setup()
                .expand(Setup::event(
                    "DTSTART:20260329T100000\r\nSUMMARY:" + letters + "\r\nLOCATION:" + text))
                .events.first();
        };
        QCOMPARE(location("x").title, QString(1000, u'\u00E4'));
        QCOMPARE(location(letters).location, QString(1000, u'\u00E4'));
        const auto words = QByteArray("Room ").repeated(150);
        QCOMPARE(
            location(words + address + ' ' + letters).location, QString::fromUtf8(words + address));
        QCOMPARE(location(words + words + address).location->section(u' ', -1),
            QString::fromUtf8(address));
        QCOMPARE(location(words + address + QByteArray(60'000, 'a')).location,
            QString::fromUtf8(words.trimmed()));
    }

    void aTextThatIsCutOffKeepsEveryCompleteEvent()
    {
        QFile file(QStringLiteral(CORVELLA_TEST_DATA "/calendar/fx-2026-03-29.ics"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const auto all = file.readAll();
        const auto whole = Setup().expand(all).events.size();
        QVERIFY(whole > 50);
        // Further on, the file repeats itself.
        const auto begin = all.indexOf("BEGIN:VEVENT\r\nUID:utc");
        const auto complete = Setup().expand(all.left(begin)).events.size();
        for (auto size = begin; size < begin + 600; ++size) {
            const auto text = all.left(size);
            const auto found = Setup().expand(text).events.size();
            QVERIFY(found >= complete);
            if (text.endsWith("END:VEVENT"))
                QCOMPARE(found, Setup().expand(text + "\r\nX:1\r\nX:2").events.size());
        }
    }

    void tooManyEventsAreNotAllOfThem()
    {
        QByteArray many;
        for (int i = 0; i < 5'001; ++i)
            many += Setup::event("UID:" + QByteArray::number(i) + "\r\nDTSTART:20260329T100000");
        const auto result = Setup().expand(many);
        QCOMPARE(result.events.size(), 5'000);
        QVERIFY(!result.isComplete);
    }

    void oneFileLeavesRoomForTheOthers_data()
    {
        QTest::addColumn<QByteArray>("event");
        QTest::addColumn<int>("count");
        QTest::newRow("events") << QByteArray("DTSTART:20260329T100000") << 6'000;
        QTest::newRow("repeated ones")
            << QByteArray("DTSTART:20260328T100000\r\nRRULE:FREQ=DAILY") << 6'000;
        QTest::newRow("text") << "DTSTART:20260329T100000\r\nURL:" + QByteArray(60'000, 'x') << 200;
    }

    void oneFileLeavesRoomForTheOthers()
    {
        QFETCH(const QByteArray, event);
        QFETCH(const int, count);
        QTemporaryDir dir;
        QByteArray many;
        for (int i = 0; i < count; ++i)
            many += Setup::event("UID:" + QByteArray::number(i) + "\r\n" + event);
        // The smaller, the less room is left at the end.
        for (int i = 0; i < 400; ++i)
            many += Setup::event("UID:s" + QByteArray::number(i)
                + "\r\nDTSTART:20260329T100000\r\nURL:" + QByteArray(i < 200 ? 500 : 0, 'x'));
        const auto other = good
            + Setup::event("UID:weekly\r\nDTSTART:20260322T110000\r\nRRULE:FREQ=WEEKLY") + "\r\n"
            + QByteArray("X-FILLER:x\r\n").repeated(1'500'000);
        for (const auto& [name, text] : { std::pair(u"a.ics"_s, many), { u"b.ics"_s, other } }) {
            QFile file(dir.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
        }
        Setup s;
        s.request.paths << dir.path();
        const auto result = s.expand({});
        QVERIFY(!result.isComplete);
        const auto agenda = Setup::agenda(result);
        QVERIFY(agenda.contains(goodAgenda));
        QVERIFY(agenda.contains(u"weekly 29.11:00-29.11:00"_s));
    }

    void noTimeLeftIsSaid()
    {
        Setup s;
        constexpr TimeBudget none { TimeBudget::Seconds(0), TimeBudget::Seconds(0) };
        constexpr TimeBudget enough { TimeBudget::Seconds(1e9), TimeBudget::Seconds(1e9) };
        CalendarExpander reading(s.request, { none, enough });
        reading.addText(good.constData());
        QVERIFY(!reading.finish().isComplete);
        CalendarExpander expanding(s.request, { enough, none });
        expanding.addText(good.constData());
        const auto result = expanding.finish();
        QVERIFY(result.events.isEmpty());
        QVERIFY(!result.isComplete);
    }
};

QTEST_GUILESS_MAIN(CalendarExpanderTest)
#include "CalendarExpanderTest.moc"
