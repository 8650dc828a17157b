#include "App/Meetings/MeetingsContent.h"
#include "App/Meetings/MeetingTimes.h"
#include "Tests/Meetings/TodaySetup.h"

#include <QTest>

using namespace Qt::StringLiterals;

struct Setup : TodaySetup {
    QList<MeetingLine> lines() const { return meetingLines(model, times); }
    std::optional<MeetingCard> card() const { return nextMeeting(model, times); }

    MeetingTimes times { clock.timeZone, QLocale(u"en_GB"_s) };
};

class MeetingsContentTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void accessDecidesOnTheBody()
    {
        Setup s;
        QCOMPARE(meetingsBody(s.model), MeetingsBody::notAsked);
        s.model.handle(true);
        QCOMPARE(meetingsBody(s.model), MeetingsBody::noEvents);
        s.addTypicalDay();
        s.model.refresh();
        QCOMPARE(meetingsBody(s.model), MeetingsBody::events);
        s.model.handle(false);
        QCOMPARE(s.model.events().size(), 5);
        QCOMPARE(meetingsBody(s.model), MeetingsBody::denied);
    }

    void everyEventIsALine()
    {
        Setup s;
        s.addTypicalDay();
        s.model.handle(true);
        const auto lines = s.lines();
        QCOMPARE(lines.size(), 5);
        QCOMPARE(lines[0],
            (MeetingLine { u"Release week"_s, u"Release week"_s, u"All day"_s, {}, u"Join"_s }));
        QCOMPARE(lines[1],
            (MeetingLine {
                u"Standup"_s, u"Standup"_s, u"09:15"_s, s.meet, u"Meet"_s, true, false }));
        QCOMPARE(lines[2],
            (MeetingLine { u"Design review"_s, u"Design review"_s, u"10:30"_s, s.zoom, u"Zoom"_s,
                false, true }));
        QCOMPARE(lines[4].service, u"Teams"_s);
    }

    void anEventIsOverOnceItsEndHasPassed()
    {
        Setup s;
        s.add(u"a"_s, s.at(9, 0), s.at(10, 0));
        s.model.handle(true);
        QVERIFY(!s.lines()[0].isOver);
        s.clock.advance(0.001);
        QVERIFY(s.lines()[0].isOver);
    }

    void theCardTellsOfTheNextMeeting()
    {
        Setup s;
        QVERIFY(!s.card());
        s.addAllDay(u"Release week"_s);
        s.model.handle(true);
        QVERIFY(!s.card());
        s.add(u"Hiring sync"_s, s.at(14, 0), s.at(14, 45), s.teams);
        s.model.refresh();
        QCOMPARE(s.card(),
            (MeetingCard { u"Next: Hiring sync"_s, u"14:00 – 14:45"_s, s.teams, u"Join Teams"_s }));
    }

    void aMeetingWithoutALinkHasNoneToJoin()
    {
        Setup s;
        s.add(u"Lunch"_s, s.at(12, 0), s.at(13, 0));
        s.model.handle(true);
        QVERIFY(!s.card()->link);
        QVERIFY(!s.lines()[0].link);
    }

    void aTitleIsOneLine()
    {
        Setup s;
        s.add(u"a\r\nb\tc\u2028d & <b>e</b>  f"_s, s.at(12, 0), s.at(13, 0));
        s.model.handle(true);
        QCOMPARE(s.lines()[0].title, u"a b c d & <b>e</b>  f"_s);
        QCOMPARE(s.card()->title, u"Next: a b c d & <b>e</b>  f"_s);
    }

    void theSignsOfATitleFromTheRightStayWithIt()
    {
        Setup s;
        s.add(u"تصميم!"_s, s.at(12, 0), s.at(13, 0));
        s.model.handle(true);
        QCOMPARE(s.card()->title, u"Next: \u2068تصميم!\u2069"_s);
        QCOMPARE(s.lines()[0].title, u"\u2068تصميم!\u2069"_s);
    }

    void noTitleTurnsWhatFollows_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("shown");
        QTest::newRow("override") << u"a\u202Eb"_s << u"\u2068a\u202Eb\u2069"_s;
        QTest::newRow("right within left") << u"a שלום"_s << u"\u2068a שלום\u2069"_s;
        QTest::newRow("beyond the first plane") << u"\U00010900"_s << u"\u2068\U00010900\u2069"_s;
        QTest::newRow("open") << u"a\u2067b"_s << u"\u2068a\u2067b\u2069\u2069"_s;
        QTest::newRow("closed") << u"a\u2069\u202Eb"_s << u"\u2068a\u202Eb\u2069"_s;
        QTest::newRow("from left to right") << u"Café – 11:00"_s << u"Café – 11:00"_s;
    }

    void noTitleTurnsWhatFollows()
    {
        QFETCH(QString, title);
        Setup s;
        s.add(title, s.at(12, 0), s.at(13, 0));
        s.model.handle(true);
        QTEST(s.lines()[0].title, "shown");
        QCOMPARE(s.card()->title, u"Next: "_s + s.lines()[0].title);
    }
};

QTEST_GUILESS_MAIN(MeetingsContentTest)
#include "MeetingsContentTest.moc"
