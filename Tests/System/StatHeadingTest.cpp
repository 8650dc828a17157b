#include "App/System/StatHeading.h"
#include "App/Ui/Theme.h"

#include <QPaintEvent>
#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;

// What of a widget has been asked to be painted again.
class PaintedRegion final : public QObject {
public:
    explicit PaintedRegion(QWidget& widget) { widget.installEventFilter(this); }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            region += static_cast<QPaintEvent*>(event)->region();
        return false;
    }

    QRegion region;
};

struct Setup {
    Setup()
    {
        Theme::apply({});
        heading.resize(300, 15);
        heading.setValue(u"8.0 of 16.0 GB"_s);
        heading.show();
    }

    QImage picture()
    {
        QImage image(heading.size(), QImage::Format_RGB32);
        image.fill(Qt::white);
        heading.render(&image, {}, {}, QWidget::RenderFlags());
        return image;
    }

    // The columns between which anything is painted.
    static std::pair<int, int> inked(const QImage& image, int from, int to)
    {
        int first = -1;
        int last = -1;
        for (int x = from; x < to; ++x) {
            for (int y = 0; y < image.height(); ++y) {
                if (image.pixelColor(x, y) == Qt::white)
                    continue;
                first = first < 0 ? x : first;
                last = x;
            }
        }
        return { first, last };
    }

    QRect repaintedBy(const QString& value)
    {
        const PaintedRegion painted(heading);
        heading.setValue(value);
        QCoreApplication::processEvents();
        return painted.region.boundingRect();
    }

    StatHeading heading { u"Memory"_s, nullptr };
};

class StatHeadingTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theTitleLeadsAndTheValueEnds()
    {
        Setup s;
        const auto image = s.picture();
        const auto [left, leftEnd] = s.inked(image, 0, 150);
        const auto [rightStart, right] = s.inked(image, 150, 300);
        QVERIFY(left >= 0 && left <= 2);
        QVERIFY(right >= 297);
        // The value is the longer of the two.
        QVERIFY(right - rightStart > leftEnd - left);
    }

    void aNewValueLeavesTheTitleAlone()
    {
        Setup s;
        QVERIFY(QTest::qWaitForWindowExposed(&s.heading));
        QCoreApplication::processEvents();
        const auto title = s.inked(s.picture(), 0, 150);
        const auto repainted = s.repaintedBy(u"8.1 of 16.0 GB"_s);
        QVERIFY(!repainted.isEmpty());
        QVERIFY(repainted.left() > title.second);
    }

    void aShorterValueLeavesNothingOfTheLongerOne()
    {
        Setup s;
        QVERIFY(QTest::qWaitForWindowExposed(&s.heading));
        QCoreApplication::processEvents();
        const auto longer = s.inked(s.picture(), 150, 300);
        QVERIFY(s.repaintedBy(u"0%"_s).left() <= longer.first);
        const auto shorter = s.inked(s.picture(), 150, 300);
        QVERIFY(shorter.first > longer.first);
        QVERIFY(s.repaintedBy(u"8.0 of 16.0 GB"_s).left() <= longer.first);
        QCOMPARE(s.inked(s.picture(), 150, 300), longer);
    }
};

QTEST_MAIN(StatHeadingTest)
#include "StatHeadingTest.moc"
