#include "App/System/ChartLine.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

class ChartLineTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void fewerThanTwoPointsMakeNoStroke()
    {
        QVERIFY(ChartLine::strokes({}, 1).isEmpty());
        QVERIFY(ChartLine::strokes({ { 3, 4 } }, 1).isEmpty());
    }

    void twoPointsMakeOne()
    {
        QCOMPARE(ChartLine::strokes({ { 0, 0 }, { 1, 9 } }, 0), QList { QLineF(0, 0, 1, 9) });
    }

    void pointsInALineMakeOne()
    {
        QCOMPARE(ChartLine::strokes({ { 0, 0 }, { 1, 2 }, { 2, 4 }, { 5, 10 } }, 1e-9),
            QList { QLineF(0, 0, 5, 10) });
    }

    void aBendBeginsAnother()
    {
        QCOMPARE(ChartLine::strokes({ { 0, 0 }, { 1, 0 }, { 2, 0 }, { 3, 5 } }, 0.1),
            QList({ QLineF(0, 0, 2, 0), QLineF(2, 0, 3, 5) }));
    }

    void aPointWithinTheToleranceIsPassedBy()
    {
        QCOMPARE(ChartLine::strokes({ { 0, 0 }, { 1, 0.5 }, { 2, 0 } }, 0.5).size(), 1);
        QCOMPARE(ChartLine::strokes({ { 0, 0 }, { 1, -0.5 }, { 2, 0 } }, 0.5).size(), 1);
        QCOMPARE(ChartLine::strokes({ { 0, 0 }, { 1, 0.5 }, { 2, 0 } }, 0.49).size(), 2);
        QCOMPARE(ChartLine::strokes({ { 0, 0 }, { 1, -0.5 }, { 2, 0 } }, 0.49).size(), 2);
    }

    // Each step is small, yet they must not add up.
    void aSlowCurveIsNotCutOff()
    {
        constexpr qreal tolerance = 0.1;
        QRandomGenerator random(1);
        QList<QPointF> points;
        qreal height = 0;
        for (int x = 0; x < 60; ++x) {
            height += (random.generateDouble() - 0.5) * tolerance;
            points << QPointF(x, height);
        }
        const auto strokes = ChartLine::strokes(points, tolerance);
        QVERIFY(strokes.size() > 1 && strokes.size() < points.size() - 1);
        QCOMPARE(strokes.first().p1(), points.first());
        QCOMPARE(strokes.last().p2(), points.last());
        for (qsizetype index = 1; index < strokes.size(); ++index)
            QCOMPARE(strokes[index].p1(), strokes[index - 1].p2());
        for (const auto& point : points) {
            const auto over = std::ranges::find_if(
                strokes, [&](const QLineF& stroke) { return stroke.x2() >= point.x(); });
            const auto there = over->pointAt((point.x() - over->x1()) / over->dx());
            QVERIFY(qAbs(there.y() - point.y()) <= tolerance + 1e-9);
        }
    }
};

QTEST_GUILESS_MAIN(ChartLineTest)
#include "ChartLineTest.moc"
