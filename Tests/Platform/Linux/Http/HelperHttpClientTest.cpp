#include "App/Platform/Linux/Http/HelperHttpClient.h"
#include "Tests/Support/ModelServer.h"

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTest>
#include <QTimer>

#include <arpa/inet.h>
#include <memory>
#include <netinet/in.h>
#include <optional>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = TransportError::Kind;

Q_DECLARE_METATYPE(TransportError::Kind)

namespace {

constexpr auto greeting = "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nhello";

// A port that the kernel has just given out; whoever wants it may listen there.
int freePort()
{
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    auto* const place = reinterpret_cast<sockaddr*>(&address);
    ::bind(socket, place, size);
    ::getsockname(socket, place, &size);
    ::close(socket);
    return ntohs(address.sin_port);
}

bool hasVersion6()
{
    sockaddr_in6 address {};
    address.sin6_family = AF_INET6;
    address.sin6_addr = in6addr_loopback;
    const int socket = ::socket(AF_INET6, SOCK_STREAM, 0);
    const bool isThere
        = ::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(socket);
    return isThere;
}

struct Setup {
    void send(const HttpRequest& request)
    {
        result.reset();
        client.send(request, waiter.get(), [this](const HttpResult& given) {
            ++answers;
            result = given;
            loop.quit();
        });
    }

    HttpResult resultOf(const HttpRequest& request)
    {
        QTimer::singleShot(20s, &loop, &QEventLoop::quit);
        send(request);
        loop.exec();
        return result.value_or(TransportError { Kind::other, u"Nothing came"_s });
    }

    QByteArray body(const HttpRequest& request)
    {
        const auto given = resultOf(request);
        const auto* const error = std::get_if<TransportError>(&given);
        return error ? "Error: " + error->description.toUtf8() : std::get<QByteArray>(given);
    }

    std::optional<TransportError> error(const HttpRequest& request)
    {
        const auto given = resultOf(request);
        const auto* const error = std::get_if<TransportError>(&given);
        return error ? std::optional(*error) : std::nullopt;
    }

    HelperHttpClient client { QStringLiteral(CORVELLA_HELPERS_DIR) + u"/send-request"_s };
    std::unique_ptr<QObject> waiter = std::make_unique<QObject>();
    std::optional<HttpResult> result;
    int answers = 0;
    QEventLoop loop;
};

}

class HelperHttpClientTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_server = std::make_unique<ModelServer>(); }
    void cleanupTestCase() { m_server.reset(); }

    void getsAndPosts()
    {
        Setup s;
        auto& server = anew();
        const auto tags = QJsonDocument::fromJson(s.body({ server.url(u"/api/tags"_s), 10s }));
        QCOMPARE(tags["models"_L1][1]["name"_L1].toString(), u"mistral:7b"_s);
        const QByteArray body
            = "{\"model\": \"mistral:7b\", \"prompt\": \"hi\", \"stream\": false}";
        const auto generation = QJsonDocument::fromJson(
            s.body({ server.url(u"/api/generate"_s), 10s, "application/json", body }));
        QCOMPARE(generation["response"_L1].toString(), u"Better text."_s);
        const auto requests = server.requests();
        QCOMPARE(requests.size(), 2);
        QCOMPARE(requests[0]["method"_L1].toString(), u"GET"_s);
        QCOMPARE(requests[0]["path"_L1].toString(), u"/api/tags"_s);
        QCOMPARE(requests[0]["body"_L1].toString(), QString());
        QCOMPARE(requests[1]["method"_L1].toString(), u"POST"_s);
        QCOMPARE(requests[1]["path"_L1].toString(), u"/api/generate"_s);
        QCOMPARE(requests[1]["body"_L1].toString().toUtf8(), body);
        const auto host = u"localhost:%1"_s.arg(server.port());
        const QJsonArray always { QJsonArray { u"Host"_s, host },
            QJsonArray { u"Accept"_s, u"*/*"_s } };
        QCOMPARE(requests[0]["headers"_L1].toArray(), always);
        const auto headers = requests[1]["headers"_L1].toArray();
        QVERIFY(headers.contains(QJsonArray { u"Content-Type"_s, u"application/json"_s }));
        QCOMPARE(headers.size(), 4); // And the length.
    }

    void asksForWhatTheAddressSays_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("path");
        QTest::newRow("nothing") << QString() << u"/"_s;
        QTest::newRow("a query alone") << u"?a=b"_s << u"/?a=b"_s;
        QTest::newRow("no fragment") << u"/a/b%2Fc?d#e"_s << u"/a/b%2Fc?d"_s;
        QTest::newRow("no line of its own") << u"/a b\r\nX: y"_s << u"/a%20b%0D%0AX:%20y"_s;
    }

    void asksForWhatTheAddressSays()
    {
        QFETCH(const QString, url);
        QFETCH(const QString, path);
        Setup s;
        auto& server = anew();
        server.send({ { greeting, 1 } });
        QCOMPARE(s.body({ server.url(url), 10s }), "hello");
        QCOMPARE(server.requests().first()["path"_L1].toString(), path);
    }

    void readsWhatComesWhateverItsStatus_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("an error page")
            << QByteArray("HTTP/1.1 502 Bad Gateway\r\nContent-Type: text/html\r\n\r\n<p>no</p>")
            << QByteArray("<p>no</p>");
        QTest::newRow("an error") << QByteArray(
            "HTTP/1.1 500 Oh\r\nContent-Length: 14\r\n\r\n{\"error\": \"no\"}")
                                  << QByteArray("{\"error\": \"no\"");
        QTest::newRow("a password wanted") << QByteArray(
            "HTTP/1.1 401 Who\r\nWWW-Authenticate: Basic realm=\"x\"\r\nContent-Length: "
            "2\r\n\r\n{}") << QByteArray("{}");
        QTest::newRow("a proxy's password wanted") << QByteArray(
            "HTTP/1.1 407 Who\r\nProxy-Authenticate: Basic realm=\"x\"\r\n"
            "Content-Length: 2\r\n\r\n{}") << QByteArray("{}");
        QTest::newRow("no content") << QByteArray("HTTP/1.1 204 Nothing\r\n\r\n") << QByteArray();
        QTest::newRow("a cookie") << QByteArray(
            "HTTP/1.1 200 OK\r\nSet-Cookie: a=b\r\nContent-Length: 2\r\n\r\n{}")
                                  << QByteArray("{}");
        QTest::newRow("after a while")
            << "HTTP/1.1 100 Continue\r\n\r\n" + QByteArray(greeting) << QByteArray("hello");
        QTest::newRow("in chunks")
            << QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                          "2\r\nhe\r\n3\r\nllo\r\n0\r\n\r\n")
            << QByteArray("hello");
        QTest::newRow("in chunks, and a word behind them") << QByteArray(
            "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
            "5\r\nhello\r\n0\r\nTaken: 1 s\r\n\r\n") << QByteArray("hello");
        QTest::newRow("no Unicode")
            << QByteArray("HTTP/1.1 200 OK\r\n\r\n\xFF\xFE") << QByteArray("\xFF\xFE");
    }

    void readsWhatComesWhateverItsStatus()
    {
        QFETCH(const QByteArray, reply);
        QFETCH(const QByteArray, body);
        Setup s;
        auto& server = anew();
        server.send({ { reply, 1 } });
        for (int call = 0; call < 2; ++call)
            QCOMPARE(s.body({ server.url(u"/"_s), 10s }), body);
        for (const auto& request : server.requests()) {
            for (const auto header : request["headers"_L1].toArray())
                QVERIFY(!header[0].toString().contains("Cookie"_L1));
        }
        QCOMPARE(server.requests().size(), 2);
    }

    void nobodyListens()
    {
        Setup s;
        const auto error = s.error({ QUrl(u"http://localhost:%1/"_s.arg(freePort())), 10s });
        QCOMPARE(error.value().kind, Kind::cannotConnectToHost);
        QVERIFY(!error->description.isEmpty());
    }

    void aConnectionIsLost_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QByteArray>("then");
        const QByteArray half = "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf of";
        QTest::newRow("before a word") << QByteArray() << QByteArray("close");
        QTest::newRow("before a word, broken") << QByteArray() << QByteArray("reset");
        QTest::newRow("in the headers") << half.first(20) << QByteArray("close");
        QTest::newRow("in the headers after a while")
            << "HTTP/1.1 100 Continue\r\n\r\n" + half.first(20) << QByteArray("close");
        QTest::newRow("in the body") << half << QByteArray("close");
        QTest::newRow("in the body, broken") << half << QByteArray("reset");
        QTest::newRow("in a body without length, broken")
            << QByteArray("HTTP/1.1 200 OK\r\n\r\nhalf of") << QByteArray("reset");
        QTest::newRow("between chunks")
            << QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nhe\r\n")
            << QByteArray("close");
    }

    void aConnectionIsLost()
    {
        QFETCH(const QByteArray, reply);
        QFETCH(const QByteArray, then);
        Setup s;
        auto& server = anew();
        server.send({ { reply, 1 } }, then.constData());
        const auto error = s.error({ server.url(u"/"_s), 10s });
        QCOMPARE(error.value().kind, Kind::networkConnectionLost);
        QVERIFY(!error->description.isEmpty());
    }

    void timeIsUp_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<double>("interval");
        QTest::newRow("not a word") << QByteArray() << 0.0;
        QTest::newRow("half a reply")
            << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf") << 0.0;
        QTest::newRow("byte by byte") << QByteArray(greeting).repeated(9) << 0.1;
    }

    void timeIsUp()
    {
        QFETCH(const QByteArray, reply);
        QFETCH(const double, interval);
        Setup s;
        ModelServer server;
        server.send({ { reply, 1 } }, "hold", interval);
        QElapsedTimer elapsed;
        elapsed.start();
        const auto error = s.error({ server.url(u"/"_s), 400ms });
        QCOMPARE(error.value().kind, Kind::timedOut);
        QVERIFY(!error->description.isEmpty());
        QVERIFY(elapsed.elapsed() >= 400);
        QVERIFY(elapsed.elapsed() < 2000);
        QTRY_VERIFY(server.wasHungUpOn());
    }

    void aSlowReplyInTimeIsRead()
    {
        Setup s;
        auto& server = anew();
        server.send({ { greeting, 1 } }, "close", 0.005);
        QCOMPARE(s.body({ server.url(u"/"_s), 10s }), "hello");
    }

    void whatIsNoReplyIsAnError_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("times");
        QTest::addColumn<QString>("description");
        const auto garbage = u"The server does not speak HTTP"_s;
        const auto tooLarge = u"The reply is larger than 64 MiB"_s;
        QTest::newRow("garbage") << QByteArray("\x16\x03\x01\x02") << 10 << garbage;
        QTest::newRow("too much, declared")
            << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 67108865\r\n\r\n") << 1 << tooLarge;
        QTest::newRow("far too much, declared")
            << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 999999999999999\r\n\r\n") << 1
            << tooLarge;
    }

    void whatIsNoReplyIsAnError()
    {
        QFETCH(const QByteArray, text);
        QFETCH(const int, times);
        QFETCH(const QString, description);
        Setup s;
        ModelServer server;
        server.send({ { text, times } }, "hold");
        const auto error = s.error({ server.url(u"/"_s), 10s });
        QCOMPARE(error.value().kind, Kind::other);
        QCOMPARE(error->description, description);
        QTRY_VERIFY(server.wasHungUpOn());
    }

    void anEndlessHeadIsGivenUp()
    {
        Setup s;
        ModelServer server;
        server.send({ { "HTTP/1.1 200 OK\r\nA: ", 500000 } }, "hold");
        QVERIFY(s.error({ server.url(u"/"_s), 10s }).value().kind != Kind::timedOut);
        QTRY_VERIFY(server.wasHungUpOn());
    }

    void anEndlessReplyEndsAt64Mebibytes()
    {
        Setup s;
        ModelServer server;
        server.send({ { "HTTP/1.1 200 OK\r\n\r\n", 1 }, { QByteArray(1024, ' '), 70 * 1024 } });
        const auto error = s.error({ server.url(u"/"_s), 20s });
        QCOMPARE(error.value().kind, Kind::other);
        QCOMPARE(error->description, u"The reply is larger than 64 MiB"_s);
    }

    void nothingIsUnpacked()
    {
        Setup s;
        auto& server = anew();
        const auto packed = qCompress(QByteArray(100000000, ' ')).sliced(4);
        server.send(
            { { "HTTP/1.1 200 OK\r\nContent-Encoding: deflate\r\n\r\n", 1 }, { packed, 1 } });
        QVERIFY(s.body({ server.url(u"/"_s), 10s }) == packed);
    }

    void goesNowhereElse_data()
    {
        QTest::addColumn<QString>("location");
        QTest::newRow("the same server") << u"/there"_s;
        QTest::newRow("another port") << u"http://localhost:%1/"_s;
        QTest::newRow("another name") << u"//127.0.0.1:%1/"_s;
        QTest::newRow("another scheme") << u"https://localhost:%1/"_s;
        QTest::newRow("no location") << QString();
        QTest::newRow("no address") << u"http://[:%1/"_s;
    }

    void goesNowhereElse()
    {
        QFETCH(const QString, location);
        Setup s;
        auto& server = anew();
        ModelServer trap;
        const auto target = location.contains(u'%') ? location.arg(trap.port()) : location;
        const auto header = target.isEmpty() ? QString() : u"Location: "_s + target + u"\r\n"_s;
        server.send({ { "HTTP/1.1 307 Away\r\n" + header.toLatin1(), 1 },
            { "Content-Length: 4\r\n\r\naway", 1 } });
        QCOMPARE(s.body({ server.url(u"/"_s), 10s }), "away");
        QCOMPARE(server.requests().size(), 1);
        QVERIFY(trap.requests().isEmpty());
    }

    void asksNoProxy()
    {
        Setup s;
        auto& server = anew();
        ModelServer trap;
        const auto address = trap.url({}).toEncoded();
        for (const auto* name : { "http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY" })
            qputenv(name, address);
        server.send({ { greeting, 1 } });
        QCOMPARE(s.body({ server.url(u"/"_s), 10s }), "hello");
        QVERIFY(trap.requests().isEmpty());
        for (const auto* name : { "http_proxy", "HTTP_PROXY", "all_proxy", "ALL_PROXY" })
            qunsetenv(name);
    }

    void asksNobodyElse_data()
    {
        QTest::addColumn<QString>("url");
        for (const auto* url : { "http://192.0.2.1/", "http://10.0.0.1:11434/", "http://0.0.0.0/",
                 "http://128.0.0.1/", "http://126.255.255.255/", "http://[::2]/", "http://[::]/",
                 "http://[::ffff:127.0.0.1]/", "http://[fe80::1]/", "http://example.org/",
                 "http://localhost.example.org/", "http://localhost@192.0.2.1/",
                 "https://localhost/", "file:///etc/passwd", "http:///", "/api/tags", "" })
            QTest::newRow(url) << QString::fromLatin1(url);
    }

    void asksNobodyElse()
    {
        QFETCH(const QString, url);
        Setup s;
        const auto error = s.error({ QUrl(url), 10s });
        QCOMPARE(error.value().kind, Kind::cannotFindHost);
        QCOMPARE(error->description, u"Only servers on this machine are asked"_s);
    }

    void findsTheServerUnderItsOwnNumber()
    {
        Setup s;
        ModelServer server(u"127.0.0.2"_s);
        server.send({ { greeting, 1 } });
        const auto address = u"127.0.0.2:%1"_s.arg(server.port());
        QCOMPARE(s.body({ QUrl(u"http://"_s + address), 10s }), "hello");
        QCOMPARE(server.requests().first()["headers"_L1][0][1].toString(), address);
    }

    void findsTheServerUnderEitherVersion()
    {
        if (!hasVersion6())
            QSKIP("This machine has no ::1: a server that listens only there was not tried.");
        Setup s;
        ModelServer server(u"::1"_s);
        server.send({ { greeting, 1 } });
        QCOMPARE(s.body({ server.url(u"/"_s), 10s }), "hello");
        QCOMPARE(s.body({ QUrl(u"http://[::1]:%1/"_s.arg(server.port())), 10s }), "hello");
        ModelServer other(u"127.0.0.1"_s, server.port());
        QCOMPARE(other.port(), server.port());
        QVERIFY(s.body({ server.url(u"/api/tags"_s), 10s }).startsWith("{\"models\""));
    }

    void withoutItsHelperNothingIsSent()
    {
        HelperHttpClient client(u"/nonexistent/send-request"_s);
        QObject waiter;
        std::optional<HttpResult> result;
        client.send({ QUrl(u"http://localhost:1/"_s), 10s }, &waiter,
            [&](const HttpResult& given) { result = given; });
        QVERIFY(!result);
        QTRY_VERIFY(result);
        QCOMPARE(std::get<TransportError>(*result).kind, Kind::other);
    }

    void answersLater()
    {
        Setup s;
        s.send({ QUrl(u"http://192.0.2.1/"_s), 10s });
        QVERIFY(!s.result);
        s.send({ QUrl(u"http://localhost:%1/"_s.arg(freePort())), 10s });
        QVERIFY(!s.result);
        QTRY_COMPARE(s.answers, 2);
    }

    void callsMayOverlap()
    {
        Setup s;
        ModelServer slow;
        ModelServer quick;
        slow.set({ { u"delay"_s, 0.2 } });
        QStringList order;
        for (auto* server : { &slow, &quick, &slow, &quick }) {
            s.client.send({ server->url(u"/api/tags"_s), 10s }, s.waiter.get(),
                [&order, server, &slow](const HttpResult& result) {
                    QVERIFY(result.index() == 0);
                    order.append(server == &slow ? u"slow"_s : u"quick"_s);
                });
        }
        QTRY_COMPARE(order, QStringList({ u"quick"_s, u"quick"_s, u"slow"_s, u"slow"_s }));
    }

    void aRequestEndsWithItsWaiter()
    {
        Setup s;
        ModelServer server;
        server.send({ { "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf", 1 } }, "hold");
        s.send({ server.url(u"/"_s), 10s });
        QTRY_COMPARE(server.requests().size(), 1);
        QVERIFY(!server.wasHungUpOn());
        s.waiter.reset();
        QTRY_VERIFY(server.wasHungUpOn());
        QCOMPARE(s.answers, 0);
    }

    void aRequestMayEndBeforeItBegins()
    {
        Setup s;
        auto& server = anew();
        s.send({ server.url(u"/"_s), 10s });
        s.waiter = std::make_unique<QObject>();
        QCOMPARE(s.body({ server.url(u"/api/tags"_s), 10s }).left(9), "{\"models\"");
        QCOMPARE(s.answers, 1);
        QCOMPARE(server.requests().size(), 1);
    }

    void theWaiterMayGoWhenItHears()
    {
        Setup s;
        auto& server = anew();
        server.send({ { greeting, 1 } });
        bool isHeard = false;
        s.client.send({ server.url(u"/"_s), 10s }, s.waiter.get(), [&](const HttpResult&) {
            s.waiter.reset();
            isHeard = true;
        });
        QTRY_VERIFY(isHeard);
    }

    void aLongTextIsSentWhole()
    {
        Setup s;
        auto& server = anew();
        server.send({ { greeting, 1 } });
        const QByteArray text = QByteArray("0123456789abcdef").repeated(1000000);
        QCOMPARE(s.body({ server.url(u"/"_s), 20s, "text/plain", text }), "hello");
        QTRY_COMPARE(server.requests().size(), 1);
        const auto hash = QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex();
        QCOMPARE(server.requests().first()["hash"_L1].toString().toLatin1(), hash);
    }

    void nothingIsLeftOpen()
    {
        Setup s;
        auto& server = anew();
        const QDir descriptors(u"/proc/self/fd"_s);
        const auto before = descriptors.entryList(QDir::Files | QDir::System).size();
        QVERIFY(s.body({ server.url(u"/api/tags"_s), 10s }).startsWith('{'));
        server.send({ { "garbage", 1 } }, "hold");
        QVERIFY(s.error({ server.url(u"/"_s), 10s }).has_value());
        QVERIFY(s.error({ QUrl(u"http://localhost:%1/"_s.arg(freePort())), 10s }).has_value());
        QTRY_VERIFY(s.waiter->children().isEmpty());
        QCOMPARE(descriptors.entryList(QDir::Files | QDir::System).size(), before);
    }

private:
    ModelServer& anew()
    {
        m_server->beginAnew();
        return *m_server;
    }

    std::unique_ptr<ModelServer> m_server;
};

QTEST_GUILESS_MAIN(HelperHttpClientTest)
#include "HelperHttpClientTest.moc"
