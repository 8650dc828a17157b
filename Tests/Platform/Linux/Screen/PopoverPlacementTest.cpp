#include "App/Platform/Linux/Screen/PopoverPlacement.h"

#include <QTest>

namespace {

const QSize size(400, 500);
const QRect whole(0, 0, 1280, 720);
const ScreenSpace topPanel { whole, whole.adjusted(0, 26, 0, 0) };
const ScreenSpace bottomPanel { whole, whole.adjusted(0, 0, 0, -40) };
const ScreenSpace leftPanel { whole, whole.adjusted(48, 0, 0, 0) };
const ScreenSpace rightPanel { whole, whole.adjusted(0, 0, -48, 0) };
const ScreenSpace noPanel { whole, whole };

}

class PopoverPlacementTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void standsWhereItShould_data()
    {
        QTest::addColumn<QRect>("anchor");
        QTest::addColumn<ScreenSpace>("screen");
        QTest::addColumn<QPoint>("origin");
        QTest::newRow("centred under the item")
            << QRect(600, 2, 60, 22) << topPanel << QPoint(429, 32);
        QTest::newRow("inside the left edge") << QRect(4, 2, 22, 22) << topPanel << QPoint(6, 32);
        QTest::newRow("inside the right edge")
            << QRect(1250, 2, 22, 22) << topPanel << QPoint(874, 32);
        QTest::newRow("below the panel though only the pointer is known")
            << QRect(600, 13, 1, 1) << topPanel << QPoint(400, 32);
        QTest::newRow("above a panel at the bottom")
            << QRect(600, 690, 22, 22) << bottomPanel << QPoint(410, 174);
        QTest::newRow("beside a panel at the left")
            << QRect(10, 300, 22, 22) << leftPanel << QPoint(54, 60);
        QTest::newRow("beside a panel at the right")
            << QRect(1250, 20, 22, 22) << rightPanel << QPoint(826, 6);
        QTest::newRow("under the item where panels keep no space free")
            << QRect(600, 2, 60, 22) << noPanel << QPoint(429, 30);
        QTest::newRow("at the end of a top panel when the place is unknown")
            << QRect() << topPanel << QPoint(874, 32);
        QTest::newRow("at the end of a bottom panel when the place is unknown")
            << QRect() << bottomPanel << QPoint(874, 174);
        const QRect second(1280, 0, 1920, 1080);
        QTest::newRow("on the second screen")
            << QRect(3100, 2, 22, 22) << ScreenSpace { second, second.adjusted(0, 26, 0, 0) }
            << QPoint(2794, 32);
        const QRect small(0, 0, 320, 240);
        QTest::newRow("from the top left corner where it does not fit")
            << QRect(300, 2, 16, 16) << ScreenSpace { small, small } << QPoint(6, 6);
    }

    void standsWhereItShould()
    {
        QFETCH(QRect, anchor);
        QFETCH(ScreenSpace, screen);
        QTEST(popoverOrigin(anchor, size, screen), "origin");
    }
};

QTEST_GUILESS_MAIN(PopoverPlacementTest)
#include "PopoverPlacementTest.moc"
