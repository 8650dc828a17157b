#include "App/Platform/Linux/Machine/SysfsAttribute.h"
#include "Tests/Support/SysfsFolder.h"

#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

class SysfsAttributeTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsTextsAndNumbers()
    {
        SysfsFolder folder;
        folder.write(u"status"_s, "Not charging");
        folder.write(u"current_now"_s, "-1500");
        QCOMPARE(SysfsAttribute::text(folder.path(u"status"_s)), "Not charging");
        QCOMPARE(SysfsAttribute::number(folder.path(u"current_now"_s)), -1500);
    }

    void whatIsNoNumberIsNone_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("text") << QByteArray("12 mV");
        QTest::newRow("nothing but zeros") << QByteArray(10, '\0');
        QTest::newRow("no integer of ours") << QByteArray("99999999999999999999");
        QTest::newRow("fraction") << QByteArray("1.5");
    }

    void whatIsNoNumberIsNone()
    {
        QFETCH(QByteArray, value);
        SysfsFolder folder;
        folder.write(u"capacity"_s, value);
        QVERIFY(!SysfsAttribute::number(folder.path(u"capacity"_s)));
    }

    void takesSmallRegularFilesOnly()
    {
        SysfsFolder folder;
        const auto fifo = folder.path(u"fifo"_s);
        QCOMPARE(mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        folder.write(u"page"_s, QByteArray(4095, 'x'));
        folder.write(u"huge"_s, QByteArray(1'000'000, '1'));
        QVERIFY(!SysfsAttribute::text(fifo));
        QVERIFY(!SysfsAttribute::text(folder.path()));
        QVERIFY(!SysfsAttribute::text(u"/dev/zero"_s));
        QVERIFY(!SysfsAttribute::text(folder.path(u"missing"_s)));
        QCOMPARE(SysfsAttribute::text(folder.path(u"page"_s)), QByteArray(4095, 'x'));
        QVERIFY(!SysfsAttribute::text(folder.path(u"huge"_s)));
    }
};

QTEST_GUILESS_MAIN(SysfsAttributeTest)
#include "SysfsAttributeTest.moc"
