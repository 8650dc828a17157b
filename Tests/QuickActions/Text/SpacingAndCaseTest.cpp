#include "App/QuickActions/Text/SpacingAndCase.h"
#include "Tests/QuickActions/Text/RandomText.h"
#include "Tests/QuickActions/Text/TextDefinitions.h"

#include <QElapsedTimer>
#include <QTest>

#include <unicode/uloc.h>

using namespace Qt::StringLiterals;

static QString mended(const QString& text)
{
    return withCaseMended(withSpacingMended(text));
}

class SpacingAndCaseTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void mendsSpacing_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("result");
        QTest::newRow("spaces and tabs") << u"a  \t b\tc"_s << u"a b c"_s;
        QTest::newRow("other spaces") << u"a\u00A0\u3000 \u2009b"_s << u"a\u00A0\u3000 \u2009b"_s;
        QTest::newRow("around line feeds") << u"a \n\t b"_s << u"a\nb"_s;
        QTest::newRow("around other line breaks") << u"a \r b \v c"_s << u"a \r b \v c"_s;
        QTest::newRow("before line feeds of Windows") << u"a \r \n b"_s << u"a \r\nb"_s;
        QTest::newRow("two line feeds") << u"a\n\nb"_s << u"a\n\nb"_s;
        QTest::newRow("three line feeds") << u"a\n\n\nb"_s << u"a\n\nb"_s;
        QTest::newRow("blank lines") << u"a\n \n\t\n\n \nb"_s << u"a\n\nb"_s;
        QTest::newRow("three of Windows") << u"a\r\n\r\n\r\nb"_s << u"a\r\n\r\n\r\nb"_s;
        QTest::newRow("before punctuation")
            << u"a , b . c  ; d : e ! f ?"_s << u"a, b. c; d: e! f?"_s;
        QTest::newRow("punctuation on a line of its own") << u"a \n , b"_s << u"a\n, b"_s;
        QTest::newRow("before other marks") << u"a ) - \u2026"_s << u"a ) - \u2026"_s;
        QTest::newRow("after punctuation") << u"a,b;c:d!e?f"_s << u"a, b; c: d! e? f"_s;
        QTest::newRow("capitals after punctuation") << u"a,B;Z"_s << u"a, B; Z"_s;
        QTest::newRow("digits after punctuation") << u"1,000 at 10:30"_s << u"1,000 at 10:30"_s;
        QTest::newRow("other letters after punctuation")
            << u"a,\u00E9:\u0436"_s << u"a,\u00E9:\u0436"_s;
        QTest::newRow("several before a letter") << u"what?!a"_s << u"what?! a"_s;
        QTest::newRow("a space taken and given") << u"a ,b"_s << u"a, b"_s;
        QTest::newRow("sentence glued to the next") << u"end.Start"_s << u"end. Start"_s;
        QTest::newRow("glued after a space") << u"end .Start"_s << u"end. Start"_s;
        QTest::newRow("no sentence")
            << u"a.b A.B 1.B \u00E9.B a.\u00C9 a..B"_s << u"a.b A.B 1.B \u00E9.B a.\u00C9 a..B"_s;
        QTest::newRow("both ends") << u"\u2028 \u3000a b\r\n\u0085"_s << u"a b"_s;
        QTest::newRow("a mark on a space at the start") << u" \u0301a"_s << u"\u0301a"_s;
        QTest::newRow("no space for others") << u"\u200B a \uFEFF"_s << u"\u200B a \uFEFF"_s;
    }

    void mendsSpacing()
    {
        QFETCH(QString, text);
        QFETCH(QString, result);
        QCOMPARE(withSpacingMended(text), result);
    }

    void mendsCase_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("result");
        QTest::newRow("first letter") << u"hello there"_s << u"Hello there"_s;
        QTest::newRow("each end") << u"a. b! c? d\ne"_s << u"A. B! C? D\nE"_s;
        QTest::newRow("other ends") << u"a; b: c\u2026 d\u2028e"_s << u"A; b: c\u2026 d\u2028e"_s;
        QTest::newRow("line feed of Windows") << u"a\r\nb.\r\nc"_s << u"A\r\nb.\r\nC"_s;
        QTest::newRow("at once") << u"world.that"_s << u"World.That"_s;
        QTest::newRow("each full stop") << u"e.g. foo"_s << u"E.G. Foo"_s;
        QTest::newRow("digit") << u"3 apples. 4th"_s << u"3 apples. 4th"_s;
        QTest::newRow("symbol") << u"- a. #b"_s << u"- a. #b"_s;
        QTest::newRow("full stop with a mark") << u"a.\u0301 b"_s << u"A.\u0301 b"_s;
        QTest::newRow("space with a mark") << u"a. \u0301 b"_s << u"A. \u0301 b"_s;
        QTest::newRow("parenthesis") << u"(ok) fine"_s << u"(Ok) fine"_s;
        QTest::newRow("quote") << u"\"hi\" there. 'so' it"_s << u"\"Hi\" there. 'So' it"_s;
        QTest::newRow("curly quote")
            << u"\u201Chi\u201D. \u2018so"_s << u"\u201CHi\u201D. \u2018So"_s;
        QTest::newRow("closing quote") << u"\u201Da. \u2019b. )c"_s << u"\u201Da. \u2019b. )c"_s;
        QTest::newRow("other quotes") << u"[a. \u00ABb. {c"_s << u"[a. \u00ABb. {c"_s;
        QTest::newRow("other spaces")
            << u"a.\u00A0\u3000\u2029\u0085b"_s << u"A.\u00A0\u3000\u2029\u0085B"_s;
        QTest::newRow("no spaces") << u"a.\u200Bb.\uFEFFc"_s << u"A.\u200Bb.\uFEFFc"_s;
        QTest::newRow("longer capitals") << u"\u00DFa. \u0149a. \uFB01n. \u0390"_s
                                         << u"SSa. \u02BCNa. FIn. \u0399\u0308\u0301"_s;
        QTest::newRow("with a mark") << u"e\u0301. \u03B1\u0345"_s << u"E\u0301. \u0391\u0399"_s;
        QTest::newRow("dotless and dotted") << u"\u0131. i\u0307"_s << u"I. I\u0307"_s;
        QTest::newRow("beyond the first plane")
            << u"\U00010428. \U0001D51E"_s << u"\U00010400. \U0001D51E"_s;
        QTest::newRow("letters without case") << u"\u65E5a. \u05D0b"_s << u"\u65E5a. \u05D0b"_s;
        QTest::newRow("no letters") << u"\u24D0. \u2177"_s << u"\u24D0. \u2177"_s;
    }

    void mendsCase()
    {
        QFETCH(QString, text);
        QFETCH(QString, result);
        QCOMPARE(withCaseMended(text), result);
    }

    void theLoneIBecomesACapital_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("result");
        for (const QChar after : u" ',.!?"_s)
            QTest::addRow("before %s", qPrintable(QString(after)))
                << u"- i"_s + after << u"- I"_s + after;
        for (const QChar after : u"\n:;)\"\t\u2019"_s)
            QTest::addRow("not before U+%04X", after.unicode())
                << u"- i"_s + after << u"- i"_s + after;
        QTest::newRow("at the very end") << u"So do i"_s << u"So do i"_s;
        QTest::newRow("at the start") << u"i am"_s << u"I am"_s;
        QTest::newRow("after punctuation")
            << u"-i 'i (i \u00ADi \u2014i "_s << u"-I 'I (I \u00ADI \u2014I "_s;
        QTest::newRow("within a word")
            << u"- xi ii \u00E9i 1i _i "_s << u"- xi ii \u00E9i 1i _i "_s;
        QTest::newRow("after letter and mark")
            << u"- x\u0301i x\u200Di "_s << u"- x\u0301i x\u200Di "_s;
        QTest::newRow("after a mark alone") << u"-\u0301i "_s << u"-\u0301I "_s;
        QTest::newRow("with a mark") << u"- i\u0301 "_s << u"- i\u0301 "_s;
    }

    void theLoneIBecomesACapital()
    {
        QFETCH(QString, text);
        QFETCH(QString, result);
        QCOMPARE(withCaseMended(text), result);
    }

    void capitalsAreThoseOfNoLanguage()
    {
        const QByteArray before = uloc_getDefault();
        UErrorCode status = U_ZERO_ERROR;
        uloc_setDefault("tr_TR", &status);
        const auto result = withCaseMended(u"istanbul. i am");
        uloc_setDefault(before.constData(), &status);
        QVERIFY(U_SUCCESS(status));
        QCOMPARE(result, u"Istanbul. I am"_s);
    }

    void agreesWithItsDefinition()
    {
        RandomText texts(1);
        for (int i = 0; i < 10'000; ++i) {
            const auto text = texts.next();
            const auto result = mended(text);
            if (result != TextDefinitions::fixSpacingAndCase(text))
                QFAIL(qPrintable(u"seed 1: "_s + RandomText::shown(text) + u" became "_s
                    + RandomText::shown(result)));
        }
    }

    void millionsOfOnePieceTakeNoLonger_data()
    {
        QTest::addColumn<QString>("piece");
        for (const auto& piece : { u" "_s, u"\n"_s, u" ,"_s, u",a"_s, u"a.B"_s, u"i "_s, u"."_s,
                 u"a"_s, u"\u0301"_s, u"a\u0301"_s, u".\u0301"_s, u"\u0301i "_s, u"\r\n"_s,
                 u"\u0390."_s, u"\U0001F1E9"_s, u"\U0001F44D\u200D"_s, u"\u0915\u094D"_s })
            QTest::newRow(qPrintable(RandomText::shown(piece))) << piece;
        QTest::newRow("halves of pairs") << QString(QChar(0xD800));
        QTest::newRow("zeros") << QString(QChar(u'\0'));
    }

    void millionsOfOnePieceTakeNoLonger()
    {
        QFETCH(QString, piece);
        const auto text = u'x' + piece.repeated(2'000'000 / piece.size()) + u".x"_s;
        QElapsedTimer taken;
        taken.start();
        const auto result = mended(text);
        // Squared it would take hours.
        QVERIFY2(taken.elapsed() < 10'000, qPrintable(QString::number(taken.elapsed())));
        QCOMPARE(result.front(), u'X');
    }
};

QTEST_GUILESS_MAIN(SpacingAndCaseTest)
#include "SpacingAndCaseTest.moc"
