#include "App/Ui/TextLine.h"
#include "App/Ui/Theme.h"

#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;

static QImage painted(const QString& text, Qt::LayoutDirection around = Qt::LeftToRight)
{
    QImage image(200, 20, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setLayoutDirection(around);
    TextLine::paint(painter, image.rect(), Qt::AlignLeft | Qt::AlignAbsolute, text,
        Theme::current().font(TextRole::body), Qt::black);
    return image;
}

class TextLineTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theWordsDecideOnTheirDirection_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("English") << u"Design review (2)!"_s;
        QTest::newRow("Arabic") << u"تصميم (2)!"_s;
        QTest::newRow("Hebrew and English") << u"סקירה of (2)!"_s;
    }

    void theWordsDecideOnTheirDirection()
    {
        QFETCH(QString, text);
        const auto embedded = text.isRightToLeft() ? u"\u202B"_s : u"\u202A"_s;
        QCOMPARE(painted(text), painted(text, Qt::RightToLeft));
        QCOMPARE(painted(text), painted(embedded + text + u'\u202C'));
    }

    void thePainterKeepsItsDirection()
    {
        QImage image(10, 10, QImage::Format_RGB32);
        QPainter painter(&image);
        painter.setLayoutDirection(Qt::RightToLeft);
        TextLine::paint(painter, image.rect(), Qt::AlignLeading, u"a"_s, {}, Qt::black);
        QCOMPARE(painter.layoutDirection(), Qt::RightToLeft);
    }

    void aTextOfAnyLengthIsPaintedAtOnce()
    {
        QElapsedTimer elapsed;
        elapsed.start();
        const auto endless = painted(QString(10'000'000, u'W'));
        QVERIFY2(elapsed.elapsed() < 500, QByteArray::number(elapsed.elapsed()));
        QCOMPARE(endless, painted(QString(1000, u'W')));
    }
};

QTEST_MAIN(TextLineTest)
#include "TextLineTest.moc"
