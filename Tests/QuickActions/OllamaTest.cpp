#include "App/QuickActions/Ollama.h"
#include "Tests/Fakes/FakeHttpClient.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>
#include <QThreadPool>

#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto instruction = "Rewrite the following text so it is clearer and more polished. Keep "
                             "the meaning and roughly the same length. Reply with only the "
                             "rewritten text.\n\n"_L1;

struct Setup {
    void list()
    {
        Ollama::models(client, &waiter, [this](const Result<QStringList, Ollama::Error>& result) {
            ++answers;
            names = result;
        });
    }

    // Until the request is sent, or the answer has come without one.
    void rewrite(const QString& text = u"hi"_s, const QString& model = u"m"_s)
    {
        const auto before = answers + client.exchanges.size();
        Ollama::rewrite(
            client, text, model, &waiter, [this](const Result<QString, Ollama::Error>& result) {
                ++answers;
                better = result;
            });
        const auto isUnderWay = [&] { return answers + client.exchanges.size() > before; };
        QVERIFY(QTest::qWaitFor(isUnderWay));
    }

    void answer(const char* path, const HttpResult& result)
    {
        const auto before = answers;
        client.answer(QLatin1String(path), result);
        QVERIFY(QTest::qWaitFor([&] { return answers > before; }));
    }

    void answerList(const HttpResult& result)
    {
        list();
        answer("/api/tags", result);
    }

    void answerRewrite(const HttpResult& result)
    {
        rewrite();
        answer("/api/generate", result);
    }

    const HttpRequest& request() const { return client.exchanges.first().request; }
    QJsonObject body() const { return QJsonDocument::fromJson(request().body).object(); }
    bool hasNames() const { return names.index() == 0; }
    QStringList listed() const { return std::get<QStringList>(names); }
    Ollama::Error listError() const { return std::get<Ollama::Error>(names); }
    bool hasText() const { return better.index() == 0; }
    QString rewritten() const { return std::get<QString>(better); }
    Ollama::Error rewriteError() const { return std::get<Ollama::Error>(better); }

    FakeHttpClient client;
    QObject waiter;
    Result<QStringList, Ollama::Error> names;
    Result<QString, Ollama::Error> better;
    int answers = 0;
};

}

class OllamaTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theServerIsOnThisMachine() { QCOMPARE(Ollama::base(), QUrl(u"http://localhost:11434"_s)); }

    void asksForTheModels()
    {
        Setup s;
        s.list();
        QCOMPARE(s.request().url, QUrl(u"http://localhost:11434/api/tags"_s));
        QCOMPARE(s.request().timeout, 3s);
        QVERIFY(s.request().contentType.isEmpty());
        QVERIFY(s.request().body.isEmpty());
    }

    void noModelsAreAnEmptyList()
    {
        Setup s;
        s.names = QStringList { u"before"_s };
        s.answerList(QByteArray(R"({"models": []})"));
        QVERIFY(s.hasNames());
        QCOMPARE(s.listed(), QStringList());
    }

    void keepsOnlyTheNamesInOrder()
    {
        Setup s;
        s.answerList(QByteArray(R"({"models": [
            {"name": "mistral:7b", "modified_at": "2026-03-01T10:00:00.5+01:00", "size": 4109854934,
             "digest": "61e8", "details": {"families": ["llama"], "parent_model": ""}},
            {"size": 1, "name": "llama3.2"}, {"name": ""}, {"name": "llama3.2"}], "more": null})"));
        QCOMPARE(
            s.listed(), QStringList({ u"mistral:7b"_s, u"llama3.2"_s, QString(), u"llama3.2"_s }));
    }

    void aStrangeListIsAnError_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("a web page") << QByteArray("<!DOCTYPE html><p>502 Bad Gateway</p>");
        QTest::newRow("half an object") << QByteArray(R"({"models": [{"name": "a"})");
        QTest::newRow("more than an object") << QByteArray(R"({"models": []} {})");
        QTest::newRow("no models") << QByteArray("{}");
        QTest::newRow("models of null") << QByteArray(R"({"models": null})");
        QTest::newRow("models in an object") << QByteArray(R"({"models": {"name": "a"}})");
        QTest::newRow("a list alone") << QByteArray(R"([{"name": "a"}])");
        QTest::newRow("text for a model") << QByteArray(R"({"models": [{"name": "a"}, "b"]})");
        QTest::newRow("null for a model") << QByteArray(R"({"models": [null]})");
        QTest::newRow("no name") << QByteArray(R"({"models": [{"name": "a"}, {"model": "b"}]})");
        QTest::newRow("a name of null") << QByteArray(R"({"models": [{"name": null}]})");
        QTest::newRow("a number for a name") << QByteArray(R"({"models": [{"name": 3}]})");
        QTest::newRow("Latin 1") << QByteArray("{\"models\": [{\"name\": \"caf\xE9\"}]}");
        QTest::newRow("endless") << "{\"models\": [" + QByteArray(4 * 1024 * 1024, ' ') + "]}";
        QTest::newRow("deep") << QByteArray(R"({"models": )") + QByteArray(100000, '[');
    }

    void aStrangeListIsAnError()
    {
        QFETCH(const QByteArray, reply);
        Setup s;
        s.answerList(reply);
        QVERIFY(!s.hasNames());
        QCOMPARE(s.listError().domain, u"JSON"_s);
        QCOMPARE(s.listError().description, u"The reply is not what Ollama would send"_s);
        QVERIFY(!s.listError().transport);
    }

    void asksForARewrite()
    {
        Setup s;
        s.rewrite();
        QCOMPARE(s.request().url, QUrl(u"http://localhost:11434/api/generate"_s));
        QCOMPARE(s.request().contentType, "application/json");
        const QJsonObject expected {
            { u"model"_s, u"m"_s },
            { u"prompt"_s, instruction + u"hi"_s },
            { u"stream"_s, false },
        };
        QCOMPARE(s.body(), expected);
    }

    void aRewriteMayTakeThreeMinutes()
    {
        Setup s;
        s.rewrite();
        QCOMPARE(s.request().timeout, 180s);
        s.answer("/api/generate", TransportError { TransportError::Kind::timedOut, u"Late"_s });
        QCOMPARE(s.rewriteError().transport, TransportError::Kind::timedOut);
    }

    void sendsTextAndModelUnchanged_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("white space") << u" \t\r\n two \u2028\u00A0"_s;
        QTest::newRow("signs of JSON") << u"\"\\/{}[]\b\f\u007F</script>"_s;
        QTest::newRow("signs without a shape") << QString(u"a\0b\u0001\uFEFF\uFFFF"_s);
        QTest::newRow("beyond 16 bits") << u"\U0001F600 \U0010FFFF é e\u0301"_s;
        QTest::newRow("nothing") << QString();
    }

    void sendsTextAndModelUnchanged()
    {
        QFETCH(const QString, text);
        Setup s;
        s.rewrite(text, text);
        QCOMPARE(s.body()["prompt"_L1].toString(), instruction + text);
        QCOMPARE(s.body()["model"_L1].toString(), text);
    }

    void whatCannotBeEncodedIsNotSent_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("model");
        QTest::newRow("text") << u"half "_s + QChar(0xD83D) << u"m"_s;
        QTest::newRow("model") << u"hi"_s << QChar(0xDE00) + u"m"_s;
    }

    void whatCannotBeEncodedIsNotSent()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, model);
        Setup s;
        s.rewrite(text, model);
        QVERIFY(s.client.exchanges.isEmpty());
        QCOMPARE(s.rewriteError().domain, u"JSON"_s);
        QCOMPARE(s.rewriteError().description, u"The text is not valid Unicode"_s);
    }

    void trimsTheRewrittenText()
    {
        Setup s;
        s.answerRewrite(QByteArray(R"({"response": "  Better text.\n"})"));
        QCOMPARE(s.rewritten(), u"Better text."_s);
        const auto space = u"\u0085\u00A0\u1680\u2000\u200A\u2028\u2029\u202F\u205F\u3000"_s;
        const auto text = u"\u200Btwo"_s + space + u"words\uFEFF"_s;
        const QJsonObject reply { { u"response"_s, space + u"\t\v\f\r "_s + text + space } };
        s.answerRewrite(QJsonDocument(reply).toJson());
        QCOMPARE(s.rewritten(), text);
    }

    void aReplyWithoutTextIsEmpty_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::newRow("neither") << QByteArray(R"({"model": "m", "done": true})");
        QTest::newRow("null") << QByteArray(R"({"response": null, "error": null})");
        QTest::newRow("white space") << QByteArray(R"({"response": " \n"})");
    }

    void aReplyWithoutTextIsEmpty()
    {
        QFETCH(const QByteArray, reply);
        Setup s;
        s.better = u"before"_s;
        s.answerRewrite(reply);
        QVERIFY(s.hasText());
        QCOMPARE(s.rewritten(), QString());
    }

    void theServersOwnErrorIsPassedOnWordForWord_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QString>("description");
        QTest::newRow("alone") << QByteArray(R"({"error": "model 'x' not found"})")
                               << u"model 'x' not found"_s;
        QTest::newRow("with a response")
            << QByteArray(R"({"response": "Better", "error": "model 'x' not found"})")
            << u"model 'x' not found"_s;
        QTest::newRow("untrimmed") << QByteArray(R"({"error": " two\n"})") << u" two\n"_s;
        QTest::newRow("empty") << QByteArray(R"({"response": "Better", "error": ""})") << QString();
    }

    void theServersOwnErrorIsPassedOnWordForWord()
    {
        QFETCH(const QByteArray, reply);
        QFETCH(const QString, description);
        Setup s;
        s.answerRewrite(reply);
        QVERIFY(!s.hasText());
        QCOMPARE(s.rewriteError().domain, u"Ollama"_s);
        QCOMPARE(s.rewriteError().code, 1);
        QCOMPARE(s.rewriteError().description, description);
        QVERIFY(!s.rewriteError().transport);
    }

    void aStrangeGenerationIsAnError_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("a web page") << QByteArray("<!DOCTYPE html><p>502 Bad Gateway</p>");
        QTest::newRow("a stream") << QByteArray("{\"response\": \"a\"}\n{\"response\": \"b\"}\n");
        QTest::newRow("a text alone") << QByteArray(R"("Better")");
        QTest::newRow("a list alone") << QByteArray(R"([{"response": "a"}])");
        QTest::newRow("a number for a text") << QByteArray(R"({"response": 3})");
        QTest::newRow("a list for an error") << QByteArray(R"({"response": "a", "error": []})");
        QTest::newRow("an error beside a number") << QByteArray(R"({"response": 3, "error": "a"})");
        QTest::newRow("Latin 1") << QByteArray("{\"response\": \"caf\xE9\"}");
        QTest::newRow("deep") << QByteArray(R"({"response": )") + QByteArray(100000, '[');
    }

    void aStrangeGenerationIsAnError()
    {
        QFETCH(const QByteArray, reply);
        Setup s;
        s.answerRewrite(reply);
        QVERIFY(!s.hasText());
        QCOMPARE(s.rewriteError().domain, u"JSON"_s);
        QCOMPARE(s.rewriteError().description, u"The reply is not what Ollama would send"_s);
    }

    void transportErrorsArePassedOn_data()
    {
        using Kind = TransportError::Kind;
        QTest::addColumn<Kind>("kind");
        QTest::newRow("cannot connect") << Kind::cannotConnectToHost;
        QTest::newRow("cannot find host") << Kind::cannotFindHost;
        QTest::newRow("connection lost") << Kind::networkConnectionLost;
        QTest::newRow("timed out") << Kind::timedOut;
        QTest::newRow("other") << Kind::other;
    }

    void transportErrorsArePassedOn()
    {
        QFETCH(const TransportError::Kind, kind);
        Setup s;
        s.answerList(TransportError { kind, u"It went wrong"_s });
        s.answerRewrite(TransportError { kind, u"It went wrong"_s });
        for (const auto& error : { s.listError(), s.rewriteError() }) {
            QCOMPARE(error.domain, u"HTTP"_s);
            QCOMPARE(error.description, u"It went wrong"_s);
            QCOMPARE(error.transport, kind);
        }
    }

    void callsMayOverlap()
    {
        Setup s;
        s.list();
        s.rewrite();
        s.answer("/api/generate", QByteArray(R"({"response": "Better"})"));
        s.answer("/api/tags", QByteArray(R"({"models": [{"name": "m"}]})"));
        QCOMPARE(s.rewritten(), u"Better"_s);
        QCOMPARE(s.listed(), QStringList { u"m"_s });
    }

    void nothingIsHeardWithoutTheWaiter()
    {
        Setup s;
        auto waiter = std::make_unique<QObject>();
        int answers = 0;
        const auto count = [&](const auto&) { ++answers; };
        Ollama::rewrite(s.client, u"hi"_s, u"m"_s, waiter.get(), count);
        waiter = std::make_unique<QObject>();
        Ollama::models(s.client, waiter.get(), count);
        s.client.answer(u"/api/tags"_s, QByteArray(R"({"models": []})"));
        waiter.reset();
        QVERIFY(QThreadPool::globalInstance()->waitForDone());
        QCoreApplication::processEvents();
        QCOMPARE(answers, 0);
        QVERIFY(s.client.exchanges.isEmpty());
    }

    void theWaiterMayGoAtAnyMoment()
    {
        Setup s;
        const auto reply = "{\"models\": [" + QByteArray(10000, ' ') + "]}";
        for (int turns = 0; turns < 300; ++turns) {
            auto waiter = std::make_unique<QObject>();
            const auto end = [&](const auto&) { waiter.reset(); };
            Ollama::models(s.client, waiter.get(), end);
            s.client.answer(u"/api/tags"_s, reply);
            for (int turn = 0; turn < turns; ++turn)
                QCoreApplication::processEvents();
        }
        QVERIFY(QThreadPool::globalInstance()->waitForDone());
    }
};

QTEST_GUILESS_MAIN(OllamaTest)
#include "OllamaTest.moc"
