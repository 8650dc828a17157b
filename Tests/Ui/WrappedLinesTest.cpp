#include "App/Ui/WrappedLines.h"
#include "App/Ui/Theme.h"

#include <QFontMetrics>
#include <QTest>

using namespace Qt::StringLiterals;

static QStringList wrapped(const QString& text, int most = 3)
{
    return WrappedLines::of(text, Theme::current().font(TextRole::caption), 200, most);
}

class WrappedLinesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Theme::apply({}); }

    void aShortTextIsOneLine() { QCOMPARE(wrapped(u"Command failed"_s), { u"Command failed"_s }); }

    void noTextIsNoInk() { QCOMPARE(wrapped({}).join(u' '), QString()); }

    void wordsStayWhole()
    {
        const auto lines = wrapped(u"These are a few more words than one line of it can hold"_s);
        QVERIFY(lines.size() > 1);
        QCOMPARE(lines.join(u' '), u"These are a few more words than one line of it can hold"_s);
    }

    void aLineFeedBeginsALine()
    {
        QCOMPARE(wrapped(u"One\nTwo"_s), QStringList({ u"One"_s, u"Two"_s }));
    }

    void aWordLongerThanALineIsBroken()
    {
        const QString word(60, u'w');
        const auto lines = wrapped(word, 9);
        QVERIFY(lines.size() > 1);
        QCOMPARE(lines.join(QString()), word);
    }

    void whatDoesNotFitEndsInAnEllipsis_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("words") << u"word "_s.repeated(200);
        QTest::newRow("one word") << QString(5'000, u'w');
        QTest::newRow("lines") << u"a\nb\nc\nd\n"_s;
        QTest::newRow("narrow") << QString(20'000, u'i');
        QTest::newRow("a great many") << u"line\n"_s.repeated(1'000'000);
    }

    void whatDoesNotFitEndsInAnEllipsis()
    {
        QFETCH(QString, text);
        const auto lines = wrapped(text);
        QCOMPARE(lines.size(), 3);
        QVERIFY2(lines.last().endsWith(u'…'), qPrintable(lines.last()));
        const QFontMetrics metrics(Theme::current().font(TextRole::caption));
        for (const auto& line : lines)
            QVERIFY(metrics.horizontalAdvance(line) <= 200);
    }

    void theLastLineThatFitsIsWhole()
    {
        QCOMPARE(wrapped(u"a\nb\nc"_s), QStringList({ u"a"_s, u"b"_s, u"c"_s }));
    }
};

QTEST_MAIN(WrappedLinesTest)
#include "WrappedLinesTest.moc"
