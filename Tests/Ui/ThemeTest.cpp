#include "App/Ui/Theme.h"
#include "App/Ui/Contrast.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>

using Contrast::over;
using Contrast::ratio;
using namespace Qt::StringLiterals;

namespace {

struct Pair {
    const char* name;
    QColor words;
    QColor ground;
    qreal light;
    qreal dark;
};

QList<Pair> wordsOn(const Colors& c)
{
    const QColor window = c.window;
    return {
        { "text on window", c.text, window, 15.75, 13.79 },
        { "text on field", c.text, c.field, 17.00, 15.67 },
        { "text on result", c.text, over(c.resultArea, window), 14.15, 11.87 },
        { "text on tile in edit mode", c.text, over(c.tileEdit, window), 11.61, 9.03 },
        { "text on tile pressed", c.text, over(c.tilePressed, window), 10.62, 7.84 },
        { "text on button pressed", c.text, c.buttonPressed, 13.41, 7.00 },
        { "secondary on window", c.secondary, window, 5.69, 6.70 },
        { "secondary on card", c.secondary, over(c.card, window), 4.98, 5.83 },
        { "placeholder on field", c.placeholder, c.field, 4.77, 5.41 },
        { "white on accent", Qt::white, c.accent, 4.92, 4.92 },
        { "white on accent hover", Qt::white, c.accentHover, 5.65, 4.80 },
        { "white on accent pressed", Qt::white, c.accentPressed, 6.73, 6.73 },
        { "red text on window", c.redText, window, 6.18, 6.80 },
        { "red text on button", c.redText, c.button, 6.67, 4.96 },
        { "red text on red tint", c.redText, over(c.redTint, window), 5.23, 5.42 },
        { "red text on pressed tint", c.redText, over(c.redTintPressed, window), 4.65, 4.62 },
        { "orange text on window", c.orangeText, window, 4.95, 8.26 },
        { "accent text on selected tab", c.accentText, over(c.tabSelected, window), 4.85, 6.17 },
    };
}

}

class ThemeTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void wordsCanBeReadOnTheirGround_data()
    {
        QTest::addColumn<QColor>("words");
        QTest::addColumn<QColor>("ground");
        QTest::addColumn<qreal>("wanted");
        for (const bool dark : { false, true }) {
            for (const Pair& pair : wordsOn(Colors::make(dark, {}))) {
                QTest::addRow("%s, %s", pair.name, dark ? "dark" : "light")
                    << pair.words << pair.ground << (dark ? pair.dark : pair.light);
            }
        }
    }

    void wordsCanBeReadOnTheirGround()
    {
        QFETCH(QColor, words);
        QFETCH(QColor, ground);
        QFETCH(qreal, wanted);
        const qreal found = ratio(words, ground);
        QVERIFY2(found >= Contrast::words, qPrintable(QString::number(found)));
        QVERIFY2(qAbs(found - wanted) <= 0.02, qPrintable(QString::number(found)));
    }

    void drawnShapesStandOutFromTheWindow_data()
    {
        QTest::addColumn<QColor>("shape");
        QTest::addColumn<QColor>("window");
        QTest::addColumn<qreal>("wanted");
        const Colors light = Colors::make(false, {});
        const Colors dark = Colors::make(true, {});
        QTest::newRow("red, light") << light.red << light.window << 3.99;
        QTest::newRow("green, light") << light.green << light.window << 3.26;
        QTest::newRow("blue, light") << light.blue << light.window << 4.10;
        QTest::newRow("purple, light") << light.purple << light.window << 4.34;
        QTest::newRow("orange, light") << light.orange << light.window << 3.20;
        QTest::newRow("red, dark") << dark.red << dark.window << 4.97;
        QTest::newRow("green, dark") << dark.green << dark.window << 6.74;
        QTest::newRow("blue, dark") << dark.blue << dark.window << 5.51;
        QTest::newRow("purple, dark") << dark.purple << dark.window << 5.61;
        QTest::newRow("orange, dark") << dark.orange << dark.window << 7.47;
    }

    void drawnShapesStandOutFromTheWindow()
    {
        QFETCH(QColor, shape);
        QFETCH(QColor, window);
        QFETCH(qreal, wanted);
        QVERIFY(qAbs(ratio(shape, window) - wanted) <= 0.02);
    }

    void anyAccentKeepsItsWordsReadable_data()
    {
        QTest::addColumn<QColor>("accent");
        QTest::addColumn<bool>("dark");
        const QColor accents[] { QColor(0x0F6BE6), Qt::yellow, Qt::black, Qt::white,
            QColor(0xC88800), QColor(0x3584E4), QColor(0x9141AC), QColor(0x2190A4), Qt::red };
        for (const QColor& accent : accents) {
            QTest::addRow("%s, light", qPrintable(accent.name())) << accent << false;
            QTest::addRow("%s, dark", qPrintable(accent.name())) << accent << true;
        }
    }

    void anyAccentKeepsItsWordsReadable()
    {
        QFETCH(QColor, accent);
        QFETCH(bool, dark);
        const Colors c = Colors::make(dark, accent);
        for (const QColor& fill : { c.accent, c.accentHover, c.accentPressed })
            QVERIFY(ratio(Qt::white, fill) >= Contrast::words);
        QVERIFY(c.accentHover != c.accent);
        QVERIFY(c.accentPressed != c.accentHover);
        QVERIFY(ratio(c.accentText, over(c.tabSelected, c.window)) >= Contrast::words);
        if (dark)
            QVERIFY(ratio(c.mark, c.window) >= Contrast::words);
        else
            QCOMPARE(c.mark, accent);
    }

    void anAccentThatAlreadyCarriesWhiteStaysAsItIs()
    {
        QCOMPARE(Colors::make(false, QColor(0x9141AC)).accent, QColor(0x9141AC));
        QCOMPARE(Colors::make(true, Qt::yellow).mark, QColor(Qt::yellow));
        QCOMPARE(Colors::make(false, {}).mark, QColor(0x0F6BE6));
    }

    void anAccentIsDarkenedNoFurtherThanNeeded()
    {
        QVERIFY(ratio(Qt::white, Colors::make(false, Qt::yellow).accent) < 4.8);
    }

    void everyRoleHasItsSizeWeightAndLine()
    {
        const Theme theme { ThemeChoice {} };
        const QFont time = theme.font(TextRole::ringTime);
        QCOMPARE(time.pixelSize(), 40);
        QCOMPARE(time.weight(), QFont::Light);
        QCOMPARE(time.hintingPreference(), QFont::PreferNoHinting);
        QCOMPARE(theme.font(TextRole::headline).weight(), QFont::DemiBold);
        QCOMPARE(theme.font(TextRole::smallButton).pixelSize(), 11);
        QCOMPARE(Theme::lineHeight(TextRole::editor), 17);
    }

    void aGivenFontFamilyIsUsed()
    {
        const Theme theme { ThemeChoice { .fontFamily = u"Noto Sans"_s } };
        QCOMPARE(theme.font(TextRole::body).family(), u"Noto Sans"_s);
    }

    void everyWidgetIsToldOfAChange()
    {
        Theme::apply({});
        QWidget window;
        QWidget child(&window);
        window.show();
        QCOMPARE(child.palette().color(QPalette::Window), QColor(0xF6F6F8));
        Theme::apply({ .dark = true });
        QVERIFY(Theme::current().isDark());
        QTRY_COMPARE(child.palette().color(QPalette::Window), QColor(0x252528));
        QCOMPARE(child.palette().color(QPalette::Inactive, QPalette::Highlight), QColor(0x0F6BE6));
        QCOMPARE(QApplication::font().pixelSize(), 13);
    }

    void accentsThatDifferOnlyInTheirMarkAreAChangeToo()
    {
        Theme::apply({ .accent = Qt::yellow });
        const QPalette before = QApplication::palette();
        const QColor sameFill = Colors::make(false, Qt::yellow).accent;
        Theme::apply({ .accent = sameFill });
        QCOMPARE(Theme::current().colors.accent, sameFill);
        QVERIFY(QApplication::palette() != before);
    }
};

QTEST_MAIN(ThemeTest)
#include "ThemeTest.moc"
