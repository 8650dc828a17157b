#include "App/Ui/Corners.h"

#include <QTest>

class CornersTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void thePathFillsItsBox()
    {
        const QRectF box(10, 20, 150, 60);
        QCOMPARE(Corners::continuous(box, 16).boundingRect(), box);
    }

    void eachCornerTakesTheSameShape()
    {
        const QPainterPath path = Corners::continuous({ 0, 0, 100, 100 }, 16);
        for (const qreal offset : { 3.0, 4.0, 5.0, 6.0, 9.0 }) {
            const bool inside = path.contains(QPointF(offset, offset));
            QCOMPARE(path.contains(QPointF(100 - offset, offset)), inside);
            QCOMPARE(path.contains(QPointF(offset, 100 - offset)), inside);
            QCOMPARE(path.contains(QPointF(100 - offset, 100 - offset)), inside);
        }
        // The middle of the arc of radius r lies .293 r from both edges.
        QVERIFY(!path.contains(QPointF(4.4, 4.4)));
        QVERIFY(path.contains(QPointF(5.0, 5.0)));
    }

    void thePathRunsSmoothly()
    {
        const QPainterPath path = Corners::continuous({ 0, 0, 100, 100 }, 16);
        qreal before = path.angleAtPercent(0.001);
        for (int step = 1; step < 1000; ++step) {
            const qreal angle = path.angleAtPercent(step / 1000.0);
            const qreal turn = std::remainder(angle - before, 360);
            QVERIFY2(qAbs(turn) < 3, qPrintable(QString::number(step)));
            before = angle;
        }
    }

    void anEndWithoutARadiusIsSquare()
    {
        const QPainterPath path = Corners::continuous({ 0, 0, 150, 30 }, 0, 16);
        QVERIFY(path.contains(QPointF(0.1, 0.1)));
        QVERIFY(path.contains(QPointF(149.9, 0.1)));
        QVERIFY(!path.contains(QPointF(0.5, 29.5)));
    }
};

QTEST_MAIN(CornersTest)
#include "CornersTest.moc"
