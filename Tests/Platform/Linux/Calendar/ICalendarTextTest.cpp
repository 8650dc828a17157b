#include "App/Platform/Linux/Calendar/ICalendarText.h"

#include <QTest>

using namespace Qt::StringLiterals;

class ICalendarTextTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void findsTheUid_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("uid");
        QTest::newRow("plain") << u"BEGIN:VEVENT\r\nUID:a@b\r\nEND:VEVENT\r\n"_s << u"a@b"_s;
        QTest::newRow("bare newline") << u"BEGIN:VEVENT\nUID:a\nEND:VEVENT"_s << u"a"_s;
        QTest::newRow("first line") << u"UID:a"_s << u"a"_s;
        QTest::newRow("lower case") << u"x\nuid:a\n"_s << u"a"_s;
        QTest::newRow("folded") << u"x\r\nUID:ab\r\n cd\r\n\tef\r\nX:y"_s << u"abcdef"_s;
        QTest::newRow("folded at once") << u"x\r\nUID:\r\n ab\r\nX:y"_s << u"ab"_s;
        QTest::newRow("parameters") << u"x\nUID;X=\"a:b\";Y=c:d:e\n"_s << u"d:e"_s;
        QTest::newRow("escaped") << u"x\nUID:a\\,b\\;c\\\\d\\ne\n"_s << u"a,b;c\\d\ne"_s;
        QTest::newRow("other property") << u"X-UID:a\nUIDS:b\nSUMMARY:UID:c\n"_s << QString();
        QTest::newRow("none") << u"BEGIN:VEVENT\nEND:VEVENT"_s << QString();
        QTest::newRow("cut off") << u"x\nUID"_s << QString();
        QTest::newRow("empty") << QString() << QString();
    }

    void findsTheUid()
    {
        QFETCH(QString, text);
        QFETCH(QString, uid);
        QCOMPARE(ICalendarText::uid(text), uid);
    }

    void knowsASeries_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isRecurring");
        QTest::newRow("rule") << u"x\nRRULE:FREQ=DAILY\n"_s << true;
        QTest::newRow("dates") << u"x\nRDATE;VALUE=DATE:20260101\n"_s << true;
        QTest::newRow("part") << u"x\nRECURRENCE-ID;TZID=A:20260101T000000\n"_s << true;
        QTest::newRow("single") << u"x\nDTSTART:20260101T000000\n"_s << false;
        QTest::newRow("in words") << u"x\nSUMMARY:RRULE:none\nDESCRIPTION:a\n RDATE:b\n"_s << false;
    }

    void knowsASeries()
    {
        QFETCH(QString, text);
        QFETCH(bool, isRecurring);
        QCOMPARE(ICalendarText::isRecurring(text), isRecurring);
    }
};

QTEST_GUILESS_MAIN(ICalendarTextTest)
#include "ICalendarTextTest.moc"
