#include "App/Platform/Linux/Screen/WaylandProbe.h"
#include "Tests/Support/WaylandScreen.h"

#include <QElapsedTimer>
#include <QTest>

#include <array>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto layers = "zwlr_layer_shell_v1";
constexpr auto patience = 20s;

void append(QByteArray& bytes, uint32_t word)
{
    bytes.append(reinterpret_cast<const char*>(&word), sizeof word);
}

QByteArray message(uint32_t object, const QByteArray& arguments)
{
    QByteArray bytes;
    append(bytes, object);
    append(bytes, uint32_t(arguments.size() + 8) << 16);
    return bytes + arguments;
}

QByteArray global(const QByteArray& interface)
{
    QByteArray arguments;
    append(arguments, 7);
    append(arguments, uint32_t(interface.size() + 1));
    arguments += interface + QByteArray(4 - interface.size() % 4, '\0');
    append(arguments, 1);
    return message(2, arguments);
}

QByteArray end()
{
    return message(3, QByteArray(4, '\0'));
}

// A compositor that answers whatever it is asked with the same bytes, and then hangs.
class PlayedCompositor final {
public:
    enum class Kind { saysItOnce, neverEnds };

    explicit PlayedCompositor(const QByteArray& answer, Kind kind = Kind::saysItOnce)
        : m_isEndless(kind == Kind::neverEnds)
        , m_listener(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address {};
        address.sun_family = AF_UNIX;
        path().toStdString().copy(address.sun_path, sizeof address.sun_path - 1);
        ::bind(m_listener, reinterpret_cast<const sockaddr*>(&address), sizeof address);
        ::listen(m_listener, 1);
        m_thread = std::jthread([this, answer] { serve(answer); });
    }
    ~PlayedCompositor()
    {
        ::shutdown(m_listener, SHUT_RDWR);
        m_thread.join();
        ::close(m_listener);
    }
    PlayedCompositor(const PlayedCompositor&) = delete;
    PlayedCompositor& operator=(const PlayedCompositor&) = delete;

    QByteArray path() const { return QFile::encodeName(m_folder.filePath(u"wayland-0"_s)); }

private:
    void serve(const QByteArray& answer) const
    {
        const int client = ::accept(m_listener, nullptr, nullptr);
        while (::send(client, answer.constData(), size_t(answer.size()), MSG_NOSIGNAL) > 0
            && m_isEndless) { }
        std::array<char, 256> rest;
        while (::recv(client, rest.data(), rest.size(), 0) > 0) { }
        ::close(client);
    }

    QTemporaryDir m_folder;
    bool m_isEndless;
    int m_listener;
    std::jthread m_thread;
};

}

class WaylandProbeTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void findsWhatARealCompositorOffers()
    {
        const WaylandScreen screen;
        const auto socket = QFile::encodeName(screen.socket());
        if (socket.isEmpty())
            QSKIP("No compositor would start, so none was asked");
        QVERIFY(WaylandProbe::offers(socket, layers, patience));
        QVERIFY(!WaylandProbe::offers(socket, "zwlr_layer_shell_v", patience));
    }

    void readsTheListToItsEnd_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<bool>("isOffered");
        const QByteArray other = global("wl_compositor");
        QTest::newRow("there") << global(layers) << true;
        QTest::newRow("after another") << other + global(layers) + end() << true;
        QTest::newRow("of many") << other.repeated(2000) + global(layers) + end() << true;
        QTest::newRow("not there") << other + end() << false;
        QTest::newRow("too late") << other + end() + global(layers) << false;
        QTest::newRow("an error") << message(1, QByteArray(12, '\0')) + global(layers) << false;
        QTest::newRow("no event at all") << QByteArray(64, '\0') << false;
        QTest::newRow("a name beyond its event")
            << message(2, QByteArray(4, '\0') + QByteArray(4, '\x7f')) + end() << false;
    }
    void readsTheListToItsEnd()
    {
        QFETCH(const QByteArray, answer);
        const PlayedCompositor compositor(answer);
        QFETCH(const bool, isOffered);
        QCOMPARE(WaylandProbe::offers(compositor.path(), layers, patience), isOffered);
    }

    void doesNotListenForEver()
    {
        const PlayedCompositor compositor(
            global("wl_compositor"), PlayedCompositor::Kind::neverEnds);
        QElapsedTimer taken;
        taken.start();
        QVERIFY(!WaylandProbe::offers(compositor.path(), layers, 100ms));
        QVERIFY(taken.elapsed() < 5000);
    }

    void doesNotWaitForACompositorThatHangs_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("at once") << QByteArray();
        QTest::newRow("in the middle") << global("wl_compositor") + global(layers).chopped(4);
    }
    void doesNotWaitForACompositorThatHangs()
    {
        QFETCH(const QByteArray, answer);
        const PlayedCompositor compositor(answer);
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!WaylandProbe::offers(compositor.path(), layers, 100ms));
        QVERIFY2(
            timer.elapsed() >= 100 && timer.elapsed() < 5000, QByteArray::number(timer.elapsed()));
    }

    void nothingIsOfferedWhereNobodyListens()
    {
        const QTemporaryDir folder;
        const auto path = QFile::encodeName(folder.filePath(u"wayland-0"_s));
        QVERIFY(!WaylandProbe::offers(path, layers, patience));
        QVERIFY(!WaylandProbe::offers({}, layers, patience));
        QVERIFY(!WaylandProbe::offers(QByteArray(200, 'a'), layers, patience));
    }

    void looksWhereTheSessionSays_data()
    {
        QTest::addColumn<QByteArray>("display");
        QTest::addColumn<QByteArray>("folder");
        QTest::addColumn<QByteArray>("socket");
        QTest::newRow("no Wayland") << QByteArray() << QByteArray("/run") << QByteArray();
        QTest::newRow("a name") << QByteArray("wayland-1") << QByteArray("/run")
                                << QByteArray("/run/wayland-1");
        QTest::newRow("a path") << QByteArray("/a/b") << QByteArray() << QByteArray("/a/b");
        QTest::newRow("no folder") << QByteArray("wayland-1") << QByteArray() << QByteArray();
    }
    void looksWhereTheSessionSays()
    {
        QFETCH(const QByteArray, display);
        QFETCH(const QByteArray, folder);
        qputenv("WAYLAND_DISPLAY", display);
        qputenv("XDG_RUNTIME_DIR", folder);
        QFETCH(const QByteArray, socket);
        QCOMPARE(WaylandProbe::socket(), socket);
    }
};

QTEST_GUILESS_MAIN(WaylandProbeTest)
#include "WaylandProbeTest.moc"
