#include "App/Platform/Linux/Audio/HelperSoundPlayer.h"
#include "Tests/Support/Daemon.h"
#include "Tests/Support/Tone.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <memory>
#include <span>

using namespace Qt::StringLiterals;

static const auto helper = QStringLiteral(CORVELLA_HELPERS_DIR "/play-sound");
static constexpr double note = 1318.5;

// Every running process of this name, found by what the kernel tells of it.
static int running(const QByteArray& name)
{
    int found = 0;
    for (const auto& process : QDir(u"/proc"_s).entryList({ u"[0-9]*"_s })) {
        QFile comm(u"/proc/%1/comm"_s.arg(process));
        QFile variables(u"/proc/%1/environ"_s.arg(process));
        if (comm.open(QIODevice::ReadOnly) && comm.readAll().trimmed() == name
            && variables.open(QIODevice::ReadOnly)
            && variables.readAll().contains(qgetenv("PULSE_SERVER")))
            ++found;
    }
    return found;
}

class HelperSoundPlayerTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        qputenv("PULSE_SERVER", "unix:" + socket().toUtf8());
        qputenv("XDG_RUNTIME_DIR", m_dir.path().toUtf8());
        qputenv("HOME", m_dir.path().toUtf8());
    }

    void cleanup()
    {
        m_server.reset();
        QFile::remove(socket());
    }

    void theServerPlaysTheSound()
    {
        startServer();
        Daemon recorder(u"parec"_s,
            { u"-d"_s, u"out.monitor"_s, u"--rate=44100"_s, u"--channels=1"_s, u"--format=s16ne"_s,
                u"--latency-msec=20"_s });
        QByteArray recorded;
        const auto heard = [&] {
            recorded += recorder.output();
            const std::span samples(reinterpret_cast<const std::int16_t*>(recorded.constData()),
                static_cast<std::size_t>(recorded.size()) / sizeof(std::int16_t));
            const auto lastSecond = samples.last(std::min<std::size_t>(samples.size(), 44'100));
            return lastSecond.size() == 44'100 ? Tone::power(lastSecond, note, 44'100) : -1;
        };
        QTRY_VERIFY(heard() >= 0);
        QVERIFY(heard() < 1e-9);

        HelperSoundPlayer player(helper);
        player.play(u"Glass"_s);
        QTRY_VERIFY(heard() > 1e-4);

        // Out of the server's store, after the first has faded.
        QTRY_VERIFY(heard() < 1e-9);
        player.play(u"Glass"_s);
        QTRY_VERIFY(heard() > 1e-4);
        QCOMPARE(pactl({ u"list"_s, u"short"_s, u"samples"_s }).count('\n'), 1);
    }

    void tellsTheServerThatItIsAnEvent()
    {
        startServer();
        QCOMPARE(QProcess::execute(helper, { u"Glass"_s }), 0);
        const auto inputs = pactl({ u"list"_s, u"sink-inputs"_s });
        QVERIFY2(inputs.contains("media.role = \"event\""), inputs);
    }

    void anUnknownNameIsAnError()
    {
        startServer();
        QCOMPARE(QProcess::execute(helper, { u"Brass"_s }), 1);
        QCOMPARE(QProcess::execute(helper, {}), 1);
        QCOMPARE(pactl({ u"list"_s, u"short"_s, u"samples"_s }), QByteArray());
    }

    void endsAtOnceWithoutAServer()
    {
        QElapsedTimer elapsed;
        elapsed.start();
        QCOMPARE(QProcess::execute(helper, { u"Glass"_s }), 1);
        QVERIFY(elapsed.elapsed() < 1000);
        QVERIFY(!QFile::exists(socket()));
    }

    void aHungServerHoldsNobodyUp()
    {
        startServer();
        QVERIFY(m_server->hang());
        QElapsedTimer elapsed;
        elapsed.start();
        HelperSoundPlayer(helper).play(u"Glass"_s);
        QVERIFY2(elapsed.elapsed() < 150, QByteArray::number(elapsed.elapsed()));
        QTRY_COMPARE(running("play-sound"), 1);
        QTRY_COMPARE_WITH_TIMEOUT(running("play-sound"), 0, 3500 - int(elapsed.elapsed()));
        m_server->resume();
    }

    void ignoresAHelperThatIsMissing()
    {
        HelperSoundPlayer(u"/nonexistent/play-sound"_s).play(u"Glass"_s);
    }

private:
    QString socket() const { return m_dir.filePath(u"native"_s); }

    void startServer()
    {
        m_server = std::make_unique<Daemon>(u"pulseaudio"_s,
            QStringList { u"--daemonize=no"_s, u"--use-pid-file=no"_s, u"--exit-idle-time=-1"_s,
                u"--disable-shm=yes"_s, u"-n"_s, u"-L"_s,
                u"module-native-protocol-unix socket=%1 auth-anonymous=1"_s.arg(socket()), u"-L"_s,
                u"module-null-sink sink_name=out"_s });
        QTRY_VERIFY_WITH_TIMEOUT(
            QFile::exists(socket()) && pactl({ u"list"_s, u"short"_s, u"sinks"_s }).size(), 20'000);
    }

    static QByteArray pactl(const QStringList& arguments)
    {
        QProcess process;
        process.start(u"pactl"_s, arguments);
        process.waitForFinished();
        return process.readAllStandardOutput();
    }

    QTemporaryDir m_dir;
    std::unique_ptr<Daemon> m_server;
};

QTEST_GUILESS_MAIN(HelperSoundPlayerTest)
#include "HelperSoundPlayerTest.moc"
