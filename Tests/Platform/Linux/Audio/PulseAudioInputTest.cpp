#include "App/Meetings/Microphone.h"
#include "App/Platform/Linux/Audio/BoundedAudioInput.h"
#include "App/Platform/Linux/Audio/LoadedAudioInput.h"
#include "Tests/Fakes/FakeAudioInput.h"
#include "Tests/Fakes/FakeUserDefaults.h"
#include "Tests/Support/SoundServer.h"
#include "Tests/Support/Tone.h"

#include <QTemporaryDir>
#include <QTest>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int rate = 44'100;
constexpr double note = 441;

struct Setup {
    // Asked in place of a server.
    std::shared_ptr<FakeAudioInput> otherwise = std::make_shared<FakeAudioInput>();
    FakeUserDefaults defaults;
    BoundedAudioInput input { std::make_shared<LoadedAudioInput>(
        QStringLiteral(CORVELLA_HELPERS_DIR "/pulse-input.so"), otherwise) };

    Setup() { otherwise->isThere = false; }

    std::optional<bool> isMuted() { return Microphone::isMuted(input); }
    bool setMuted(bool mute) { return Microphone::setMuted(input, defaults, mute); }

    bool setVolume(int element, float value)
    {
        const auto device = input.defaultInput();
        return device && device->setVolume(element, value);
    }

    // Those of the main element and of the first three channels; -1 where there is none.
    QList<float> volumes()
    {
        QList<float> found;
        const auto device = input.defaultInput();
        for (const int element : { mainElement, 1, 2, 3 }) {
            const bool isSettable = device && device->isSettable(InputControl::volume, element);
            found << (isSettable ? device->volume(element).value_or(-2) : -1);
        }
        return found;
    }
};

// Plays the note without end.
class Player final {
public:
    explicit Player(const QString& folder)
        : m_sound(folder + u"/note"_s)
        , m_daemon(u"pacat"_s,
              { u"--playback"_s, u"--raw"_s, u"--device=out"_s, u"--rate=44100"_s,
                  u"--channels=1"_s, u"--format=s16ne"_s, u"--latency-msec=20"_s, write(m_sound) })
    {
    }

    ~Player() { QFile::remove(m_sound); }
    Q_DISABLE_COPY_MOVE(Player)

private:
    static QString write(const QString& path)
    {
        std::vector<std::int16_t> samples(60 * rate);
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const double turn = 2 * std::numbers::pi * note * static_cast<double>(i) / rate;
            samples[i] = static_cast<std::int16_t>(16'000 * std::sin(turn));
        }
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(QByteArray::fromRawData(reinterpret_cast<const char*>(samples.data()),
                static_cast<qsizetype>(samples.size() * sizeof samples.front())));
        return path;
    }

    QString m_sound;
    Daemon m_daemon;
};

// Hears what the default input hears.
class Listener final {
public:
    // The note's power in the last fifth of a second; absent until there is one.
    std::optional<double> heard()
    {
        m_recorded += m_daemon.output();
        const std::span samples(reinterpret_cast<const std::int16_t*>(m_recorded.constData()),
            static_cast<std::size_t>(m_recorded.size()) / sizeof(std::int16_t));
        if (samples.size() < rate / 5)
            return {};
        return Tone::power(samples.last(rate / 5), note, rate);
    }

private:
    Daemon m_daemon { u"parec"_s,
        { u"--raw"_s, u"--device=mic"_s, u"--rate=44100"_s, u"--channels=1"_s, u"--format=s16ne"_s,
            u"--latency-msec=20"_s } };
    QByteArray m_recorded;
};

}

class PulseAudioInputTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<SoundServer::Kind>("kind");
        QTest::newRow("PulseAudio") << SoundServer::pulseAudio;
        QTest::newRow("PipeWire") << SoundServer::pipeWire;
    }

    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        for (const auto* name : { "HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME" })
            qputenv(name, m_dir.path().toUtf8());
    }

    void init()
    {
        if (!server())
            startServer();
        qputenv("PULSE_SERVER", server()->address());
        useSource(u"mic"_s);
    }

    void seesAMuteFromOutside()
    {
        Setup s;
        QTRY_COMPARE(s.isMuted(), false);
        pactl({ u"set-source-mute"_s, u"mic"_s, u"1"_s });
        QTRY_COMPARE(s.isMuted(), true);
        pactl({ u"set-source-mute"_s, u"mic"_s, u"0"_s });
        QTRY_COMPARE(s.isMuted(), false);
    }

    void itsMuteIsSeenOutside()
    {
        Setup s;
        const auto volume = pactl({ u"get-source-volume"_s, u"mic"_s });
        QTRY_VERIFY(s.setMuted(true));
        QTRY_COMPARE(pactl({ u"get-source-mute"_s, u"mic"_s }), QByteArray("Mute: yes\n"));
        QTRY_COMPARE(s.isMuted(), true);
        QTRY_VERIFY(s.setMuted(false));
        QTRY_COMPARE(pactl({ u"get-source-mute"_s, u"mic"_s }), QByteArray("Mute: no\n"));
        QTRY_COMPARE(s.isMuted(), false);
        QCOMPARE(pactl({ u"get-source-volume"_s, u"mic"_s }), volume);
        QVERIFY(s.defaults.values.isEmpty());
    }

    void nothingIsHeardWhileMuted()
    {
        Setup s;
        const Player player(m_dir.path());
        Listener listener;
        QTRY_VERIFY(listener.heard().value_or(0) > 1e-3);
        QTRY_VERIFY(s.setMuted(true));
        QTRY_COMPARE(listener.heard().value_or(1), 0.0);
        QTRY_VERIFY(s.setMuted(false));
        QTRY_VERIFY(listener.heard().value_or(0) > 1e-3);
    }

    void theVolumeOfOneChannelIsThatOfAll()
    {
        Setup s;
        QTRY_COMPARE(s.volumes(), (QList<float> { 1, -1, -1, -1 }));
        QTRY_VERIFY(s.setVolume(mainElement, 0.25F));
        QTRY_COMPARE(s.volumes(), (QList<float> { 0.25F, -1, -1, -1 }));
        QTRY_COMPARE(outsideVolumes(u"mic"_s), (QList<int> { 25 }));
        QVERIFY(!s.setVolume(1, 0.5F));
    }

    void twoChannelsHaveTheirOwnVolumes()
    {
        addSource(u"two"_s, 2);
        Setup s;
        QTRY_COMPARE(s.volumes(), (QList<float> { -1, 1, 1, -1 }));
        QTRY_VERIFY(s.setVolume(2, 0.25F));
        QTRY_COMPARE(s.volumes(), (QList<float> { -1, 1, 0.25F, -1 }));
        QTRY_COMPARE(outsideVolumes(u"two"_s), (QList<int> { 100, 25 }));
        QVERIFY(!s.setVolume(mainElement, 0));
        QVERIFY(!s.setVolume(3, 0));
    }

    void moreChannelsAlsoHaveOneTogether()
    {
        addSource(u"three"_s, 3);
        Setup s;
        QTRY_COMPARE(s.volumes(), (QList<float> { 1, 1, 1, 1 }));
        QTRY_VERIFY(s.setVolume(3, 0.25F));
        QTRY_COMPARE(s.volumes(), (QList<float> { 1, 1, 1, 0.25F }));
        QTRY_VERIFY(s.setVolume(mainElement, 0));
        QTRY_COMPARE(outsideVolumes(u"three"_s), (QList<int> { 0, 0, 0 }));
    }

    void aVolumeAboveTheNormalIsTheGreatest()
    {
        pactl({ u"set-source-volume"_s, u"mic"_s, u"150%"_s });
        Setup s;
        QTRY_COMPARE(s.volumes(), (QList<float> { 1, -1, -1, -1 }));
        QTRY_VERIFY(s.setVolume(mainElement, 7));
        QTRY_COMPARE(outsideVolumes(u"mic"_s), (QList<int> { 100 }));
    }

    void whatWasSetIsReadAtOnce()
    {
        addSource(u"two"_s, 2);
        Setup s;
        const auto isTold = [&] {
            const auto device = s.input.defaultInput();
            return device && device->mute(mainElement) == 0U && device->setMute(mainElement, 1)
                && device->mute(mainElement) == 1U && device->setMute(mainElement, 0)
                && device->setVolume(1, 0.5F) && device->volume(1) == 0.5F
                && device->setVolume(1, 1) && device->volume(1) == 1.0F;
        };
        QTRY_VERIFY(isTold());
    }

    void mutesByTheMainElementAlone()
    {
        addSource(u"two"_s, 2);
        Setup s;
        const auto settable = [&] {
            QList<int> found;
            const auto device = s.input.defaultInput();
            for (const int element : { mainElement, 1, 2 }) {
                if (device && device->isSettable(InputControl::mute, element))
                    found << element;
            }
            return found;
        };
        QTRY_COMPARE(settable(), (QList<int> { mainElement }));
    }

    void whatIsPlayedIsNoInput()
    {
        useSource(u"out.monitor"_s);
        Setup s;
        s.otherwise->isThere = true;
        s.otherwise->switches = { { mainElement, {} } };
        QTRY_COMPARE(s.isMuted(), std::nullopt);
        QTRY_VERIFY(!s.setMuted(true));
        QCOMPARE(pactl({ u"get-source-mute"_s, u"out.monitor"_s }), QByteArray("Mute: no\n"));
    }

    void asksAnotherWithoutAServer()
    {
        qputenv("PULSE_SERVER", "unix:" + m_dir.filePath(u"nobody"_s).toUtf8());
        Setup s;
        QCOMPARE(s.isMuted(), std::nullopt);
        QVERIFY(!s.setMuted(true));
        s.otherwise->isThere = true;
        s.otherwise->switches = { { mainElement, {} } };
        QTRY_COMPARE(s.isMuted(), false);
        QTRY_VERIFY(s.setMuted(true));
        QCOMPARE(s.isMuted(), true);
    }

    void aHungServerHoldsNobodyUp()
    {
        Setup s;
        QTRY_COMPARE(s.isMuted(), false);
        QVERIFY(server()->daemon().hang());
        QElapsedTimer taken;
        taken.start();
        QCOMPARE(s.isMuted(), std::nullopt);
        QVERIFY2(taken.elapsed() < 1000, QByteArray::number(taken.elapsed()));
        // There is time left for whatever is there without a server. Many attempts would not show
        // that: they fill the server's queue, and then fail at once.
        s.otherwise->isThere = true;
        s.otherwise->switches = { { mainElement, { .value = 1 } } };
        QVERIFY(s.isMuted() == true || s.isMuted() == true || s.isMuted() == true);
        server()->daemon().resume();
        QTRY_COMPARE(s.isMuted(), false);
    }

    void findsAServerThatStartedAnew()
    {
        Setup s;
        QTRY_COMPARE(s.isMuted(), false);
        server().reset();
        QCOMPARE(s.isMuted(), std::nullopt);
        startServer();
        QTRY_COMPARE(s.isMuted(), false);
        QTRY_VERIFY(s.setMuted(true));
        QTRY_COMPARE(pactl({ u"get-source-mute"_s, u"mic"_s }), QByteArray("Mute: yes\n"));
    }

    void aServerMayEndInBetween()
    {
        Setup s;
        std::unique_ptr<AudioInputDevice> device;
        QTRY_VERIFY(device = s.input.defaultInput());
        QElapsedTimer taken;
        taken.start();
        server()->daemon().crash();
        QVERIFY(!device->setMute(mainElement, 1));
        QVERIFY(!device->setVolume(mainElement, 0));
        QVERIFY2(taken.elapsed() < 1000, QByteArray::number(taken.elapsed()));
        server().reset();
    }

