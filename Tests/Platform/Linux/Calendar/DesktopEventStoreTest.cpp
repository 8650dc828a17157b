#include "App/Platform/Linux/Calendar/DesktopEventStore.h"
#include "Tests/Fakes/FakeCalendarSource.h"
#include "Tests/Fakes/FakeClock.h"
#include "Tests/Fakes/FakeUserDefaults.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

using Status = AuthorizationStatus;

static const auto consentKey = u"calendarAccess"_s;
static const Moment dayStart = Moment(std::chrono::seconds(1'700'000'000));
static const Moment dayEnd = dayStart + std::chrono::hours(24);

namespace {

CalendarEvent meeting(const QString& title, int fromHour, int toHour)
{
    return { .identifier = title,
        .title = title,
        .start = dayStart + std::chrono::hours(fromHour),
        .end = dayStart + std::chrono::hours(toHour) };
}

struct Setup {
    explicit Setup(const QHash<QString, UserDefaults::Value>& stored = { { consentKey, true } })
        : defaults(stored)
    {
        desktop.isOpen = true;
    }

    std::optional<Status> status()
    {
        std::optional<Status> answered;
        store.authorizationStatus(&store, [&](Status told) { answered = told; });
        return answered;
    }

    QStringList titles()
    {
        QStringList titles;
        for (const auto& found : store.events(dayStart, dayEnd))
            titles.append(*found.title);
        return titles;
    }

    FakeUserDefaults defaults;
    FakeClock clock;
    FakeCalendarSource desktop;
    FakeCalendarSource folders;
    DesktopEventStore store { { &desktop, &folders }, defaults, clock };
    QSignalSpy changes { &store, &EventStore::changed };
};

}

class DesktopEventStoreTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothingIsDeterminedNorTouchedBeforeConsent()
    {
        Setup s { QHash<QString, UserDefaults::Value>() };
        QCOMPARE(s.status(), Status::notDetermined);
        QVERIFY(s.titles().isEmpty());
        QCOMPARE(s.desktop.checks, 0);
        QVERIFY(s.desktop.spans.isEmpty());
        s.clock.jumped();
        QVERIFY(s.desktop.spans.isEmpty());
    }

    void askingIsTheConsent()
    {
        Setup s { QHash<QString, UserDefaults::Value>() };
        std::optional<bool> granted;
        s.store.requestFullAccess(&s.store, [&](bool answer) { granted = answer; });
        QCOMPARE(granted, true);
        QCOMPARE(s.defaults.boolean(consentKey), true);
        QCOMPARE(s.status(), Status::fullAccess);
    }

    void aRefusalIsNotAskedAboutAgain()
    {
        Setup s { QHash<QString, UserDefaults::Value> { { consentKey, false } } };
        std::optional<bool> granted;
        s.store.requestFullAccess(&s.store, [&](bool answer) { granted = answer; });
        QCOMPARE(granted, false);
        QCOMPARE(s.defaults.writes, 0);
        QCOMPARE(s.status(), Status::denied);
        QCOMPARE(s.desktop.checks, 0);
    }

    void oneOpenSourceIsFullAccess_data()
    {
        QTest::addColumn<bool>("desktop");
        QTest::addColumn<bool>("folders");
        QTest::addColumn<Status>("status");
        QTest::newRow("none") << false << false << Status::denied;
        QTest::newRow("desktop") << true << false << Status::fullAccess;
        QTest::newRow("folders") << false << true << Status::fullAccess;
        QTest::newRow("both") << true << true << Status::fullAccess;
    }

    void oneOpenSourceIsFullAccess()
    {
        QFETCH(bool, desktop);
        QFETCH(bool, folders);
        Setup s;
        s.desktop.isOpen = desktop;
        s.folders.isOpen = folders;
        QFETCH(Status, status);
        QCOMPARE(s.status(), status);
    }

    void answersOnceAndAsSoonAsItKnows()
    {
        Setup s;
        QList<Status> answers;
        s.desktop.isSlow = true;
        s.folders.isOpen = true;
        s.store.authorizationStatus(&s.store, [&](Status told) { answers.append(told); });
        QCOMPARE(answers, QList { Status::fullAccess });
        s.desktop.pendingCheck(false);
        QCOMPARE(answers.size(), 1);
    }

    void waitsForTheLastSourceBeforeItDenies()
    {
        Setup s;
        s.desktop.isSlow = true;
        QVERIFY(!s.status());
        QList<Status> answers;
        s.store.authorizationStatus(&s.store, [&](Status told) { answers.append(told); });
        QVERIFY(answers.isEmpty());
        s.desktop.pendingCheck(false);
        QCOMPARE(answers, QList { Status::denied });
    }

    void isCheckedAnewEachTime()
    {
        Setup s;
        QCOMPARE(s.status(), Status::fullAccess);
        s.desktop.isOpen = false;
        QCOMPARE(s.status(), Status::denied);
        s.desktop.isOpen = true;
        QCOMPARE(s.status(), Status::fullAccess);
    }

    void hasNoEventsOnceAccessIsGone()
    {
        Setup s;
        s.desktop.stored = { meeting(u"a"_s, 1, 2) };
        QCOMPARE(s.titles(), QStringList { u"a"_s });
        s.desktop.isOpen = false;
        QCOMPARE(s.status(), Status::denied);
        QVERIFY(s.titles().isEmpty());
        s.desktop.isOpen = true;
        QCOMPARE(s.status(), Status::fullAccess);
        QCOMPARE(s.titles(), QStringList { u"a"_s });
    }

    void ordersByStartThenSource()
    {
        Setup s;
        s.desktop.stored = { meeting(u"b"_s, 2, 3), meeting(u"d"_s, 3, 4) };
        s.folders.stored = { meeting(u"e"_s, 1, 2), meeting(u"a"_s, 2, 3) };
        QCOMPARE(s.titles(), QStringList({ u"e"_s, u"b"_s, u"a"_s, u"d"_s }));
    }

    void leavesOutWhatIsOfAnotherDay()
    {
        Setup s;
        s.desktop.stored = { meeting(u"ended"_s, -2, 0), meeting(u"over midnight"_s, -2, 1),
            meeting(u"moment"_s, 0, 0), meeting(u"late"_s, 23, 25),
            meeting(u"tomorrow"_s, 24, 25) };
        QCOMPARE(s.titles(), QStringList({ u"over midnight"_s, u"moment"_s, u"late"_s }));
    }

    void theSameSpanAsksNobodyAgain()
    {
        Setup s;
        for (int minute = 0; minute < 100; ++minute) {
            s.clock.advance(60);
            s.store.events(dayStart, dayEnd);
        }
        QCOMPARE(s.desktop.spans, QList({ TimeSpan { dayStart, dayEnd } }));
        QCOMPARE(s.folders.spans.size(), 1);
        QCOMPARE(s.desktop.checks, 0);
    }

    void anotherDayIsLookedFor()
    {
        Setup s;
        s.store.events(dayStart, dayEnd);
        s.store.events(dayEnd, dayEnd + std::chrono::hours(24));
        QCOMPARE(s.desktop.spans.size(), 2);
        QCOMPARE(s.desktop.spans.constLast().start, dayEnd);
    }

    void anotherZoneIsLookedForEvenWithTheSameSpan()
    {
        Setup s;
        s.store.events(dayStart, dayEnd);
        s.clock.timeZone = QTimeZone("Europe/Rome");
        s.store.events(dayStart, dayEnd);
        s.store.events(dayStart, dayEnd);
        QCOMPARE(s.desktop.spans.size(), 2);
    }

    void looksAgainWhenTheClockJumped()
    {
        Setup s;
        s.store.events(dayStart, dayEnd);
        s.clock.jumped();
        QCOMPARE(s.changes.count(), 1);
        s.store.events(dayStart, dayEnd);
        s.store.events(dayStart, dayEnd);
        QCOMPARE(s.desktop.spans,
            QList({ TimeSpan { dayStart, dayEnd }, TimeSpan { dayStart, dayEnd } }));
    }

    void aJumpAsksNobodyWithoutAccess()
    {
        Setup s;
        s.store.events(dayStart, dayEnd);
        s.desktop.isOpen = false;
        QCOMPARE(s.status(), Status::denied);
        s.clock.jumped();
        s.store.events(dayStart, dayEnd);
        QCOMPARE(s.changes.count(), 0);
        QCOMPARE(s.desktop.spans.size(), 1);
    }

    void aCheckThatWasOvertakenDoesNotCount()
    {
        Setup s;
        s.desktop.isSlow = true;
        QVERIFY(!s.status());
        const auto older = s.desktop.pendingCheck;
        s.desktop.isSlow = false;
        QCOMPARE(s.status(), Status::fullAccess);
        s.desktop.stored = { meeting(u"a"_s, 1, 2) };
        older(false);
        QCOMPARE(s.titles(), QStringList { u"a"_s });
    }

    void keepsToWhatWasToldWhateverIsWritten()
    {
        Setup s;
        s.desktop.stored = { meeting(u"a"_s, 1, 2) };
        QCOMPARE(s.status(), Status::fullAccess);
        s.defaults.setText(consentKey, u"yes"_s);
        QCOMPARE(s.titles(), QStringList { u"a"_s });
    }

    void tellsOfChangesInAnySource()
    {
        Setup s;
        s.store.events(dayStart, dayEnd);
        QCOMPARE(s.changes.count(), 0);
        s.desktop.change({ meeting(u"a"_s, 1, 2) });
        s.folders.change({ meeting(u"b"_s, 1, 2) });
        QCOMPARE(s.changes.count(), 2);
        QCOMPARE(s.titles(), QStringList({ u"a"_s, u"b"_s }));
    }
};

QTEST_GUILESS_MAIN(DesktopEventStoreTest)
#include "DesktopEventStoreTest.moc"
