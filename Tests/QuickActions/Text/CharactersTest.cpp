#include "App/QuickActions/Text/Characters.h"
#include "Tests/QuickActions/Text/RandomText.h"
#include "Tests/QuickActions/Text/TextDefinitions.h"

#include <QTest>

using namespace Qt::StringLiterals;

static QStringList charactersOf(const QString& text)
{
    QStringList list;
    Characters characters(text);
    for (auto one = characters.next(); !one.isEmpty(); one = characters.next())
        list << one.toString();
    return list;
}

class CharactersTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aReaderSeesOne_data()
    {
        QTest::addColumn<QString>("character");
        QTest::newRow("letter") << u"a"_s;
        QTest::newRow("zero") << QString(QChar(u'\0'));
        QTest::newRow("line feed") << u"\n"_s;
        QTest::newRow("carriage return and line feed") << u"\r\n"_s;
        QTest::newRow("letter and mark") << u"e\u0301"_s;
        QTest::newRow("space and mark") << u" \u0301"_s;
        QTest::newRow("mark alone") << u"\u0301"_s;
        QTest::newRow("pair") << u"\U0001D51E"_s;
        QTest::newRow("half a pair") << QString(QChar(0xD800));
        QTest::newRow("family") << u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s;
        QTest::newRow("flag") << u"\U0001F1E9\U0001F1EA"_s;
        QTest::newRow("syllable in parts") << u"\u1100\u1161\u11A8"_s;
        QTest::newRow("key") << u"1\uFE0F\u20E3"_s;
    }

    void aReaderSeesOne()
    {
        QFETCH(QString, character);
        QCOMPARE(charactersOf(character), QStringList { character });
        QCOMPARE(charactersOf(character + u'x').first(), character);
    }

    void noTextHasNone()
    {
        QVERIFY(charactersOf({}).isEmpty());
        QCOMPARE(characterCount({}), 0);
    }

    void eachCodeUnitJoinsAsInIcu()
    {
        for (int unit = 0; unit < 0x10000; ++unit) {
            const auto c = QChar(unit);
            auto text = u"#a##\u0301#\r#\n#\u4E00#"_s;
            text.replace(u'#', c);
            if (charactersOf(text) != TextDefinitions::characters(text))
                QFAIL(qPrintable(u"U+%1"_s.arg(unit, 4, 16)));
        }
    }

    void randomTextsFallApartAsInIcu()
    {
        RandomText texts(1);
        for (int i = 0; i < 10'000; ++i) {
            const auto text = texts.next() + texts.next() + texts.next();
            const auto expected = TextDefinitions::characters(text);
            if (charactersOf(text) != expected)
                QFAIL(qPrintable(u"seed 1: "_s + RandomText::shown(text)));
            QCOMPARE(characterCount(text), expected.size());
        }
    }

    void goesOnWhereACharacterSurelyBegins()
    {
        Characters characters(u"e\u0301abc");
        characters.skipTo(3);
        QCOMPARE(characters.next(), u"b");
        QCOMPARE(characters.position(), 4);
        characters.skipTo(5);
        QVERIFY(characters.next().isEmpty());
    }

    void goesNowhereWhereOneMayNotBegin()
    {
        Characters characters(u"ae\u0301\r\nb");
        characters.skipTo(2);
        QCOMPARE(characters.position(), 0);
        characters.skipTo(3);
        QCOMPARE(characters.position(), 0);
        characters.skipTo(4);
        QCOMPARE(characters.position(), 0);
    }

    void goesOnFromWithinWhatIcuWasGiven()
    {
        Characters characters(u"e\u0301xyz\u0301w");
        QCOMPARE(characters.next(), u"e\u0301");
        characters.skipTo(3);
        QCOMPARE(characters.next(), u"y");
        QCOMPARE(characters.next(), u"z\u0301");
        QCOMPARE(characters.next(), u"w");
        QVERIFY(characters.next().isEmpty());
    }

    void walksOverAnotherText()
    {
        Characters characters(u"e\u0301e\u0301");
        characters.next();
        characters.setText(u"xy");
        QCOMPARE(characters.next(), u"x");
        QCOMPARE(characters.next(), u"y");
        QVERIFY(characters.next().isEmpty());
    }
};

QTEST_GUILESS_MAIN(CharactersTest)
#include "CharactersTest.moc"
