#include "App/QuickActions/TextTools.h"
#include "Tests/QuickActions/Text/RandomText.h"

#include <QElapsedTimer>
#include <QTest>

#include <future>

using namespace Qt::StringLiterals;

class TextToolsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void sentencesAreTrimmedAndNoneIsEmpty()
    {
        QCOMPARE(TextTools::sentences(u" \n One.\u00A0 \n\n\t\n Two. \u2028\u3000"_s),
            (QStringList { u"One."_s, u"Two."_s }));
    }

    void wordsAreAsTheyStand()
    {
        QCOMPARE(TextTools::words(u" One, (TWO) e\u0301t\u00E9! "_s),
            (QStringList { u"One"_s, u"TWO"_s, u"e\u0301t\u00E9"_s }));
    }

    void ofTwoSentencesThereIsNoSummary()
    {
        QCOMPARE(TextTools::summarize(u"\n\u00A0First  one.\n\n Second one.\t\r\n"_s),
            u"First  one.\n\n Second one."_s);
        QCOMPARE(TextTools::summarize(u" word "_s), u"word"_s);
    }

    void ofThreeSentencesTwoAreKept()
    {
        // The third ranks first.
        QCOMPARE(TextTools::summarize(u" Green hills rise slowly.\n\n"
                                      "Nothing else happens here. Hills hills hills  hills. "_s),
            u"Green hills rise slowly. Hills hills hills  hills."_s);
    }

    void linesBecomeItems_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("list");
        QTest::newRow("each with a mark")
            << u"1. milk\n2) eggs\n- bread"_s << u"• milk\n• eggs\n• bread"_s;
        QTest::newRow("no space after the mark")
            << u"-bread\n*x\n1.y"_s << u"• -bread\n• *x\n• 1.y"_s;
        QTest::newRow("other marks") << u"* a\n• b\n123) c"_s << u"• a\n• b\n• c"_s;
        QTest::newRow("marks that are none") << u"1 a\n1: b\n. c\n) d\n-- e\n+ f"_s
                                             << u"• 1 a\n• 1: b\n• . c\n• ) d\n• -- e\n• + f"_s;
        QTest::newRow("only the first mark") << u"- - a\n1. 2. b"_s << u"• - a\n• 2. b"_s;
        QTest::newRow("other digits")
            << u"\u0663. a\n\U0001D7D8) b\n\u00B2. c"_s << u"• a\n• b\n• \u00B2. c"_s;
        QTest::newRow("other spaces after the mark")
            << u"-\u3000\u00A0\ta\n1.\u2009b"_s << u"• a\n• b"_s;
        QTest::newRow("no space for others")
            << u"-\u200Ba\n-\uFEFFb"_s << u"• -\u200Ba\n• -\uFEFFb"_s;
        QTest::newRow("marks and nothing else") << u"-\n1. \n•"_s << u"• -\n• 1.\n• •"_s;
        QTest::newRow("each line break") << u"a\r\nb\rc\vd\fe\u0085f\u2028g\u2029h"_s
                                         << u"• a\n• b\n• c\n• d\n• e\n• f\n• g\n• h"_s;
        QTest::newRow("blank lines") << u"\n a \n\n \u3000\nb\n\n"_s << u"• a\n• b"_s;
        QTest::newRow("several sentences in a line") << u"A. B.\nC."_s << u"• A. B.\n• C."_s;
    }

    void linesBecomeItems()
    {
        QFETCH(QString, text);
        QFETCH(QString, list);
        QCOMPARE(TextTools::bullets(text), list);
    }

    void sentencesOfOneLineBecomeItems()
    {
        QCOMPARE(TextTools::bullets(u"One. Two."_s), u"• One.\n• Two."_s);
        QCOMPARE(TextTools::bullets(u"\n\n One. Two. \n"_s), u"• One.\n• Two."_s);
    }

    void oneSentenceIsOneItem()
    {
        QCOMPARE(TextTools::bullets(u"just one"_s), u"• just one"_s);
        QCOMPARE(TextTools::bullets(u"- just one"_s), u"• just one"_s);
    }

    void fixesSpacingAndCase_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("fixed");
        QTest::newRow("all at once")
            << u"hello ,world.That is   i.\n\n\n\nok"_s << u"Hello, world. That is I.\n\nOk"_s;
        QTest::newRow("full stop between small letters") << u"world.that"_s << u"World.That"_s;
        QTest::newRow("each full stop ends a sentence") << u"e.g. foo"_s << u"E.G. Foo"_s;
        QTest::newRow("parenthesis") << u"(ok) fine"_s << u"(Ok) fine"_s;
        QTest::newRow("quote") << u"\"hi\" there"_s << u"\"Hi\" there"_s;
        QTest::newRow("i at the end") << u"so do i"_s << u"So do i"_s;
        QTest::newRow("digit first") << u"3 apples"_s << u"3 apples"_s;
        QTest::newRow("case after spacing") << u"a.B"_s << u"A. B"_s;
    }

    void fixesSpacingAndCase()
    {
        QFETCH(QString, text);
        QFETCH(QString, fixed);
        QCOMPARE(TextTools::fixSpacingAndCase(text), fixed);
    }

    void countsWordsCharactersSentencesAndMinutes()
    {
        QCOMPARE(TextTools::count(u" It's me.\r\nNa\u00EFve cafe\u0301 \U0001F44D\U0001F3FD! "_s),
            u"4 words · 24 characters · 2 sentences · ~1 min read"_s);
        QCOMPARE(
            TextTools::count(u"one"_s), u"1 words · 3 characters · 1 sentences · ~1 min read"_s);
    }

    void aMinuteIsFor230Words_data()
    {
        QTest::addColumn<int>("words");
        QTest::addColumn<QString>("count");
        QTest::newRow("230") << 230 << u"230 words · 460 characters · 1 sentences · ~1 min read"_s;
        QTest::newRow("231") << 231 << u"231 words · 462 characters · 1 sentences · ~2 min read"_s;
        QTest::newRow("460") << 460 << u"460 words · 920 characters · 1 sentences · ~2 min read"_s;
        QTest::newRow("without grouping")
            << 23'001 << u"23001 words · 46002 characters · 1 sentences · ~101 min read"_s;
    }

    void aMinuteIsFor230Words()
    {
        QFETCH(int, words);
        QFETCH(QString, count);
        QCOMPARE(TextTools::count(u"a "_s.repeated(words)), count);
    }

    void ofSpaceNothingIsLeft_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("characters");
        QTest::newRow("nothing") << QString() << 0;
        QTest::newRow("empty") << u""_s << 0;
        QTest::newRow("three spaces") << u"   "_s << 3;
        QTest::newRow("line breaks") << u"\n\r\n\u2028\v"_s << 4;
        QTest::newRow("other spaces") << u"\t\u00A0\u3000\u0085"_s << 4;
    }

    void ofSpaceNothingIsLeft()
    {
        QFETCH(QString, text);
        QFETCH(int, characters);
        QCOMPARE(TextTools::sentences(text), QStringList());
        QCOMPARE(TextTools::words(text), QStringList());
        QCOMPARE(TextTools::summarize(text), QString());
        QCOMPARE(TextTools::bullets(text), QString());
        QCOMPARE(TextTools::fixSpacingAndCase(text), QString());
        QCOMPARE(TextTools::count(text),
            u"0 words · %1 characters · 0 sentences · ~1 min read"_s.arg(characters));
    }

    void whatIsNoTextIsKept()
    {
        const auto text = QString(QChar(0xDC00)) + QChar(u'\0') + QChar(0xD800);
        QCOMPARE(TextTools::summarize(text), text);
        QCOMPARE(TextTools::bullets(text), u"• "_s + text);
        QCOMPARE(TextTools::fixSpacingAndCase(text), text);
        QVERIFY(TextTools::count(text).startsWith(u"0 words · 3 characters"_s));
    }

    void millionsOfOnePieceTakeNoLonger_data()
    {
        QTest::addColumn<QString>("piece");
        for (const auto& piece : { u" "_s, u"\n"_s, u"a"_s, u"A b. "_s, u"- "_s, u"1"_s, u"."_s,
                 u"\u0301"_s, u"\U0001F1E9"_s, u"\u0915\u094D"_s, u"e\u0301. "_s, u"\u200D"_s })
            QTest::newRow(qPrintable(RandomText::shown(piece))) << piece;
        QTest::newRow("halves of pairs") << QString(QChar(0xD800));
        QTest::newRow("zeros") << QString(QChar(u'\0'));
    }

    void millionsOfOnePieceTakeNoLonger()
    {
        QFETCH(QString, piece);
        const auto text = u"x. y. "_s + piece.repeated(1'000'000 / piece.size());
        QElapsedTimer taken;
        taken.start();
        const auto summary = TextTools::summarize(text);
        const auto list = TextTools::bullets(text);
        const auto count = TextTools::count(text);
        // Squared it would take hours.
        QVERIFY2(taken.elapsed() < 10'000, qPrintable(QString::number(taken.elapsed())));
        QVERIFY(summary.startsWith(u"x."));
        QVERIFY(list.startsWith(u"• x."));
        QVERIFY(count.contains(u" words · "));
    }

    void severalThreadsMayCount()
    {
        const auto text = u"One. Two e\u0301t\u00E9 \u6211\u7231\u5317\u4EAC! "_s.repeated(200);
        const auto expected = TextTools::count(text);
        std::array<std::future<QString>, 4> counts;
        for (auto& count : counts)
            count = std::async(std::launch::async, &TextTools::count, text);
        for (auto& count : counts)
            QCOMPARE(count.get(), expected);
    }
};

QTEST_GUILESS_MAIN(TextToolsTest)
#include "TextToolsTest.moc"
