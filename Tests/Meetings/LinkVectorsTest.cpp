#include "Tests/Support/VectorsProgram.h"

#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

static VectorsProgram program()
{
    return VectorsProgram(QStringLiteral(LINK_VECTORS));
}

static QJsonObject vector(
    const QJsonValue& location, const QJsonValue& link, const QJsonValue& service)
{
    return { { u"location"_s, location }, { u"notes"_s, QJsonValue() }, { u"url"_s, QJsonValue() },
        { u"link"_s, link }, { u"service"_s, service } };
}

class LinkVectorsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void countsWhatPasses()
    {
        const auto link = u"https://zoom.us/j/1"_s;
        const auto outcome = program().runOn(VectorsProgram::contentOf(
            { vector(link, link, u"Zoom"_s), vector(u"Room 4"_s, QJsonValue(), QJsonValue()) }));
        QCOMPARE(outcome.status, 0);
        QCOMPARE(outcome.output, u"2 passed, 0 failed\n"_s);
    }

    void tellsWhatDiffers()
    {
        const auto link = u"https://zoom.us/j/1"_s;
        const auto outcome = program().runOn(VectorsProgram::contentOf(
            { vector(link, link, u"Meet"_s), vector(QJsonValue(), link, u"Zoom"_s),
                vector(link, u"https://zoom.us"_s, u"Zoom"_s) }));
        QCOMPARE(outcome.status, 1);
        QCOMPARE(outcome.output,
            u"1: expected https://zoom.us/j/1, Meet, found https://zoom.us/j/1, Zoom\n"
            "2: expected https://zoom.us/j/1, Zoom, found no link, no service\n"
            "3: expected https://zoom.us, Zoom, found https://zoom.us/j/1, Zoom\n"
            "0 passed, 3 failed\n"_s);
    }

    void looksAtAllThreeTexts_data()
    {
        QTest::addColumn<QString>("key");
        for (const auto& key : { u"location"_s, u"notes"_s, u"url"_s })
            QTest::newRow(qPrintable(key)) << key;
    }

    void looksAtAllThreeTexts()
    {
        QFETCH(QString, key);
        const auto link = u"https://zoom.us/j/1"_s;
        auto entry = vector(QJsonValue(), link, u"Zoom"_s);
        entry[key] = link;
        QCOMPARE(program().runOn(VectorsProgram::contentOf({ entry })).status, 0);
    }

    void complainsOfAFileItCannotUse_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("complaint");
        const auto noArray = u"not an array of texts with their links"_s;
        QTest::newRow("no JSON") << QByteArray("links") << u"illegal value"_s;
        QTest::newRow("no array") << QByteArray("{}") << noArray;
        QTest::newRow("nothing in it") << QByteArray("[]") << noArray;
        const auto noVector = u"entry 1 is not texts with their link"_s;
        QTest::newRow("other entries")
            << VectorsProgram::contentOf({ { { u"op"_s, u"summarize"_s } } }) << noVector;
        QTest::newRow("a number for a text")
            << VectorsProgram::contentOf({ vector(1, QJsonValue(), QJsonValue()) }) << noVector;
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
        const auto outcome = program().run({ u"/nonexistent/links.json"_s });
        QCOMPARE(outcome.status, 1);
        QVERIFY(outcome.complaint.contains(u"/nonexistent/links.json: No such file"_s));
    }

    void complainsWithoutAFile()
    {
        QCOMPARE(program().run({}).status, 1);
        QVERIFY(program().run({}).complaint.contains(u"usage"_s));
    }
};

QTEST_GUILESS_MAIN(LinkVectorsTest)
#include "LinkVectorsTest.moc"
