#include "App/Platform/Linux/Calendar/EdsCalendars.h"
#include "Tests/Fakes/FakeEventExpander.h"
#include "Tests/Support/CalendarService.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

static const TimeSpan day { Moment(std::chrono::seconds(1'795'215'600)),
    Moment(std::chrono::seconds(1'795'302'000)) };

namespace {

QString component(const QString& uid, const QString& title, const QString& more = {})
{
    return u"BEGIN:VEVENT\r\nUID:%1\r\nDTSTAMP:20260101T000000Z\r\nDTSTART:20261121T100000Z\r\n"
           "DTEND:20261121T110000Z\r\nSUMMARY:%2\r\n%3END:VEVENT\r\n"_s.arg(uid, title, more);
}

struct Setup {
    // The calendars are what they were when another test begins.
    ~Setup()
    {
        if (!added.isEmpty())
            service.remove(u"local"_s, added);
    }

    bool add(const QString& uid, const QString& title, const QString& more = {})
    {
        added.append(uid);
        return service.add(u"local"_s, { component(uid, title, more) });
    }

    QStringList titles() const
    {
        QStringList titles;
        for (const auto& event : calendars.events())
            titles.append(*event.title);
        titles.sort();
        return titles;
    }

    bool shows(const QStringList& expected)
    {
        return QTest::qWaitFor([&] { return titles() == expected; }, 15'000);
    }

    bool begins(const QStringList& expected)
    {
        calendars.look(day);
        return shows(expected);
    }

    // Each of the calendars was read so many times.
    qsizetype readings(const QString& source) const
    {
        return std::ranges::count(expander.requests, source, &EventExpander::Request::source);
    }

    CalendarService service;
    QStringList added;
    FakeEventExpander expander;
    EdsCalendars calendars { expander };
    QSignalSpy changes { &calendars, &CalendarSource::changed };
};

}

class EdsCalendarsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // First: what another test makes known to the type system, or starts, would hide what is
    // missing.
    void startsNothingBeforeItIsToLook()
    {
        Setup s;
        std::optional<bool> isOpen;
        s.calendars.checkAccess(&s.calendars, [&](bool answer) { isOpen = answer; });
        QTRY_COMPARE(isOpen, true);
        QCOMPARE(s.service.sourceProcess(), 0);
        QCOMPARE(s.service.calendarProcess(), 0);
    }

    void showsWhatIsThere()
    {
        Setup s;
        QVERIFY(s.add(u"1"_s, u"One"_s));
        QVERIFY(s.begins({ u"One"_s }));
        QCOMPARE(s.changes.count(), 1);
        QTRY_VERIFY(s.readings(u"work"_s) > 0);
    }

    void followsWhatOthersDo()
    {
        Setup s;
        QVERIFY(s.begins({}));
        QTRY_VERIFY(s.readings(u"local"_s) == 1);
        QVERIFY(s.add(u"1"_s, u"One"_s));
        QVERIFY(s.shows({ u"One"_s }));
        QVERIFY(s.service.change(u"local"_s, component(u"1"_s, u"Other"_s)));
        QVERIFY(s.shows({ u"Other"_s }));
        QVERIFY(s.service.remove(u"local"_s, { u"1"_s }));
        QVERIFY(s.shows({}));
    }

    void readsAllOfASeries()
    {
        Setup s;
        QVERIFY(s.add(u"1"_s, u"Series"_s, u"RRULE:FREQ=YEARLY\r\n"_s));
        auto moved = component(u"1"_s, u"Moved"_s, u"RECURRENCE-ID:20311121T100000Z\r\n"_s);
        moved.replace(u"DTSTART:2026"_s, u"DTSTART:2031"_s)
            .replace(u"DTEND:2026"_s, u"DTEND:2031"_s);
        QVERIFY(s.service.changeOne(u"local"_s, moved));
        QVERIFY(s.begins({ u"Moved"_s, u"Series"_s }));
    }

    void asksForZonesThatNobodyKnows()
    {
        Setup s;
        s.expander.unknownZones = { u"Made/Up"_s, u"No/Where"_s };
        QVERIFY(s.service.addTimezone(u"local"_s,
            u"BEGIN:VTIMEZONE\r\nTZID:Made/Up\r\nBEGIN:STANDARD\r\nDTSTART:19700101T000000\r\n"
            "TZOFFSETFROM:+0530\r\nTZOFFSETTO:+0530\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n"_s));
        QVERIFY(s.add(u"1"_s, u"One"_s));
        QVERIFY(s.begins({ u"One"_s }));
        QCOMPARE(s.readings(u"local"_s), 2);
        QVERIFY(std::ranges::any_of(s.expander.requests, [](const auto& request) {
            return request.text.contains("TZID:Made/Up\r\nBEGIN:STANDARD");
        }));
        QVERIFY(s.add(u"2"_s, u"Two"_s));
        QVERIFY(s.shows({ u"One"_s, u"Two"_s }));
        QCOMPARE(s.readings(u"local"_s), 3);
    }

    void manyChangesAreReadFewTimes()
    {
        Setup s;
        QVERIFY(s.begins({}));
        QTRY_VERIFY(s.readings(u"local"_s) == 1);
        for (int number = 0; number < 100; ++number)
            QVERIFY(s.add(QString::number(number), u"Same"_s));
        QTRY_COMPARE_WITH_TIMEOUT(s.calendars.events().size(), 100, 10'000);
        QVERIFY2(s.readings(u"local"_s) < 8, QByteArray::number(s.readings(u"local"_s)));
    }

    void aCalendarComesAndGoes()
    {
        Setup s;
        QVERIFY(s.begins({}));
        QTRY_VERIFY(s.readings(u"local"_s) == 1);
        QVERIFY(s.service.addCalendar(u"guest"_s));
        QTRY_VERIFY_WITH_TIMEOUT(s.readings(u"guest"_s) == 1, 10'000);
        QVERIFY(s.service.add(u"guest"_s, { component(u"g"_s, u"Guest"_s) }));
        QVERIFY(s.shows({ u"Guest"_s }));
        QVERIFY(s.service.describeCalendar(u"guest"_s,
            u"[Data Source]\nDisplayName=Guest\nEnabled=false\nParent=local-stub\n"
            "[Calendar]\nBackendName=local\n"_s));
        QVERIFY(s.shows({}));
        QVERIFY(s.service.describeCalendar(u"guest"_s,
            u"[Data Source]\nDisplayName=Guest\nEnabled=true\nParent=local-stub\n"
            "[Calendar]\nBackendName=local\n"_s));
        QVERIFY(s.shows({ u"Guest"_s }));
        QVERIFY(s.service.removeCalendar(u"guest"_s));
        QVERIFY(s.shows({}));
    }

    void aServiceThatDiesIsOpenedAgain()
    {
        Setup s;
        QVERIFY(s.add(u"1"_s, u"One"_s));
        QVERIFY(s.begins({ u"One"_s }));
        const auto process = s.service.calendarProcess();
        QVERIFY(process > 0);
        QCOMPARE(::kill(process, SIGKILL), 0);
        QTRY_VERIFY(s.service.calendarProcess() != process);
        QCOMPARE(s.titles(), QStringList { u"One"_s });
        QVERIFY(s.add(u"2"_s, u"Two"_s));
        QVERIFY(s.shows({ u"One"_s, u"Two"_s }));
    }

    void sourcesThatDieAreAskedAgain()
    {
        Setup s;
        QVERIFY(s.add(u"1"_s, u"One"_s));
        QVERIFY(s.begins({ u"One"_s }));
        QCOMPARE(::kill(s.service.sourceProcess(), SIGKILL), 0);
        QTRY_COMPARE(s.service.sourceProcess(), 0);
        QCOMPARE(s.titles(), QStringList { u"One"_s });
        QTRY_VERIFY(s.service.sourceProcess() > 0);
        QVERIFY(s.shows({ u"One"_s }));
        QVERIFY(s.service.addCalendar(u"guest"_s));
        QTRY_VERIFY_WITH_TIMEOUT(s.readings(u"guest"_s) > 0, 10'000);
        QVERIFY(s.service.removeCalendar(u"guest"_s));
    }

    void aServiceThatHangsHoldsUpNothing()
    {
        Setup s;
        QVERIFY(s.add(u"1"_s, u"One"_s));
        QVERIFY(s.begins({ u"One"_s }));
        const auto process = s.service.calendarProcess();
        QVERIFY(process > 0);
        QCOMPARE(::kill(process, SIGSTOP), 0);
        QElapsedTimer taken;
        taken.start();
        for (int time = 0; time < 20; ++time) {
            s.calendars.look(day);
            QCoreApplication::processEvents();
            QCOMPARE(s.titles(), QStringList { u"One"_s });
        }
        QVERIFY2(taken.elapsed() < 150, QByteArray::number(taken.elapsed()));
        QCOMPARE(::kill(process, SIGCONT), 0);
        QVERIFY(s.add(u"2"_s, u"Two"_s));
        QVERIFY(s.shows({ u"One"_s, u"Two"_s }));
    }
};

QTEST_GUILESS_MAIN(EdsCalendarsTest)
#include "EdsCalendarsTest.moc"
