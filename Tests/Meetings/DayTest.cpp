#include "App/Meetings/Day.h"

#include <QDateTime>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

static Moment momentOf(const QString& time)
{
    const auto parsed = QDateTime::fromString(time, Qt::ISODateWithMs);
    return Moment(std::chrono::milliseconds(parsed.toMSecsSinceEpoch()));
}

static QString textOf(Moment moment)
{
    const auto time = std::chrono::round<std::chrono::milliseconds>(moment.time_since_epoch());
    return QDateTime::fromMSecsSinceEpoch(time.count(), Qt::UTC).toString(u"dd HH:mm"_s);
}

class DayTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void beginsAndEndsByTheClocksOfThePlace_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QString>("now");
        QTest::addColumn<QString>("start");
        QTest::addColumn<QString>("end");
        const auto row = [](const char* name, const char* zone, const QString& now,
                             const QString& start, const QString& end) {
            QTest::newRow(name) << QByteArray(zone) << now << start << end;
        };
        row("winter", "Europe/Berlin", u"2023-01-10T12:00:00Z"_s, u"09 23:00"_s, u"10 23:00"_s);
        row("summer", "Europe/Berlin", u"2023-07-10T12:00:00Z"_s, u"09 22:00"_s, u"10 22:00"_s);
        row("23 hours", "Europe/Berlin", u"2023-03-26T12:00:00Z"_s, u"25 23:00"_s, u"26 22:00"_s);
        row("25 hours", "Europe/Berlin", u"2023-10-29T12:00:00Z"_s, u"28 22:00"_s, u"29 23:00"_s);
        row("its first moment", "Europe/Berlin", u"2023-01-09T23:00:00Z"_s, u"09 23:00"_s,
            u"10 23:00"_s);
        row("its last moment", "Europe/Berlin", u"2023-01-10T22:59:59.999Z"_s, u"09 23:00"_s,
            u"10 23:00"_s);
        row("ahead by 14 hours", "Pacific/Kiritimati", u"2023-01-10T12:00:00Z"_s, u"10 10:00"_s,
            u"11 10:00"_s);
        row("by three quarters", "Asia/Kathmandu", u"2023-01-10T18:15:00Z"_s, u"10 18:15"_s,
            u"11 18:15"_s);
        row("without a midnight", "America/Sao_Paulo", u"2018-11-04T12:00:00Z"_s, u"04 03:00"_s,
            u"05 02:00"_s);
        row("before one without", "America/Sao_Paulo", u"2018-11-03T12:00:00Z"_s, u"03 03:00"_s,
            u"04 03:00"_s);
        row("turned back at midnight", "America/Sao_Paulo", u"2018-02-18T02:30:00Z"_s,
            u"17 02:00"_s, u"18 03:00"_s);
        row("turned back to midnight", "America/Havana", u"2023-11-05T04:30:00Z"_s, u"05 04:00"_s,
            u"06 05:00"_s);
        row("before turning back", "America/Havana", u"2023-11-04T12:00:00Z"_s, u"04 04:00"_s,
            u"05 04:00"_s);
        row("before a day skipped", "Pacific/Apia", u"2011-12-30T00:00:00Z"_s, u"29 10:00"_s,
            u"30 10:00"_s);
        row("before 1970", "UTC", u"1969-12-31T23:59:59.500Z"_s, u"31 00:00"_s, u"01 00:00"_s);
        row("an unknown zone", "Nowhere/Nothing", u"2023-01-10T12:00:00Z"_s, u"10 00:00"_s,
            u"11 00:00"_s);
    }

    void beginsAndEndsByTheClocksOfThePlace()
    {
        QFETCH(QByteArray, zone);
        QFETCH(QString, now);
        const auto day = dayOf(momentOf(now), QTimeZone(zone));
        QTEST(textOf(day.start), "start");
        QTEST(textOf(day.end), "end");
        QVERIFY(day.start <= momentOf(now));
        QVERIFY(day.end > momentOf(now));
    }

    void aPartOfAMillisecondBeforeTheNextDayIsStillThisOne()
    {
        const auto midnight = momentOf(u"2023-01-11T00:00:00Z"_s);
        QCOMPARE(dayOf(midnight - 100us, QTimeZone::utc()).end, midnight);
        QCOMPARE(dayOf(Moment(-100us), QTimeZone::utc()).end, Moment());
    }
};

QTEST_GUILESS_MAIN(DayTest)
#include "DayTest.moc"
