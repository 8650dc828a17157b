#include "Tests/Support/VectorsProgram.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

static VectorsProgram program()
{
    return VectorsProgram(QStringLiteral(TEXT_VECTORS));
}

static QJsonObject vector(const QString& op, const QJsonValue& input, const QJsonValue& output)
{
    return { { u"op"_s, op }, { u"input"_s, input }, { u"output"_s, output } };
}

class TextVectorsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void countsWhatPasses()
    {
        const auto outcome = program().runOn(VectorsProgram::contentOf(
            { vector(u"sentences"_s, u"One. Two."_s, QJsonArray { u"One."_s, u"Two."_s }),
                vector(u"words"_s, u"One."_s, QJsonArray { u"One"_s }),
                vector(u"summarize"_s, u" One. "_s, u"One."_s),
                vector(u"bullets"_s, u"One."_s, u"• One."_s),
                vector(u"fixSpacingAndCase"_s, u"one"_s, u"One"_s),
                vector(
                    u"count"_s, u""_s, u"0 words · 0 characters · 0 sentences · ~1 min read"_s) }));
        QCOMPARE(outcome.status, 0);
        QCOMPARE(outcome.output, u"6 passed, 0 failed\n"_s);
    }

    void tellsWhatDiffers()
    {
        const auto outcome = program().runOn(
            VectorsProgram::contentOf({ vector(u"words"_s, u"a\n\u00E9"_s, QJsonArray { u"a"_s }),
                vector(u"bullets"_s, u"b"_s, u"\"b\""_s),
                vector(u"bullets"_s, u"c"_s, u"• c"_s) }));
        QCOMPARE(outcome.status, 1);
        QCOMPARE(outcome.output,
            u"1: words \"a\\u000a\\u00e9\"\n"
            "    expected [\"a\"]\n"
            "    found    [\"a\", \"\\u00e9\"]\n"
            "2: bullets \"b\"\n"
            "    expected \"\\u0022b\\u0022\"\n"
            "    found    \"\\u2022 b\"\n"
            "1 passed, 2 failed\n"_s);
    }

    void textsArriveAsTheyAre_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("characters");
        QTest::newRow("halves of pairs") << QByteArray("\\udc00\\ud800x") << 3;
        QTest::newRow("pair") << QByteArray("\\ud83d\\udc4d") << 1;
        QTest::newRow("zero") << QByteArray("x\\u0000") << 2;
        QTest::newRow("U+FEFF") << QByteArray("\xEF\xBB\xBFx\xEF\xBB\xBF") << 3;
        QTest::newRow("U+FEFF, escaped") << QByteArray("\\ufeffx\\uFEFF") << 3;
    }

    void textsArriveAsTheyAre()
    {
        QFETCH(QByteArray, text);
        QFETCH(int, characters);
        const auto entry = "[{\"op\": \"count\", \"input\": \"" + text + "\", \"output\": \"\"}]";
        const auto counted = u" %1 characters"_s.arg(characters);
        QVERIFY(program().runOn(entry).output.contains(counted));
        QVERIFY(program().runOn("\xEF\xBB\xBF" + entry).output.contains(counted));
    }

    void whatIsNoUnicodeIsKeptApart()
    {
        const auto outcome
            = program().runOn(R"([{"op": "bullets", "input": "\ud800", "output": "• \ud801"}])");
        QCOMPARE(outcome.status, 1);
        QVERIFY(outcome.output.contains(u"found    \"\\u2022 \\ud800\""_s));
    }

    void complainsOfAFileItCannotUse_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("complaint");
        const auto noArray = u"not an array of texts with what is to come out"_s;
        QTest::newRow("no JSON") << QByteArray("texts") << u"illegal value"_s;
        QTest::newRow("no UTF-8") << QByteArray("[\"\xED\xA0\x80\"]") << u"invalid UTF8 string"_s;
        QTest::newRow("no array") << QByteArray("{}") << noArray;
        QTest::newRow("nothing in it") << QByteArray("[]") << noArray;
        const auto noVector = u"entry 1 is not a tool, a text and what is to come out"_s;
        QTest::newRow("other entries")
            << VectorsProgram::contentOf({ { { u"link"_s, u"x"_s } } }) << noVector;
        QTest::newRow("another tool")
            << VectorsProgram::contentOf({ vector(u"shout"_s, u"x"_s, u"X"_s) }) << noVector;
        QTest::newRow("a number for a text")
            << VectorsProgram::contentOf({ vector(u"bullets"_s, 1, u"• 1"_s) }) << noVector;
        QTest::newRow("one text for several")
            << VectorsProgram::contentOf({ vector(u"words"_s, u"x"_s, u"x"_s) }) << noVector;
        QTest::newRow("several texts for one")
            << VectorsProgram::contentOf({ vector(u"bullets"_s, u"x"_s, QJsonArray { u"x"_s }) })
            << noVector;
        QTest::newRow("numbers for texts")
            << VectorsProgram::contentOf({ vector(u"words"_s, u"1"_s, QJsonArray { 1 }) })
            << noVector;
    }

    void complainsOfAFileItCannotUse()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, complaint);
        const auto outcome = program().runOn(content);
        QCOMPARE(outcome.status, 1);
        QCOMPARE(outcome.output, QString());
        QVERIFY2(outcome.complaint.contains(complaint), qPrintable(outcome.complaint));
    }

    void complainsOfAFileThatIsNotThere()
    {
        const auto outcome = program().run({ u"/nonexistent/texts.json"_s });
        QCOMPARE(outcome.status, 1);
        QVERIFY(outcome.complaint.contains(u"/nonexistent/texts.json: No such file"_s));
    }

    void complainsWithoutAFile()
    {
        QCOMPARE(program().run({}).status, 1);
        QVERIFY(program().run({}).complaint.contains(u"usage"_s));
    }
};

QTEST_GUILESS_MAIN(TextVectorsTest)
#include "TextVectorsTest.moc"
