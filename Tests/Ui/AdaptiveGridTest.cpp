#include "App/Ui/AdaptiveGrid.h"

#include <QTest>

class AdaptiveGridTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void asManyColumnsAsFitFillTheWidth()
    {
        const AdaptiveGrid grid(372, 110, 6, 24);
        QCOMPARE(grid.columns(), 3);
        QCOMPARE(grid.cell(0), QRect(0, 0, 120, 24));
        QCOMPARE(grid.cell(2), QRect(252, 0, 120, 24));
        QCOMPARE(grid.cell(3), QRect(0, 30, 120, 24));
    }

    void whatDoesNotDivideLeavesTheEdgesStraight()
    {
        const AdaptiveGrid grid(372, 90, 8, 66);
        QCOMPARE(grid.columns(), 3);
        QCOMPARE(grid.cell(0).width(), 119);
        QCOMPARE(grid.cell(1), QRect(127, 0, 118, 66));
        QCOMPARE(grid.cell(2).right() + 1, 372);
    }

    void aColumnMoreTakesItsWholeWidth()
    {
        QCOMPARE(AdaptiveGrid(457, 110, 6, 24).columns(), 3);
        QCOMPARE(AdaptiveGrid(458, 110, 6, 24).columns(), 4);
    }

    void thereIsAlwaysOneColumn()
    {
        const AdaptiveGrid grid(50, 110, 6, 24);
        QCOMPARE(grid.columns(), 1);
        QCOMPARE(grid.cell(1), QRect(0, 30, 50, 24));
    }

    void itIsAsHighAsItsRows()
    {
        const AdaptiveGrid grid(372, 110, 6, 24);
        QCOMPARE(grid.height(0), 0);
        QCOMPARE(grid.height(3), 24);
        QCOMPARE(grid.height(4), 54);
    }
};

QTEST_GUILESS_MAIN(AdaptiveGridTest)
#include "AdaptiveGridTest.moc"
