#include "App/System/Sparkline.h"
#include "App/Ui/Theme.h"
#include "Tests/Ui/Painted.h"

#include <QAccessible>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

// 59 steps of five points.
static constexpr int width = 295;

struct Setup {
    Setup()
    {
        Theme::apply({});
        chart.resize(width, Sparkline::height);
        chart.setMaxY(100);
    }

    QImage picture()
    {
        QImage image(chart.size(), QImage::Format_RGB32);
        image.fill(Qt::white);
        chart.render(&image, {}, {}, QWidget::RenderFlags());
        return image;
    }

    // The rows of a column that are painted in any way: the topmost and the count.
    std::pair<int, int> painted(int x)
    {
        const auto image = picture();
        int top = -1;
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            if (image.pixelColor(x, y) == Qt::white)
                continue;
            top = top < 0 ? y : top;
            ++count;
        }
        return { top, count };
    }

    bool isPainted(int x) { return painted(x).second > 0; }

    Sparkline chart { u"Load"_s, &Colors::blue, [](double v) { return QString::number(v); } };
};

class SparklineTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theHeightIsFixed()
    {
        Setup s;
        QCOMPARE(s.chart.minimumHeight(), 34);
        QCOMPARE(s.chart.maximumHeight(), 34);
    }

    void fiveValuesSpanFourOfFiftyNineSteps()
    {
        Setup s;
        s.chart.setValues({ 50, 50, 50, 50, 50 });
        QVERIFY(s.isPainted(0));
        QVERIFY(s.isPainted(19));
        QVERIFY(!s.isPainted(22));
    }

    void sixtyValuesSpanTheWholeWidth()
    {
        Setup s;
        s.chart.setValues(QList<double>(60, 50));
        QVERIFY(s.isPainted(0));
        QVERIFY(s.isPainted(width - 1));
    }

    void theAreaGoesFromTheValueDownToZero()
    {
        Setup s;
        s.chart.setValues(QList<double>(60, 50));
        const auto image = s.picture();
        const auto blue = Theme::current().colors.blue;
        QCOMPARE(image.pixelColor(100, 0), QColor(Qt::white));
        // The line's middle is at half the height; its 1.5 points cover row 16 or 17 fully.
        const auto line = image.pixelColor(100, 16).blue() < image.pixelColor(100, 17).blue()
            ? image.pixelColor(100, 16)
            : image.pixelColor(100, 17);
        QVERIFY(qAbs(line.red() - blue.red()) < 70);
        const auto area = image.pixelColor(100, 30);
        const auto expected = [](int ink) { return qRound(255 - 0.18 * (255 - ink)); };
        QVERIFY(qAbs(area.red() - expected(blue.red())) <= 1);
        QVERIFY(qAbs(area.green() - expected(blue.green())) <= 1);
        QVERIFY(qAbs(area.blue() - expected(blue.blue())) <= 1);
        QCOMPARE(image.pixelColor(100, 33), area);
    }

    void aFlatLineAtEitherEdgeIsFullySeen()
    {
        Setup s;
        const auto blue = Theme::current().colors.blue;
        s.chart.setValues(QList<double>(60, 0));
        QCOMPARE(s.picture().pixelColor(100, 33), blue);
        QCOMPARE(s.painted(100), (std::pair { 32, 2 }));
        // The line is a point and a half wide.
        const auto half = s.picture().pixelColor(100, 32);
        QVERIFY(half.red() > blue.red() + 60 && half.red() < 200);
        s.chart.setValues(QList<double>(60, 100));
        QCOMPARE(s.picture().pixelColor(100, 0), blue);
    }

    void valuesOffTheScaleStandAtItsEdge()
    {
        Setup s;
        s.chart.setValues(QList<double>(60, 100));
        const auto full = s.picture();
        s.chart.setValues(QList<double>(60, 1e9));
        QCOMPARE(s.picture(), full);
        s.chart.setValues(QList<double>(60, 0));
        const auto none = s.picture();
        s.chart.setValues(QList<double>(60, -5));
        QCOMPARE(s.picture(), none);
    }

    void noValueOrOneDrawsNothing()
    {
        Setup s;
        QVERIFY(!s.isPainted(0));
        s.chart.setValues({ 50 });
        QVERIFY(!s.isPainted(0));
    }

    void withoutAFixedTopTheScaleFollowsTheData()
    {
        Setup s;
        s.chart.setMaxY({});
        QCOMPARE(s.chart.top(), 1.2);
        s.chart.setValues({ 10, 5 });
        QCOMPARE(s.chart.top(), 12.0);
    }

    void theColourIsATokenOfTheTheme()
    {
        Setup s;
        s.chart.setValues(QList<double>(60, 0));
        Theme::apply({ .dark = true });
        QCOMPARE(s.picture().pixelColor(100, 33), Theme::current().colors.blue);
        Theme::apply({});
    }

    void whatDidNotChangeIsNotPainted()
    {
        Setup s;
        s.chart.setValues({ 1, 2 });
        s.chart.show();
        QVERIFY(QTest::qWaitForWindowExposed(&s.chart));
        QCoreApplication::processEvents();
        const Painted painted(s.chart);
        s.chart.setValues({ 1, 2 });
        s.chart.setMaxY(100);
        QCoreApplication::processEvents();
        QCOMPARE(painted.count, 0);
        s.chart.setValues({ 1, 2, 3 });
        QCoreApplication::processEvents();
        QCOMPARE(painted.count, 1);
        s.chart.setMaxY(50);
        QCoreApplication::processEvents();
        QCOMPARE(painted.count, 2);
    }

    void aChangeThatNobodyWouldSeeIsNotPainted()
    {
        Setup s;
        s.chart.setValues({ 50, 50 });
        s.chart.show();
        QVERIFY(QTest::qWaitForWindowExposed(&s.chart));
        QCoreApplication::processEvents();
        const Painted painted(s.chart);
        s.chart.setValues({ 50, 50.05 });
        QCoreApplication::processEvents();
        QCOMPARE(painted.count, 0);
        QCOMPARE(s.chart.values().last(), 50.05);
        s.chart.setValues({ 50, 50.5 });
        QCoreApplication::processEvents();
        QCOMPARE(painted.count, 1);
    }

    void assistiveTechnologyHearsTheNewestValueAndTheRange()
    {
        Setup s;
        s.chart.setValues({ 5, 80, 20 });
        auto* const chart = QAccessible::queryAccessibleInterface(&s.chart);
        QCOMPARE(chart->role(), QAccessible::Chart);
        QCOMPARE(chart->text(QAccessible::Name), u"Load"_s);
        QCOMPARE(chart->text(QAccessible::Value), u"20"_s);
        QCOMPARE(chart->text(QAccessible::Description),
            u"Newest 20, lowest 5, highest 80, on a scale up to 100"_s);
        auto* const value = chart->valueInterface();
        QVERIFY(value);
        QCOMPARE(value->currentValue(), 20.0);
        QCOMPARE(value->minimumValue(), 0.0);
        QCOMPARE(value->maximumValue(), 100.0);
    }

    void anEmptyChartHasNothingToSay()
    {
        Setup s;
        auto* const chart = QAccessible::queryAccessibleInterface(&s.chart);
        QCOMPARE(chart->text(QAccessible::Description), QString());
        QCOMPARE(chart->valueInterface()->currentValue(), 0.0);
    }
};

QTEST_MAIN(SparklineTest)
#include "SparklineTest.moc"