private:
    std::unique_ptr<SoundServer>& server()
    {
        QFETCH_GLOBAL(SoundServer::Kind, kind);
        return m_servers[kind];
    }

    void startServer()
    {
        QFETCH_GLOBAL(SoundServer::Kind, kind);
        server() = std::make_unique<SoundServer>(kind, m_dir.filePath(QString::number(kind)));
        pactl({ u"load-module"_s, u"module-null-sink"_s, u"sink_name=out"_s });
        addSource(u"mic"_s, 1);
    }

    QByteArray pactl(const QStringList& arguments) { return server()->pactl(arguments); }

    void useSource(const QString& name)
    {
        QTRY_VERIFY(pactl({ u"list"_s, u"short"_s, u"sources"_s }).contains(name.toUtf8()));
        const auto isDefault = [&] {
            pactl({ u"set-default-source"_s, name });
            return pactl({ u"get-default-source"_s }).trimmed() == name.toUtf8();
        };
        QTRY_VERIFY(isDefault());
        pactl({ u"set-source-mute"_s, name, u"0"_s });
        pactl({ u"set-source-volume"_s, name, u"100%"_s });
    }

    void addSource(const QString& name, int channels)
    {
        const auto map = QStringList { u"front-left"_s, u"front-right"_s, u"front-center"_s };
        pactl({ u"load-module"_s, u"module-remap-source"_s, u"master=out.monitor"_s,
            u"source_name="_s + name, u"channels=%1"_s.arg(channels),
            u"channel_map="_s + map.first(channels).join(u',') });
        useSource(name);
    }

    // In per cent, by channel, as the server tells them to others.
    QList<int> outsideVolumes(const QString& name)
    {
        QList<int> found;
        for (const auto& word : pactl({ u"get-source-volume"_s, name }).split(' ')) {
            if (word.endsWith('%'))
                found << word.chopped(1).toInt();
        }
        return found;
    }

    QTemporaryDir m_dir;
    std::array<std::unique_ptr<SoundServer>, 2> m_servers;
};

QTEST_GUILESS_MAIN(PulseAudioInputTest)
#include "PulseAudioInputTest.moc"
