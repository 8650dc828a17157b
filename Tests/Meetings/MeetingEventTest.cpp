#include "App/Meetings/MeetingEvent.h"
#include "App/Platform/EventStore.h"

#include <QTest>
#include <QUuid>

#include <type_traits>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class MeetingEventTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void takesWhatTheCalendarGives()
    {
        const Moment start(1'700'000'000.5s);
        const MeetingEvent event({ .identifier = u"calendar/1"_s,
            .title = u"Planning"_s,
            .start = start,
            .end = start + 30min,
            .isAllDay = true });
        QCOMPARE(event.id, u"calendar/1"_s);
        QCOMPARE(event.title, u"Planning"_s);
        QCOMPARE(event.start, start);
        QCOMPARE(event.end, start + 30min);
        QVERIFY(event.allDay);
    }

    void anEventNeedNotLastAllDay() { QVERIFY(!MeetingEvent(CalendarEvent()).allDay); }

    void anEventWithoutATitleIsUntitled()
    {
        QCOMPARE(MeetingEvent(CalendarEvent()).title, u"Untitled"_s);
        QCOMPARE(MeetingEvent({ .title = u""_s }).title, u""_s);
    }

    void anEventWithoutAnIdentifierGetsARandomOne()
    {
        const auto id = MeetingEvent(CalendarEvent()).id;
        const QUuid uuid(id);
        QCOMPARE(uuid.version(), QUuid::Random);
        QCOMPARE(id, uuid.toString(QUuid::WithoutBraces));
        QVERIFY(MeetingEvent(CalendarEvent()).id != id);
    }

    void anEventCannotButHaveAStartAndAnEnd()
    {
        QVERIFY((std::is_same_v<decltype(CalendarEvent::start), Moment>));
        QVERIFY((std::is_same_v<decltype(CalendarEvent::end), Moment>));
    }

    void anEventWithoutTextsHasNoLink()
    {
        const MeetingEvent event { CalendarEvent() };
        QVERIFY(!event.link);
        QVERIFY(!event.service);
    }

    void anEventWithoutAnAddressHasNoLink()
    {
        const MeetingEvent event(
            { .location = u"Room 4"_s, .notes = u"Bring cake"_s, .url = u"https://a.example"_s });
        QVERIFY(!event.link);
        QVERIFY(!event.service);
    }

    void anAddressThatCannotBeUnderstoodIsNoLink()
    {
        const MeetingEvent event({ .notes = u"https://zoom.us:room/j"_s });
        QVERIFY(!event.link);
        QVERIFY(!event.service);
    }

    void theLinkIsInTheFirstTextThatHasOne_data()
    {
        QTest::addColumn<QString>("location");
        QTest::addColumn<QString>("notes");
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("link");
        QTest::addColumn<QString>("service");
        const auto zoom = u"https://zoom.us/j/1"_s;
        const auto meet = u"https://meet.google.com/abc"_s;
        const auto teams = u"https://teams.live.com/meet/9"_s;
        const auto other = u"https://a.example"_s;
        QTest::newRow("location") << meet << zoom << teams << meet << u"Meet"_s;
        QTest::newRow("notes") << u"Room 4"_s << u"At "_s + zoom << teams << zoom << u"Zoom"_s;
        QTest::newRow("address") << QString() << u"Bring cake"_s << teams << teams << u"Teams"_s;
        QTest::newRow("another address first") << other << zoom << QString() << zoom << u"Zoom"_s;
    }

    void theLinkIsInTheFirstTextThatHasOne()
    {
        QFETCH(QString, location);
        QFETCH(QString, notes);
        QFETCH(QString, url);
        const MeetingEvent event({ .location = location, .notes = notes, .url = url });
        QVERIFY(event.link && event.service);
        QTEST(*event.link, "link");
        QTEST(*event.service, "service");
    }

    void anEventIsOverOnceItsEndHasPassed()
    {
        const Moment end(1'700'000'000s);
        const MeetingEvent event({ .end = end });
        QVERIFY(!event.isOver(end));
        QVERIFY(event.isOver(end + 1us));
    }
};

QTEST_GUILESS_MAIN(MeetingEventTest)
#include "MeetingEventTest.moc"
