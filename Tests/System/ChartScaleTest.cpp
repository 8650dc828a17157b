#include "App/System/ChartScale.h"

#include <QTest>

class ChartScaleTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFixedTopHolds() { QCOMPARE(ChartScale::top({ 300 }, 100), 100.0); }

    void withoutOneTheScaleFollowsTheData()
    {
        QCOMPARE(ChartScale::top({ 1, 10, 3 }, {}), 12.0);
        QCOMPARE(ChartScale::top({ 0.1 }, {}), 1.0);
        QCOMPARE(ChartScale::top({}, {}), 1.2);
    }

    void aQuietNetworkHasAScaleOfOneKilobyte()
    {
        QCOMPARE(ChartScale::networkTop({}, {}), 1024.0);
        QCOMPARE(ChartScale::networkTop({ 0, 0 }, { 0, 0 }), 1024.0);
        QCOMPARE(ChartScale::networkTop({ 853 }, { 0 }), 1024.0);
    }

    void aBurstEitherWayScalesBothCharts()
    {
        constexpr double mega = 1024 * 1024;
        QCOMPARE(ChartScale::networkTop({ 10 * mega, 0 }, { 1 }), 12 * mega);
        QCOMPARE(ChartScale::networkTop({ 1 }, { 0, 10 * mega }), 12 * mega);
    }
};

QTEST_GUILESS_MAIN(ChartScaleTest)
#include "ChartScaleTest.moc"
