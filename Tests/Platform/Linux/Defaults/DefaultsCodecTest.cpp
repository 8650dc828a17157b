#include "App/Platform/Linux/Defaults/DefaultsCodec.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;
using Value = UserDefaults::Value;

Q_DECLARE_METATYPE(Value)

class DefaultsCodecTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyValueComesBackAsItWas_data();
    void everyValueComesBackAsItWas();
    void plainValuesArePlainJson_data();
    void plainValuesArePlainJson();
    void otherJsonIsNoValue_data();
    void otherJsonIsNoValue();
    void onlyOneWholeObjectIsAFile_data();
    void onlyOneWholeObjectIsAFile();
    void whatIsNotUnderstoodSurvivesTheRoundTrip();
    void keysOfAnyTextSurvive();
    void theLastOfEqualKeysCounts();
    void aByteOrderMarkIsNoDamage();
    void theTwoZerosDifferAndNoNumberEqualsItself();
};

void DefaultsCodecTest::everyValueComesBackAsItWas_data()
{
    using Whole = std::numeric_limits<qint64>;
    using Real = std::numeric_limits<double>;
    QTest::addColumn<Value>("value");
    QTest::newRow("integer") << Value(qint64(25));
    QTest::newRow("largest integer") << Value(Whole::max());
    QTest::newRow("smallest integer") << Value(Whole::min());
    QTest::newRow("beyond a double's integers") << Value(qint64(9007199254740993));
    QTest::newRow("whole real") << Value(25.0);
    QTest::newRow("third") << Value(1.0 / 3);
    QTest::newRow("from a short float") << Value(static_cast<double>(0.3F));
    QTest::newRow("smallest real") << Value(Real::denorm_min());
    QTest::newRow("largest real") << Value(Real::max());
    QTest::newRow("huge whole real") << Value(1e22);
    QTest::newRow("negative zero") << Value(-0.0);
    QTest::newRow("infinity") << Value(-Real::infinity());
    QTest::newRow("not a number") << Value(Real::quiet_NaN());
    QTest::newRow("true") << Value(true);
    QTest::newRow("false") << Value(false);
    QTest::newRow("empty text") << Value(QString());
    QTest::newRow("text") << Value(u"naïve \"quotes\" \\ / \n\t 🍅 \u2028"_s);
    QTest::newRow("text with a zero") << Value(QString(u"a\0b"_s));
    QTest::newRow("half a surrogate pair") << Value(QString(QChar(0xd83c)));
    QTest::newRow("text like a number") << Value(u"25"_s);
    QTest::newRow("empty data") << Value(QByteArray());
    QTest::newRow("data") << Value(QByteArray("\0\xff[{}]\"", 7));
}

void DefaultsCodecTest::everyValueComesBackAsItWas()
{
    QFETCH(Value, value);
    const auto entries = DefaultsCodec::parse(
        DefaultsCodec::print({ { u"key"_s, DefaultsCodec::encode(value) } }));
    QVERIFY(entries);
    QVERIFY(DefaultsCodec::same(DefaultsCodec::decodeAll(*entries), { { u"key"_s, value } }));
}

void DefaultsCodecTest::plainValuesArePlainJson_data()
{
    QTest::addColumn<Value>("value");
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("integer") << Value(qint64(25)) << QByteArray("25");
    QTest::newRow("real") << Value(25.0) << QByteArray("25.0");
    QTest::newRow("boolean") << Value(true) << QByteArray("true");
    QTest::newRow("text") << Value(u"é"_s) << QByteArray("\"é\"");
    QTest::newRow("data") << Value(QByteArray("[]")) << QByteArray("{\"data\": \"W10=\"}");
}

void DefaultsCodecTest::plainValuesArePlainJson()
{
    QFETCH(Value, value);
    QFETCH(QByteArray, json);
    QCOMPARE(DefaultsCodec::encode(value), json);
    QCOMPARE(DefaultsCodec::decode(json), value);
}

void DefaultsCodecTest::otherJsonIsNoValue_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("null") << QByteArray("null");
    QTest::newRow("array") << QByteArray("[1, 2]");
    QTest::newRow("unknown tag") << QByteArray("{\"date\": \"W10=\"}");
    QTest::newRow("two tags") << QByteArray("{\"data\": \"W10=\", \"more\": 1}");
    QTest::newRow("no base64") << QByteArray("{\"data\": \"*\"}");
    QTest::newRow("data that is a number") << QByteArray("{\"data\": 1}");
    QTest::newRow("integer of 65 bits") << QByteArray("9223372036854775808");
    QTest::newRow("real out of range") << QByteArray("1e999");
}

