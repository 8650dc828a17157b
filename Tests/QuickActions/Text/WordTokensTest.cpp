#include "App/QuickActions/Text/WordTokens.h"
#include "Tests/QuickActions/Text/RandomText.h"
#include "Tests/QuickActions/Text/TextDefinitions.h"

#include <QTest>

using namespace Qt::StringLiterals;

static QStringList wordsOf(const QString& text)
{
    QStringList words;
    WordTokens tokens;
    tokens.setText(text);
    while (const auto word = tokens.next())
        words << word->toString();
    return words;
}

class WordTokensTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void leavesOutWhatIsNoWord_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("words");
        QTest::newRow("nothing") << QString() << QStringList();
        QTest::newRow("spaces") << u" \n\t\u00A0"_s << QStringList();
        QTest::newRow("punctuation") << u"?!-.\u2026"_s << QStringList();
        QTest::newRow("sentence") << u"One, two."_s << QStringList { u"One"_s, u"two"_s };
        QTest::newRow("contraction") << u"Don't"_s << QStringList { u"Don't"_s };
        QTest::newRow("curly") << u"Don\u2019t"_s << QStringList { u"Don\u2019t"_s };
        QTest::newRow("quoted") << u"'it'"_s << QStringList { u"it"_s };
        QTest::newRow("numbers") << u"1,000 3.14 1.a 2,b"_s
                                 << QStringList { u"1,000"_s, u"3.14"_s, u"1"_s, u"a"_s, u"2"_s,
                                        u"b"_s };
        QTest::newRow("abbreviation") << u"e.g."_s << QStringList { u"e.g"_s };
        QTest::newRow("joined") << u"foo_bar1 AT&T"_s
                                << QStringList { u"foo_bar1"_s, u"AT"_s, u"T"_s };
        QTest::newRow("Chinese") << u"我爱北京"_s << QStringList { u"我"_s, u"爱"_s, u"北京"_s };
        QTest::newRow("mark") << u"a e\u0301 b"_s << QStringList { u"a"_s, u"e\u0301"_s, u"b"_s };
        QTest::newRow("emoji") << u"a \U0001F44D b"_s << QStringList { u"a"_s, u"b"_s };
        QTest::newRow("half a pair")
            << u"a"_s + QChar(0xDC00) + u"b"_s << QStringList { u"a"_s, u"b"_s };
    }

    void leavesOutWhatIsNoWord()
    {
        QFETCH(QString, text);
        QFETCH(QStringList, words);
        QCOMPARE(wordsOf(text), words);
        QCOMPARE(wordCount(text), words.size());
    }

    void eachCodeUnitJoinsAsInIcu()
    {
        for (int unit = 0; unit < 0x10000; ++unit) {
            const auto c = QChar(unit);
            auto text = u"# a#a 1#1 a#1.# #a.#_## 1#"_s;
            text.replace(u'#', c);
            if (wordsOf(text) != TextDefinitions::words(text))
                QFAIL(qPrintable(u"U+%1"_s.arg(unit, 4, 16)));
        }
    }

    void randomTextsFallApartAsInIcu()
    {
        RandomText texts(1);
        for (int i = 0; i < 10'000; ++i) {
            const auto text = texts.next() + texts.next() + texts.next();
            if (wordsOf(text) != TextDefinitions::words(text))
                QFAIL(qPrintable(u"seed 1: "_s + RandomText::shown(text)));
        }
    }

    void randomPlainTextsFallApartAsInIcu()
    {
        const QStringView units(u"aZ\u00E9\u0436 09_.,;:'\"\u2019@-");
        std::mt19937 random; // Seeded alike in each run.
        for (int i = 0; i < 20'000; ++i) {
            QString text;
            for (int left = 12; left > 0; --left)
                text += units[static_cast<qsizetype>(random() % size_t(units.size()))];
            if (wordsOf(text) != TextDefinitions::words(text))
                QFAIL(qPrintable(RandomText::shown(text)));
        }
    }

    void walksOverAnotherText()
    {
        WordTokens tokens;
        tokens.setText(u"e\u0301 e\u0301");
        tokens.next();
        tokens.setText(u"two");
        QCOMPARE(tokens.next().value(), u"two");
        QVERIFY(!tokens.next());
    }
};

QTEST_GUILESS_MAIN(WordTokensTest)
#include "WordTokensTest.moc"
