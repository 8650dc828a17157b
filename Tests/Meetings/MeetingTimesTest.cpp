#include "App/Meetings/MeetingTimes.h"
#include "App/Meetings/MeetingEvent.h"
#include "Tests/Meetings/TodaySetup.h"

#include <QTest>

using namespace Qt::StringLiterals;

static const QTimeZone berlin("Europe/Berlin");

static MeetingEvent meeting(Moment start, Moment end, bool isAllDay = false)
{
    return MeetingEvent({ .start = start, .end = end, .isAllDay = isAllDay });
}

class MeetingTimesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aTimeIsShortAndAsTheLocaleWritesIt_data()
    {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<QString>("morning");
        QTest::addColumn<QString>("afternoon");
        QTest::newRow("German") << QLocale(u"de_DE"_s) << u"09:05"_s << u"14:30"_s;
        QTest::newRow("British") << QLocale(u"en_GB"_s) << u"09:05"_s << u"14:30"_s;
        QTest::newRow("American") << QLocale(u"en_US"_s) << u"9:05 AM"_s << u"2:30 PM"_s;
        QTest::newRow("Finnish") << QLocale(u"fi_FI"_s) << u"9.05"_s << u"14.30"_s;
        QTest::newRow("Egyptian") << QLocale(u"ar_EG"_s) << u"٩:٠٥ ص"_s << u"٢:٣٠ م"_s;
        QTest::newRow("none") << QLocale::c() << u"09:05"_s << u"14:30"_s;
    }

    void aTimeIsShortAndAsTheLocaleWritesIt()
    {
        QFETCH(QLocale, locale);
        QFETCH(QString, morning);
        QFETCH(QString, afternoon);
        const TodaySetup s;
        const MeetingTimes times(berlin, locale);
        // Some locales part the time from its half of the day by a space of another kind.
        const auto plain = [](QString text) { return text.replace(QChar(0x202F), u' '); };
        QCOMPARE(plain(times.shortTime(s.at(9, 5))), morning);
        QCOMPARE(plain(times.shortTime(s.at(14, 30))), afternoon);
    }

    void midnightAndNoonAreTwelveWhereTheDayIsHalved()
    {
        const TodaySetup s;
        const MeetingTimes times(berlin, QLocale(u"en_US"_s));
        QVERIFY(times.shortTime(s.at(0, 0)).startsWith(u"12:00"_s));
        QVERIFY(times.shortTime(s.at(12, 0)).startsWith(u"12:00"_s));
    }

    void theTimeIsThatOfTheZone()
    {
        const TodaySetup s;
        const MeetingTimes times(QTimeZone("Asia/Kolkata"), QLocale(u"en_GB"_s));
        QCOMPARE(times.shortTime(s.at(10, 0)), u"14:30"_s);
    }

    void secondsAreCutNotRounded()
    {
        const TodaySetup s;
        const MeetingTimes times(berlin, QLocale(u"en_GB"_s));
        QCOMPARE(times.shortTime(s.at(10, 0) + std::chrono::duration<double>(59.9999)), u"10:00"_s);
        const Moment before1970(std::chrono::duration<double>(-0.5));
        QCOMPARE(times.shortTime(before1970), u"00:59"_s);
    }

    void aRowSaysWhenItsEventStarts()
    {
        const TodaySetup s;
        const MeetingTimes times(berlin, QLocale(u"en_GB"_s));
        QCOMPARE(times.label(meeting(s.at(10, 30), s.at(11, 15))), u"10:30"_s);
        QCOMPARE(times.label(meeting(s.at(0, 0), s.at(23, 59), true)), u"All day"_s);
    }

    void aSpanHasAnEnDash()
    {
        const TodaySetup s;
        const MeetingTimes times(berlin, QLocale(u"en_GB"_s));
        QCOMPARE(times.span(meeting(s.at(10, 30), s.at(11, 15))), u"10:30 \u2013 11:15"_s);
    }
};

QTEST_GUILESS_MAIN(MeetingTimesTest)
#include "MeetingTimesTest.moc"
