#include "App/Ui/ScrollArea.h"
#include "App/Ui/ScrollBar.h"
#include "App/Ui/Theme.h"

#include <QScrollBar>
#include <QTest>

struct Setup {
    explicit Setup(int contentHeight)
    {
        Theme::apply({});
        auto* content = new QWidget;
        content->setMinimumHeight(contentHeight);
        area.resize(200, 100);
        area.setWidget(content);
        area.show();
    }

    int value() { return area.verticalScrollBar()->value(); }

    ScrollArea area;
};

class ScrollAreaTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theThumbIsShownOnlyWhereThereIsMore()
    {
        Setup all(100);
        QVERIFY(!all.area.bar().isShown());
        QVERIFY(all.area.bar().thumb().isEmpty());
        Setup more(400);
        QTRY_VERIFY(more.area.bar().isShown());
    }

    void theThumbTakesNoWidthFromTheContent()
    {
        Setup s(400);
        QCOMPARE(s.area.widget()->width(), 200);
        QCOMPARE(s.area.bar().geometry().right(), 199);
        QCOMPARE(s.area.bar().thumb().right(), ScrollBar::stripWidth - 1 - 3);
        QCOMPARE(s.area.bar().thumb().width(), 6);
    }

    void theThumbFadesAfterARest()
    {
        Setup s(400);
        QTRY_VERIFY(s.area.bar().isShown());
        QTRY_VERIFY(!s.area.bar().isShown());
        s.area.verticalScrollBar()->setValue(30);
        QVERIFY(s.area.bar().isShown());
    }

    void theThumbCanBeDragged()
    {
        Setup s(400);
        auto& bar = s.area.bar();
        const QPoint start = bar.thumb().center();
        QTest::mousePress(&bar, Qt::LeftButton, {}, start);
        QCOMPARE(s.value(), 0);
        QTest::mouseMove(&bar, start + QPoint(0, 30));
        QVERIFY(s.value() > 0);
        QTest::mouseMove(&bar, start + QPoint(0, 300));
        QCOMPARE(s.value(), s.area.verticalScrollBar()->maximum());
        QCOMPARE(bar.thumb().width(), 8);
        QTest::mouseRelease(&bar, Qt::LeftButton, {}, start);
        QCOMPARE(bar.thumb().bottom(), 96);
    }

    void theThumbStandsAtTheLeftFromRightToLeft()
    {
        Setup s(400);
        s.area.setLayoutDirection(Qt::RightToLeft);
        QCOMPARE(s.area.bar().x(), 0);
        QCOMPARE(s.area.bar().thumb().x(), 3);
    }
};

QTEST_MAIN(ScrollAreaTest)
#include "ScrollAreaTest.moc"
