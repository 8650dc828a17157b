#include "App/Ui/Bar.h"
#include "App/Ui/Theme.h"
#include "Tests/Ui/Painted.h"

#include <QAccessible>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

struct Setup {
    Setup()
    {
        Theme::apply({});
        bar.resize(100, 6);
        bar.setFraction(0.5);
    }

    QColor at(int x) { return bar.grab().toImage().pixelColor(x, 3); }

    Bar bar { u"Disk"_s };
};

class BarTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theFractionIsFilledFromTheLeadingEnd()
    {
        Setup s;
        QCOMPARE(s.at(45), Theme::current().colors.mark);
        QVERIFY(s.at(55) != Theme::current().colors.mark);
        s.bar.setLayoutDirection(Qt::RightToLeft);
        QCOMPARE(s.at(55), Theme::current().colors.mark);
        QVERIFY(s.at(45) != Theme::current().colors.mark);
    }

    void theTintIsATokenOfTheTheme()
    {
        Setup s;
        s.bar.setTint(&Colors::green);
        QCOMPARE(s.at(20), Theme::current().colors.green);
        Theme::apply({ .dark = true });
        QCOMPARE(s.at(20), Theme::current().colors.green);
    }

    void fractionsAreBounded()
    {
        Setup s;
        s.bar.setFraction(1.7);
        QCOMPARE(s.bar.fraction(), 1.0);
        s.bar.setFraction(-1);
        QCOMPARE(s.bar.fraction(), 0.0);
        s.bar.setFraction(std::numeric_limits<qreal>::quiet_NaN());
        QCOMPARE(s.bar.fraction(), 0.0);
    }

    void anEqualFractionIsNotPainted()
    {
        Setup s;
        s.bar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&s.bar));
        QCoreApplication::processEvents();
        Painted painted(s.bar);
        s.bar.setFraction(0.5);
        s.bar.setTint(&Colors::mark);
        QCoreApplication::processEvents();
        QCOMPARE(painted.count, 0);
        s.bar.setFraction(0.6);
        QTRY_COMPARE(painted.count, 1);
    }

    void itsEdgesAreSharpAlsoBetweenPixels()
    {
        Setup s;
        QWidget window;
        window.resize(100, 20);
        s.bar.setParent(&window);
        s.bar.move(0, 1); // Rows 1.5 to 10.5 of the picture.
        s.bar.setFraction(1);
        QImage image(150, 30, QImage::Format_RGB32);
        image.setDevicePixelRatio(1.5);
        image.fill(Qt::white);
        window.render(&image, {}, {}, QWidget::DrawChildren);
        const auto& colors = Theme::current().colors;
        QCOMPARE(image.pixelColor(75, 1), QColor(Qt::white));
        QCOMPARE(image.pixelColor(75, 2), colors.mark);
        QCOMPARE(image.pixelColor(75, 10), colors.mark);
        QCOMPARE(image.pixelColor(75, 11), QColor(Qt::white));
        s.bar.setParent(nullptr);
    }

    void assistiveTechnologyReadsPerCent()
    {
        Setup s;
        auto* accessible = QAccessible::queryAccessibleInterface(&s.bar);
        QCOMPARE(accessible->role(), QAccessible::ProgressBar);
        QCOMPARE(accessible->text(QAccessible::Name), u"Disk"_s);
        QCOMPARE(accessible->text(QAccessible::Value), u"50 %"_s);
        QCOMPARE(accessible->valueInterface()->currentValue().toInt(), 50);
        QCOMPARE(accessible->valueInterface()->maximumValue().toInt(), 100);
    }
};

QTEST_MAIN(BarTest)
#include "BarTest.moc"
