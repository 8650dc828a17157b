#include "App/Ui/Symbols.h"

#include <QImage>
#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QImage drawn(const QString& name, const QColor& color)
{
    QImage image(96, 96, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    Symbols::paint(painter, name, QRectF(0, 0, 96, 96), color);
    return image;
}

int strongestAlpha(const QImage& image)
{
    int strongest = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            strongest = qMax(strongest, qAlpha(image.pixel(x, y)));
    }
    return strongest;
}

}

class SymbolsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyNameIsListedOnce()
    {
        const QStringList names = Symbols::names();
        QCOMPARE(names.size(), 60);
        QCOMPARE(QSet<QString>(names.begin(), names.end()).size(), names.size());
        QVERIFY(names.contains(u"gauge.with.dots.needle.33percent"_s));
        QVERIFY(Symbols::contains(u"ui.cup"_s));
        QVERIFY(!Symbols::contains(u"cup"_s));
    }

    void everySymbolStaysInsideItsBoxAndOffTheEdge()
    {
        for (const QString& name : Symbols::names()) {
            const QImage image = drawn(name, Qt::black);
            QVERIFY2(strongestAlpha(image) == 255, qPrintable(name));
            for (int i = 0; i < 96; ++i) {
                QVERIFY2(qAlpha(image.pixel(i, 0)) == 0, qPrintable(name));
                QVERIFY2(qAlpha(image.pixel(i, 95)) == 0, qPrintable(name));
                QVERIFY2(qAlpha(image.pixel(0, i)) == 0, qPrintable(name));
                QVERIFY2(qAlpha(image.pixel(95, i)) == 0, qPrintable(name));
            }
        }
    }

    void overlappingPartsDoNotDarkenATranslucentColour()
    {
        for (const QString& name : Symbols::names())
            QVERIFY2(strongestAlpha(drawn(name, QColor(0, 0, 0, 87))) <= 87, qPrintable(name));
    }

    void overlappingPartsDoNotCutHoles()
    {
        // The needle ends in the middle of the filled hub.
        const QImage gauge = drawn(u"gauge.with.dots.needle.33percent"_s, Qt::black);
        QCOMPARE(qAlpha(gauge.pixel(48, 48)), 255);
        QCOMPARE(qAlpha(gauge.pixel(46, 46)), 255);
    }

    void anUnknownNamePaintsNothing()
    {
        QCOMPARE(strongestAlpha(drawn(u"no.such.symbol"_s, Qt::black)), 0);
    }

    void theBoxFollowsTheWords_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("box");
        const int table[][2] { { 10, 14 }, { 11, 14 }, { 12, 16 }, { 13, 16 }, { 15, 20 },
            { 22, 30 } };
        for (const auto& row : table)
            QTest::addRow("%d", row[0]) << row[0] << row[1];
    }

    void theBoxFollowsTheWords()
    {
        QFETCH(int, size);
        QTEST(Symbols::boxSize(size), "box");
    }

    void aCenteredBoxStandsOnWholePoints()
    {
        QCOMPARE(Symbols::centered(14, QRect(5, 7, 28, 24)), QRect(12, 12, 14, 14));
        QCOMPARE(Symbols::centered(14, QRect(0, 0, 15, 15)), QRect(0, 0, 14, 14));
    }
};

QTEST_MAIN(SymbolsTest)
#include "SymbolsTest.moc"
