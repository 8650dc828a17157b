#include "Tests/Meetings/MeetingsSetup.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using Setup = MeetingsSetup;

class CalendarModelTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void atFirstAccessWasNotAskedFor()
    {
        Setup s;
        QVERIFY(!s.model.authorized());
        QVERIFY(!s.model.denied());
        QVERIFY(s.model.events().isEmpty());
        QCOMPARE(s.model.next(), nullptr);
        QVERIFY(s.store.queries.isEmpty());
        QVERIFY(!s.timer.isRunning());
        QVERIFY(!s.midnight.isRunning());
    }

    void theAnswerToARequestIsTaken_data()
    {
        QTest::addColumn<bool>("granted");
        QTest::newRow("granted") << true;
        QTest::newRow("refused") << false;
    }

    void theAnswerToARequestIsTaken()
    {
        QFETCH(bool, granted);
        Setup s;
        s.model.requestAccess();
        QVERIFY(!s.model.authorized() && !s.model.denied());
        s.store.pendingRequest(granted);
        QCOMPARE(s.model.authorized(), granted);
        QCOMPARE(s.model.denied(), !granted);
    }

    void theAuthorizationElsewhereIsTaken_data()
    {
        QTest::addColumn<AuthorizationStatus>("status");
        QTest::addColumn<bool>("authorized");
        QTest::addColumn<bool>("denied");
        QTest::newRow("not determined") << AuthorizationStatus::notDetermined << false << false;
        QTest::newRow("refused") << AuthorizationStatus::denied << false << true;
        QTest::newRow("granted") << AuthorizationStatus::fullAccess << true << false;
    }

    void theAuthorizationElsewhereIsTaken()
    {
        QFETCH(AuthorizationStatus, status);
        Setup s;
        s.store.status = status;
        s.model.checkAuthorization();
        QCOMPARE(s.store.checks, 1);
        QTEST(s.model.authorized(), "authorized");
        QTEST(s.model.denied(), "denied");
    }

    void anUndeterminedAuthorizationChangesNothing()
    {
        Setup s;
        s.model.handle(true);
        QSignalSpy announcements(&s.model, &Model::willChange);
        s.model.checkAuthorization();
        QCOMPARE(announcements.count(), 0);
        QCOMPARE(s.store.queries.size(), 1);
        QVERIFY(s.model.authorized());
    }

    void anAnswerAfterTheEndGoesNowhere()
    {
        FakeEventStore store;
        FakeClock clock;
        FakeTicker timer;
        FakeTicker midnight;
        auto model = std::make_unique<CalendarModel>(store, clock, timer, midnight);
        store.answersLater = true;
        model->requestAccess();
        model->checkAuthorization();
        model.reset();
        store.pendingRequest(true);
        store.pendingCheck(AuthorizationStatus::fullAccess);
        Q_EMIT store.changed();
        QVERIFY(store.queries.isEmpty());
    }

    void announcesEachAnswerBeforeItStoresIt()
    {
        Setup s;
        QList<std::pair<bool, bool>> seen;
        connect(&s.model, &Model::willChange, this, [&] {
            seen.append({ s.model.authorized(), s.model.denied() });
        });
        s.model.handle(false);
        QCOMPARE(seen, (QList<std::pair<bool, bool>> { { false, false }, { false, false } }));
        seen.clear();
        s.model.handle(true);
        QCOMPARE(seen,
            (QList<std::pair<bool, bool>> { { false, true }, { true, true }, { true, false } }));
    }

    void announcesTheEventsOnceAndBeforeItStoresThem()
    {
        Setup s;
        s.model.handle(true);
        s.store.stored = { s.event(u"a"_s, 9, 10), s.event(u"b"_s, 11, 12) };
        QList<QStringList> seen;
        connect(&s.model, &Model::willChange, this, [&] { seen.append(s.titles()); });
        s.model.refresh();
        QCOMPARE(seen, QList<QStringList> { {} });
        QCOMPARE(s.titles(), (QStringList { u"a"_s, u"b"_s }));
    }

    void announcesARefreshThatFoundTheSame()
    {
        Setup s;
        s.store.stored = { s.event(u"a"_s, 9, 10) };
        s.model.handle(true);
        QSignalSpy announcements(&s.model, &Model::willChange);
        s.model.refresh();
        QCOMPARE(announcements.count(), 1);
    }

    void aGrantLoadsTheEventsOfToday()
    {
        Setup s;
        s.store.stored = { s.event(u"a"_s, 9, 10) };
        s.model.handle(true);
        QCOMPARE(s.titles(), QStringList { u"a"_s });
        QCOMPARE(s.store.queries.size(), 1);
        QCOMPARE(s.store.queries.first(), std::pair(s.at(0), s.at(24)));
    }

    void aRefusalLoadsNothing()
    {
        Setup s;
        s.model.handle(false);
        QVERIFY(s.store.queries.isEmpty());
        QVERIFY(!s.timer.isRunning());
        QVERIFY(!s.midnight.isRunning());
        Q_EMIT s.store.changed();
        QVERIFY(s.store.queries.isEmpty());
    }

    void aRefusalAfterAGrantLeavesTheEventsAndTheTimer()
    {
        Setup s;
        s.store.stored = { s.event(u"a"_s, 9, 10) };
        s.model.handle(true);
        s.model.handle(false);
        QVERIFY(s.model.denied());
        QVERIFY(!s.model.authorized());
        QCOMPARE(s.titles(), QStringList { u"a"_s });
        QVERIFY(s.timer.isRunning());
        s.store.stored.clear();
        s.timer.fire();
        QVERIFY(s.model.events().isEmpty());
    }

    void aStoreThatYieldsNothingEmptiesTheList()
    {
        Setup s;
        s.store.stored = { s.event(u"a"_s, 9, 10) };
        s.model.handle(true);
        s.store.stored.clear();
        Q_EMIT s.store.changed();
        QVERIFY(s.model.events().isEmpty());
        QVERIFY(s.model.authorized());
    }

    void theTimerRefreshesEachMinute()
    {
        Setup s;
        s.model.handle(true);
        QCOMPARE(s.timer.interval, 60s);
        s.timer.fire();
        s.timer.fire();
        QCOMPARE(s.store.queries.size(), 3);
    }

    void threeGrantsMakeOneTimerAndOneObserver()
    {
        Setup s;
        for (int i = 0; i < 3; ++i)
            s.model.handle(true);
        QCOMPARE(s.store.queries.size(), 3);
        QCOMPARE(s.timer.starts, 1);
        Q_EMIT s.store.changed();
        QCOMPARE(s.store.queries.size(), 4);
        Q_EMIT s.clock.jumped();
        QCOMPARE(s.store.queries.size(), 5);
    }

    void aChangeInTheStoreRefreshes()
    {
        Setup s;
        s.model.handle(true);
        s.store.stored = { s.event(u"a"_s, 9, 10) };
        Q_EMIT s.store.changed();
        QCOMPARE(s.titles(), QStringList { u"a"_s });
    }

    void midnightBringsTheNextDay()
    {
        Setup s;
        s.model.handle(true);
        QCOMPARE(s.midnight.interval, 13h + 30min);
        s.clock.time = s.at(24);
        s.midnight.fire();
        QCOMPARE(s.store.queries.last(), std::pair(s.at(24), s.at(48)));
        QCOMPARE(s.midnight.interval, 24h);
    }

    void midnightIsNeverTooEarly()
    {
        Setup s;
        s.clock.time = s.at(24) - 100us;
        s.model.handle(true);
        QCOMPARE(s.midnight.interval, 1ms);
    }

    void eachRefreshSetsMidnightAnew()
    {
        Setup s;
        s.model.handle(true);
        s.clock.time = s.at(23.5);
        s.timer.fire();
        QCOMPARE(s.midnight.interval, 30min);
    }

    void aClockThatIsSetToAnotherDayBringsThatDay()
    {
        Setup s;
        s.model.handle(true);
        s.clock.time = s.at(24 * 3 + 1);
        Q_EMIT s.clock.jumped();
        QCOMPARE(s.store.queries.last(), std::pair(s.at(24 * 3), s.at(24 * 4)));
        QCOMPARE(s.midnight.interval, 23h);
    }

    void anotherZoneHasAnotherDay()
    {
        Setup s;
        s.model.handle(true);
        s.clock.timeZone = QTimeZone("America/New_York");
        Q_EMIT s.clock.jumped();
        QCOMPARE(s.store.queries.last(), std::pair(s.at(6), s.at(30)));
        QCOMPARE(s.midnight.interval, 19h + 30min);
    }

    void eventsAreOrderedByTheirStart()
    {
        Setup s;
        s.store.stored = { s.event(u"noon"_s, 12, 13), s.event(u"morning"_s, 8, 14),
            s.event(u"since yesterday"_s, -1, 1), s.event(u"into tomorrow"_s, 23, 25) };
        s.model.handle(true);
        QCOMPARE(s.titles(),
            (QStringList { u"since yesterday"_s, u"morning"_s, u"noon"_s, u"into tomorrow"_s }));
    }

    void eventsWithEqualStartsKeepTheStoresOrder()
    {
        Setup s;
        QStringList expected;
        s.store.stored << s.event(u"last"_s, 12, 13);
        // Enough of them for a sort that is not stable to show.
        for (int i = 0; i < 100; ++i) {
            expected << QString::number(i);
            s.store.stored << s.event(expected.last(), 9, 10 + i % 3);
        }
        s.model.handle(true);
        QCOMPARE(s.titles(), expected << u"last"_s);
    }

    void eventsThatAreOverOrLastAllDayAreListedButNeverNext()
    {
        Setup s;
        s.store.stored = { s.event(u"whole day"_s, 0, 24), s.event(u"over"_s, 8, 9) };
        s.store.stored.first().isAllDay = true;
        s.model.handle(true);
        QCOMPARE(s.titles(), (QStringList { u"whole day"_s, u"over"_s }));
        QCOMPARE(s.model.next(), nullptr);
    }

    void aMeetingUnderWayIsNextUntilItsEnd()
    {
        Setup s;
        s.store.stored = { s.event(u"ten"_s, 10, 11), s.event(u"eleven"_s, 11, 12) };
        s.model.handle(true);
        QCOMPARE(s.next(), u"ten"_s);
        s.clock.time = s.at(11);
        QCOMPARE(s.next(), u"eleven"_s);
        s.clock.time = s.at(12);
        QCOMPARE(s.model.next(), nullptr);
    }

    void theEarliestStartIsNextNotTheEarliestEnd()
    {
        Setup s;
        s.store.stored = { s.event(u"short"_s, 10.25, 10.75), s.event(u"long"_s, 10, 12) };
        s.model.handle(true);
        QCOMPARE(s.next(), u"long"_s);
    }

    void theLinkIsFound()
    {
        Setup s;
        auto event = s.event(u"a"_s, 9, 10);
        event.notes = u"https://zoom.us/j/1"_s;
        s.store.stored = { event };
        s.model.handle(true);
        QCOMPARE(s.model.events().first().service, u"Zoom"_s);
    }

    void anEventWithoutAnIdentifierKeepsItsIdUntilItChanges()
    {
        Setup s;
        s.store.stored = { s.event(u"a"_s, 9, 10), s.event(u"a"_s, 9, 10), s.event(u"b"_s, 9, 10) };
        for (auto& event : s.store.stored)
            event.identifier.reset();
        const auto ids = [&] {
            QStringList all;
            for (const auto& event : s.model.events())
                all << event.id;
            return all;
        };
        s.model.handle(true);
        const auto before = ids();
        QVERIFY(before[0] != before[1]);
        s.timer.fire();
        QCOMPARE(ids(), before);
        s.store.stored[2].notes = u"https://zoom.us/j/1"_s;
        s.store.stored.prepend(s.event(u"early"_s, 8, 9));
        s.timer.fire();
        QCOMPARE(ids().mid(1, 2), before.first(2));
        QVERIFY(ids().last() != before.last());
        QCOMPARE(s.model.events().last().service, u"Zoom"_s);
    }

    void anEventIsOverOnlyAfterItsEnd()
    {
        Setup s;
        s.store.stored = { s.event(u"a"_s, 10, 11) };
        s.model.handle(true);
        s.clock.time = s.at(11);
        QVERIFY(!s.model.isOver(s.model.events().first()));
        s.clock.advance(0.001);
        QVERIFY(s.model.isOver(s.model.events().first()));
    }
};

QTEST_GUILESS_MAIN(CalendarModelTest)
#include "CalendarModelTest.moc"