void DefaultsCodecTest::otherJsonIsNoValue()
{
    QFETCH(QByteArray, json);
    QVERIFY(!DefaultsCodec::decode(json));
}

void DefaultsCodecTest::onlyOneWholeObjectIsAFile_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("whole");
    QTest::newRow("object") << QByteArray("{\"a\":1}") << true;
    QTest::newRow("no entries") << QByteArray(" { } ") << true;
    QTest::newRow("nothing") << QByteArray() << false;
    QTest::newRow("white space") << QByteArray("\n\n") << false;
    QTest::newRow("array") << QByteArray("[1]") << false;
    QTest::newRow("cut short") << QByteArray("{\"a\": 1, \"b\": \"te") << false;
    QTest::newRow("missing brace") << QByteArray("{\"a\": 1") << false;
    QTest::newRow("zeros behind it") << QByteArray("{\"a\":1}\0\0\0", 10) << false;
    QTest::newRow("two objects") << QByteArray("{\"a\":1}{\"a\":2}") << false;
    QTest::newRow("binary") << QByteArray("\x7f"
                                          "ELF\x02\x01\x01\0\xff",
        9) << false;
    QTest::newRow("no UTF-8") << QByteArray("{\"a\": \"\xe9\"}") << false;
    QTest::newRow("deeper than any editor writes")
        << QByteArray("{\"a\":") + QByteArray(100000, '[') << false;
    QByteArray keys("{");
    for (int key = 0; key < DefaultsCodec::mostEntries; ++key)
        keys += '"' + QByteArray::number(key) + "\": 1,";
    QTest::newRow("very many entries") << keys.chopped(1) + '}' << true;
    QTest::newRow("more than anything stores") << keys + "\"a\": 1}" << false;
}

void DefaultsCodecTest::onlyOneWholeObjectIsAFile()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, whole);
    QCOMPARE(DefaultsCodec::parse(text).has_value(), whole);
}

void DefaultsCodecTest::whatIsNotUnderstoodSurvivesTheRoundTrip()
{
    const QByteArray strange = "[ null, {\"a\": [\"]}\\\"\", 1.50]},  99999999999999999999 ]";
    const auto entries = DefaultsCodec::parse("{\"strange\" : " + strange + " , \"known\":1}");
    QVERIFY(entries);
    QCOMPARE(entries->value(u"strange"_s), strange);
    QCOMPARE(DefaultsCodec::decodeAll(*entries).keys(), QStringList { u"known"_s });
    QCOMPARE(DefaultsCodec::parse(DefaultsCodec::print(*entries)), entries);
}

void DefaultsCodecTest::keysOfAnyTextSurvive()
{
    const DefaultsCodec::Entries entries {
        { QString(), "1" },
        { u"\"quoted\": {\n"_s, "2" },
        { u"schlüssel"_s, "3" },
    };
    QCOMPARE(DefaultsCodec::parse(DefaultsCodec::print(entries)), entries);
}

void DefaultsCodecTest::theLastOfEqualKeysCounts()
{
    QCOMPARE(DefaultsCodec::parse("{\"a\": 1, \"\\u0061\": 2}")->value(u"a"_s), "2");
}

void DefaultsCodecTest::aByteOrderMarkIsNoDamage()
{
    const auto entries = DefaultsCodec::parse("\xEF\xBB\xBF{\"a\": 1}");
    QVERIFY(entries);
    QCOMPARE(entries->value(u"a"_s), "1");
}

void DefaultsCodecTest::theTwoZerosDifferAndNoNumberEqualsItself()
{
    const DefaultsCodec::Values nan { { u"a"_s, std::numeric_limits<double>::quiet_NaN() } };
    QVERIFY(DefaultsCodec::same(nan, nan));
    QVERIFY(!DefaultsCodec::same({ { u"a"_s, 0.0 } }, { { u"a"_s, -0.0 } }));
    QVERIFY(!DefaultsCodec::same({ { u"a"_s, qint64(1) } }, { { u"a"_s, 1.0 } }));
    QVERIFY(!DefaultsCodec::same({ { u"a"_s, 1.0 } }, { { u"b"_s, 1.0 } }));
}

QTEST_GUILESS_MAIN(DefaultsCodecTest)
#include "DefaultsCodecTest.moc"
