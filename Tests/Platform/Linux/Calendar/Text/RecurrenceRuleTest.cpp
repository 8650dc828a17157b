#include "App/Platform/Linux/Calendar/Text/RecurrenceRule.h"

#include <QElapsedTimer>
#include <QStringList>
#include <QTest>

using namespace Qt::StringLiterals;

static std::int64_t seconds(const char* time)
{
    return StatedTime::parse(time).value_or(StatedTime()).seconds;
}

// Between the two, as dates with hours.
static QString starts(const char* text, const char* first, const char* from, const char* to)
{
    const auto rule = RecurrenceRule::parse(text, seconds(first));
    if (!rule)
        return u"no rule"_s;
    QStringList words;
    for (const auto start : rule->starts({ seconds(from), seconds(to) })) {
        const auto date = CivilTime::date(CivilTime::day(start));
        const auto hour = (start - CivilTime::day(start) * CivilTime::secondsPerDay) / 3600;
        words << u"%1-%2T%3"_s.arg(date.month).arg(date.day).arg(hour);
    }
    return words.join(u' ');
}

class RecurrenceRuleTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void startsAgain_data()
    {
        QTest::addColumn<QByteArray>("rule");
        QTest::addColumn<QByteArray>("first");
        QTest::addColumn<QString>("found");
        // From 22 March to 5 April 2026, the 22nd being a Sunday.
        const auto row = [](const char* rule, const char* first, const char* found) {
            QTest::newRow(rule) << QByteArray(rule) << QByteArray(first)
                                << QString::fromUtf8(found);
        };
        row("FREQ=WEEKLY", "20260108T100000", "3-26T10 4-2T10");
        row("FREQ=WEEKLY;INTERVAL=2;BYDAY=SU,MO", "20260309T100000", "3-23T10 3-29T10");
        row("FREQ=WEEKLY;INTERVAL=2;BYDAY=SU,MO;WKST=SU", "20260309T100000",
            "3-22T10 3-23T10 4-5T10");
        row("FREQ=WEEKLY;BYDAY=MO,WE,FR;BYSETPOS=-1", "20260109T100000", "3-27T10 4-3T10");
        row("FREQ=WEEKLY;BYDAY=MO;BYSETPOS=2", "20260105T100000", "");
        row("FREQ=HOURLY;INTERVAL=100", "19700101T000000", "3-25T12 3-29T16 4-2T20");
        row("FREQ=DAILY;INTERVAL=5;BYHOUR=9,15", "20260101T090000",
            "3-22T9 3-22T15 3-27T9 3-27T15 4-1T9 4-1T15");
        row("FREQ=MONTHLY", "20260131T100000", "3-31T10");
        row("FREQ=MONTHLY;BYMONTHDAY=-1", "20260131T100000", "3-31T10");
        row("FREQ=MONTHLY;BYDAY=-1FR", "20260130T100000", "3-27T10");
        row("FREQ=MONTHLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=1,-1", "20260130T100000", "3-31T10 4-1T10");
        row("FREQ=YEARLY", "19600329T100000", "3-29T10");
        row("FREQ=YEARLY;BYWEEKNO=14", "20250402T100000", "4-1T10");
        row("FREQ=YEARLY;BYWEEKNO=-40;BYDAY=MO", "20250401T100000", "3-30T10");
        row("FREQ=YEARLY;BYYEARDAY=90,-275", "20250331T100000", "3-31T10 4-1T10");
        row("FREQ=YEARLY;BYDAY=13MO", "20250331T100000", "3-30T10");
        row("FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30", "20250202T100000", "");
        row("FREQ=WEEKLY;BYDAY=1MO", "20260105T100000", "3-23T10 3-30T10");
        row("FREQ=DAILY;COUNT=90", "20260101T100000",
            "3-22T10 3-23T10 3-24T10 3-25T10 3-26T10 3-27T10 3-28T10 3-29T10 3-30T10 3-31T10");
        row("FREQ=DAILY;COUNT=3;BYDAY=SU", "20260315T100000", "3-22T10 3-29T10");
        row("FREQ=HOURLY;COUNT=492828", "19700101T000000",
            "3-22T0 3-22T1 3-22T2 3-22T3 3-22T4 3-22T5 3-22T6 3-22T7 3-22T8 3-22T9 3-22T10 "
            "3-22T11");
        row("INTERVAL=0;FREQ=WEEKLY;UNTIL=;COUNT=x;BYDAY=;BYMONTH=0,13;X-THING=1;;=",
            "20260108T100000", "3-26T10 4-2T10");
        row("FREQ=FORTNIGHTLY", "20260108T100000", "no rule");
        row("", "20260108T100000", "no rule");
    }

    void startsAgain()
    {
        QFETCH(const QByteArray, rule);
        QFETCH(const QByteArray, first);
        QFETCH(const QString, found);
        QCOMPARE(starts(rule.constData(), first.constData(), "20260322", "20260405T235959"), found);
    }

    void theFirstCountsWhereverItIs()
    {
        QCOMPARE(starts("FREQ=WEEKLY;BYDAY=MO;COUNT=2", "20260108T100000", "20260101", "20260201"),
            u"1-8T10 1-12T10"_s);
    }

    // The range begins later in a week than the event, or on the day of it.
    void aCountEndsInTheWeekOfItsLast_data()
    {
        QTest::addColumn<QByteArray>("rule");
        QTest::addColumn<QByteArray>("first");
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<QString>("found");
        const auto row = [](const char* rule, const char* first, const char* from,
                             const char* found) {
            QTest::addRow("%s from %s", rule, from) << QByteArray(rule) << QByteArray(first)
                                                    << QByteArray(from) << QString::fromUtf8(found);
        };
        row("FREQ=WEEKLY;COUNT=2", "20261102T100000", "20261113", "");
        row("FREQ=WEEKLY;COUNT=3", "20261102T100000", "20261113", "11-16T10");
        row("FREQ=WEEKLY;COUNT=5;BYDAY=TU", "20261006T100000", "20261107", "");
        row("FREQ=WEEKLY;COUNT=6;BYDAY=TU", "20261006T100000", "20261110", "11-10T10");
        row("FREQ=WEEKLY;COUNT=3;WKST=SU", "20261101T100000", "20261120", "");
        row("FREQ=WEEKLY;COUNT=4;WKST=SU", "20261101T100000", "20261120", "11-22T10");
    }

    void aCountEndsInTheWeekOfItsLast()
    {
        QFETCH(const QByteArray, rule);
        QFETCH(const QByteArray, first);
        QFETCH(const QByteArray, from);
        QFETCH(const QString, found);
        QCOMPARE(starts(rule.constData(), first.constData(), from.constData(), "20261122T235959")
                     .section(u' ', 0, 0),
            found);
    }

    void refusesWhatNoAppointmentNeeds_data()
    {
        QTest::addColumn<bool>("isRefused");
        QTest::newRow("FREQ=SECONDLY") << true;
        QTest::newRow("FREQ=MINUTELY;INTERVAL=600") << true;
        QTest::newRow("RSCALE=CHINESE;FREQ=YEARLY") << true;
        QTest::newRow("FREQ=DAILY;BYHOUR=1,2,3,4,5,6,7;BYMINUTE=1,2,3,4,5,6,7") << true;
        QTest::newRow("FREQ=DAILY;BYHOUR=1,2,3,4,5,6;BYMINUTE=1,2,3,4,5,6,7,8") << false;
        QTest::newRow("FREQ=HOURLY;BYMONTH=2") << false;
    }

    void refusesWhatNoAppointmentNeeds()
    {
        QFETCH(const bool, isRefused);
        const QByteArray rule(QTest::currentDataTag());
        QCOMPARE(RecurrenceRule::isRefused(rule.constData()), isRefused);
        QCOMPARE(!RecurrenceRule::parse(rule.constData(), 0), isRefused);
    }

    void aRuleThatNeverComesTrueTakesNoTime()
    {
        QElapsedTimer elapsed;
        elapsed.start();
        for (const auto* rule : { "FREQ=MONTHLY;BYMONTH=2;BYMONTHDAY=30",
                 "FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30;COUNT=9999",
                 "FREQ=HOURLY;BYMONTHDAY=31;BYMONTH=6;COUNT=2",
                 "FREQ=YEARLY;INTERVAL=999999999;BYSETPOS=366", "FREQ=DAILY;COUNT=999999999" })
            QCOMPARE(starts(rule, "00010101T000001", "20260301", "20260302"),
                QByteArray(rule).startsWith("FREQ=DAILY") ? u"3-1T0"_s : QString());
        QVERIFY2(elapsed.elapsed() < 500, QByteArray::number(elapsed.elapsed()));
    }
};

QTEST_GUILESS_MAIN(RecurrenceRuleTest)
#include "RecurrenceRuleTest.moc"
