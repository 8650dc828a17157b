#include "App/Core/Fixed.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

class FixedTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void roundsAsPrintfDoes_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("decimals");
        QTest::addColumn<QString>("text");
        QTest::newRow("down to even") << 12.5 << 0 << u"12"_s;
        QTest::newRow("up to even") << 13.5 << 0 << u"14"_s;
        QTest::newRow("half to nothing") << 0.5 << 0 << u"0"_s;
        QTest::newRow("quarter to even") << 0.25 << 1 << u"0.2"_s;
        QTest::newRow("by the exact value") << 0.15 << 1 << u"0.1"_s; // 0.1499…
        QTest::newRow("up") << 1023.9 << 0 << u"1024"_s;
        QTest::newRow("zeros") << 16.0 << 1 << u"16.0"_s;
        QTest::newRow("negative") << -1.26 << 1 << u"-1.3"_s;
        QTest::newRow("large") << 1e22 << 1 << u"10000000000000000000000.0"_s;
    }

    void roundsAsPrintfDoes()
    {
        QFETCH(double, value);
        QFETCH(int, decimals);
        QFETCH(QString, text);
        QCOMPARE(fixed(value, decimals), text);
    }

    void theLargestNumberFits()
    {
        QCOMPARE(fixed(std::numeric_limits<double>::lowest(), 1).size(), 1 + 309 + 2);
    }
};

QTEST_GUILESS_MAIN(FixedTest)
#include "FixedTest.moc"
