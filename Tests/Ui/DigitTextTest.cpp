#include "App/Ui/DigitText.h"
#include "App/Ui/Theme.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QTest>
#include <QTransform>

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

QFont timeFont()
{
    return Theme::current().font(TextRole::ringTime);
}

// The first and last rows with ink in a band of columns.
std::pair<int, int> inkedRows(const QImage& image, int left, int right)
{
    int first = -1;
    int last = -1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = left; x < right; ++x) {
            if (qAlpha(image.pixel(x, y)) < 128)
                continue;
            first = first < 0 ? y : first;
            last = y;
        }
    }
    return { first, last };
}

QImage drawn(const QString& text)
{
    QImage image(150, 60, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    DigitText::ring(timeFont(), text.size()).paint(painter, image.rect(), text, Qt::black);
    return image;
}

}

class DigitTextTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyDigitTakesTheSameWidth()
    {
        const DigitText text(Theme::current().font(TextRole::callout));
        QCOMPARE(text.width(u"11.1 %"_s), text.width(u"40.8 %"_s));
        const QFontMetricsF metrics(Theme::current().font(TextRole::callout));
        QCOMPARE(text.width(u"1"_s), metrics.horizontalAdvance(u'0'));
    }

    void wordsBetweenDigitsKeepTheSpacingOfTheirLetters()
    {
        const QFont font = Theme::current().font(TextRole::callout);
        const QFontMetricsF metrics(font);
        const QString words = u" AVATAR "_s;
        qreal letters = 0;
        for (const QChar letter : words)
            letters += metrics.horizontalAdvance(letter);
        QVERIFY(metrics.horizontalAdvance(words) < letters);
        QCOMPARE(DigitText(font).width(u'4' + words + u'2'),
            metrics.horizontalAdvance(words) + 2 * metrics.horizontalAdvance(u'0'));
    }

    void wordsLookAsThePainterDrawsThem()
    {
        const QFont font = Theme::current().font(TextRole::callout);
        const auto drawn = [](const std::function<void(QPainter&)>& draw) {
            QImage image(200, 60, QImage::Format_RGB32);
            image.setDevicePixelRatio(2);
            image.fill(Qt::white);
            QPainter painter(&image);
            draw(painter);
            return image;
        };
        const auto own = drawn([&](QPainter& painter) {
            DigitText(font).paintAt(painter, { 10, 20 }, u"AVATAR of GB"_s, Qt::black);
        });
        const auto painters = drawn([&](QPainter& painter) {
            painter.setFont(font);
            painter.drawText(QPointF(10, 20), u"AVATAR of GB"_s);
        });
        QCOMPARE(own, painters);
    }

    void aDigitStandsInTheMiddleOfItsCell()
    {
        QImage image(40, 60, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        DigitText::ring(timeFont(), 5).paintAt(painter, { 0, 50 }, u"1"_s, Qt::black);
        painter.end();
        const auto [left, right]
            = inkedRows(image.transformed(QTransform(0, 1, 1, 0, 0, 0)), 0, 60);
        QVERIFY(left >= 4);
        QVERIFY(qAbs(left + right - 22) <= 4);
    }

    void theRingTimeHasCellsOfItsOwn()
    {
        QCOMPARE(DigitText::ring(timeFont(), 5).width(u"24:59"_s), 4 * 23 + 11.0);
        QCOMPARE(DigitText::ring(timeFont(), 6).width(u"100:00"_s), 5 * 22 + 9.0);
    }

    void aDigitThatStaysDoesNotMove()
    {
        // The cells of 25:11 begin 23.5 from the left; the last two digits end at 126.5.
        const QRect minutes(24, 0, 45, 60);
        QCOMPARE(drawn(u"25:11"_s).copy(minutes), drawn(u"25:08"_s).copy(minutes));
    }

    void theColonStandsInTheMiddleOfTheDigits()
    {
        const QImage image = drawn(u"00:00"_s);
        const auto [digitTop, digitBottom] = inkedRows(image, 24, 46);
        const auto [colonTop, colonBottom] = inkedRows(image, 70, 80);
        QVERIFY(colonTop > digitTop);
        QVERIFY(qAbs((digitTop + digitBottom) - (colonTop + colonBottom)) <= 3);
    }
};

QTEST_MAIN(DigitTextTest)
#include "DigitTextTest.moc"
