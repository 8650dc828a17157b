#include "App/Platform/Linux/Http/HelperHttpClient.h"
#include "App/QuickActions/Ollama.h"
#include "Tests/Support/LoopWatch.h"
#include "Tests/Support/ModelServer.h"

#include <QEventLoop>
#include <QTest>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto ok = "HTTP/1.1 200 OK\r\n\r\n";

// To the test's server instead of the one that may really run here.
struct OtherPort final : HttpClient {
    void send(
        const HttpRequest& request, QObject* waiter, std::function<void(HttpResult)> done) override
    {
        auto changed = request;
        changed.url.setPort(port);
        changed.timeout = std::min(request.timeout, longest);
        client.send(changed, waiter, std::move(done));
    }

    HelperHttpClient client { QStringLiteral(CORVELLA_HELPERS_DIR) + u"/send-request"_s };
    int port = 0;
    std::chrono::milliseconds longest = 20s;
};

struct Setup {
    explicit Setup(ModelServer& server)
    {
        server.beginAnew();
        client.port = server.port();
    }

    Result<QStringList, Ollama::Error> models()
    {
        Result<QStringList, Ollama::Error> result;
        Ollama::models(client, &waiter, [&](const auto& given) {
            result = given;
            loop.quit();
        });
        loop.exec();
        return result;
    }

    Result<QString, Ollama::Error> rewrite(const QString& text, const QString& model)
    {
        Result<QString, Ollama::Error> result;
        Ollama::rewrite(client, text, model, &waiter, [&](const auto& given) {
            result = given;
            loop.quit();
        });
        loop.exec();
        return result;
    }

    OtherPort client;
    QObject waiter;
    QEventLoop loop;
};

constexpr qint64 tolerable = 250; // Milliseconds that the event loop stands still.

}

class OllamaServerTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_server = std::make_unique<ModelServer>(); }
    void cleanupTestCase() { m_server.reset(); }

    void listsTheModels()
    {
        Setup s(*m_server);
        const auto names = s.models();
        QCOMPARE(
            std::get<QStringList>(names), QStringList({ u"llama3.2:latest"_s, u"mistral:7b"_s }));
    }

    void rewritesAText()
    {
        Setup s(*m_server);
        m_server->set({ { u"response"_s, u"\n Schöner 🙂 \n"_s } });
        QCOMPARE(
            std::get<QString>(s.rewrite(u"schön 🙂"_s, u"mistral:7b"_s)), u"Schöner 🙂"_s);
        const auto request = m_server->requests().value(0);
        const auto body = QJsonDocument::fromJson(request["body"_L1].toString().toUtf8()).object();
        QVERIFY(body["prompt"_L1].toString().endsWith(u"text.\n\nschön 🙂"_s));
    }

    void passesOnWhatTheServerSays()
    {
        Setup s(*m_server);
        const auto unknown = std::get<Ollama::Error>(s.rewrite(u"hi"_s, u"x"_s));
        QCOMPARE(unknown.domain, u"Ollama"_s);
        QCOMPARE(unknown.description, u"model 'x' not found"_s);
        m_server->set({ { u"error"_s, u"out of memory"_s } });
        const auto failed = std::get<Ollama::Error>(s.rewrite(u"hi"_s, u"mistral:7b"_s));
        QCOMPARE(failed.description, u"out of memory"_s);
    }

    void strangeRepliesAreErrors_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("times");
        const QByteArray head(ok);
        QTest::newRow("a web page")
            << QByteArray("HTTP/1.1 502 Bad Gateway\r\n\r\n<html>Bad Gateway</html>") << 1;
        QTest::newRow("no content") << QByteArray("HTTP/1.1 204 No Content\r\n\r\n") << 1;
        QTest::newRow("no Unicode") << head + "{\"response\": \"\xFF\", \"models\": []}" << 1;
        QTest::newRow("deep") << QByteArray("[") << 100000;
        QTest::newRow("other types") << head + "{\"response\": [], \"models\": 7}" << 1;
    }

    void strangeRepliesAreErrors()
    {
        QFETCH(const QByteArray, text);
        QFETCH(const int, times);
        Setup s(*m_server);
        m_server->send({ { times > 1 ? ok : "", 1 }, { text, times } });
        QCOMPARE(std::get<Ollama::Error>(s.models()).domain, u"JSON"_s);
        QCOMPARE(std::get<Ollama::Error>(s.rewrite(u"hi"_s, u"m"_s)).domain, u"JSON"_s);
    }

    void aSilentServerIsGivenUp()
    {
        Setup s(*m_server);
        s.client.longest = 200ms;
        m_server->send({}, "hold");
        const auto kind = TransportError::Kind::timedOut;
        QCOMPARE(std::get<Ollama::Error>(s.models()).transport, kind);
        QCOMPARE(std::get<Ollama::Error>(s.rewrite(u"hi"_s, u"m"_s)).transport, kind);
    }

    // Many small values take longest.
    void nothingWaitsForALongReply()
    {
        Setup s(*m_server);
        const QByteArray values = QByteArray("0,").repeated(500);
        const ModelServer::Parts reply { { ok, 1 }, { "{\"more\": [", 1 }, { values, 60000 } };
        LoopWatch watch;
        m_server->send(reply + ModelServer::Parts { { "0], \"models\": []}", 1 } });
        QCOMPARE(std::get<Ollama::Error>(s.models()).domain, u"JSON"_s);
        m_server->send(reply + ModelServer::Parts { { "0]", 1 } });
        QCOMPARE(std::get<Ollama::Error>(s.rewrite(u"hi"_s, u"m"_s)).domain, u"JSON"_s);
        const auto standstill = watch.longestStandstill();
        QVERIFY2(standstill < tolerable, QByteArray::number(standstill));
    }

    void aLongTextComesWhole()
    {
        Setup s(*m_server);
        const QByteArray text = QByteArray("0123456789").repeated(100);
        m_server->send({ { ok, 1 }, { "{\"response\": \"", 1 }, { text, 60000 }, { "\"}", 1 } });
        QCOMPARE(std::get<QString>(s.rewrite(u"hi"_s, u"m"_s)).size(), 60000000);
    }

    void nothingWaitsForALongText()
    {
        Setup s(*m_server);
        m_server->send({ { ok, 1 }, { "{\"response\": \"Better\"}", 1 } });
        const QString text(30000000, u'\u00E9');
        LoopWatch watch;
        QCOMPARE(std::get<QString>(s.rewrite(text, u"mistral:7b"_s)), u"Better"_s);
        const auto standstill = watch.longestStandstill();
        QVERIFY2(standstill < tolerable, QByteArray::number(standstill));
    }

private:
    std::unique_ptr<ModelServer> m_server;
};

QTEST_GUILESS_MAIN(OllamaServerTest)
#include "OllamaServerTest.moc"
