#include "App/Ui/PixelGrid.h"

#include <QImage>
#include <QPainter>
#include <QTest>

struct Canvas {
    explicit Canvas(qreal scale) { image.setDevicePixelRatio(scale); }

    QImage image { 40, 40, QImage::Format_RGB32 };
};

class PixelGridTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void wholePointsStayAtWholeScales_data()
    {
        QTest::addColumn<qreal>("scale");
        QTest::newRow("1") << 1.0;
        QTest::newRow("2") << 2.0;
    }

    void wholePointsStayAtWholeScales()
    {
        QFETCH(qreal, scale);
        Canvas canvas(scale);
        const QPainter painter(&canvas.image);
        QCOMPARE(PixelGrid::snapped(painter, { 1, 3, 10, 5 }), QRectF(1, 3, 10, 5));
    }

    void edgesBetweenPixelsMoveToTheNextOne()
    {
        Canvas canvas(1.5);
        const QPainter painter(&canvas.image);
        const auto box = PixelGrid::snapped(painter, { 0, 1, 10, 6 });
        QCOMPARE(box.top() * 1.5, 2.0);
        QCOMPARE(box.bottom() * 1.5, 11.0);
        QCOMPARE(box.left(), 0.0);
        QCOMPARE(box.right(), 10.0);
    }

    void thePlaceOfTheBoxCounts()
    {
        Canvas canvas(1.5);
        QPainter painter(&canvas.image);
        painter.translate(0, 1);
        const auto box = PixelGrid::snapped(painter, { 0, 0, 10, 6 });
        QCOMPARE((box.top() + 1) * 1.5, 2.0);
    }
};

QTEST_MAIN(PixelGridTest)
#include "PixelGridTest.moc"
