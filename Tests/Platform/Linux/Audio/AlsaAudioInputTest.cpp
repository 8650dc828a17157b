#include "App/Meetings/Microphone.h"
#include "App/Platform/Linux/Audio/BoundedAudioInput.h"
#include "App/Platform/Linux/Audio/LoadedAudioInput.h"
#include "Tests/Fakes/FakeUserDefaults.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

constexpr auto configuration = R"(
ctl_type.played { lib "%1" }
ctl.default { type played state "%2" }
)";

QString pathOf(const char* module)
{
    return QStringLiteral(CORVELLA_HELPERS_DIR) + u'/' + QString::fromLatin1(module);
}

// No sound server, and a card that has what its file says.
struct Setup {
    explicit Setup(const QByteArray& controls)
    {
        write(configurationPath(),
            QString::fromLatin1(configuration)
                .arg(QStringLiteral(CORVELLA_PLAYED_CARD), cardPath())
                .toUtf8());
        write(cardPath(), controls);
        qputenv("ALSA_CONFIG_PATH", configurationPath().toUtf8());
        qputenv("PULSE_SERVER", "unix:" + folder.filePath(u"nobody"_s).toUtf8());
        for (const auto* name : { "HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR" })
            qputenv(name, folder.path().toUtf8());
    }

    static void write(const QString& path, const QByteArray& text)
    {
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(text);
    }

    QString configurationPath() const { return folder.filePath(u"asound.conf"_s); }
    QString cardPath() const { return folder.filePath(u"card"_s); }

    QByteArray card() const
    {
        QFile file(cardPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::optional<bool> isMuted() { return Microphone::isMuted(input); }
    bool setMuted(bool mute) { return Microphone::setMuted(input, defaults, mute); }

    QTemporaryDir folder;
    FakeUserDefaults defaults;
    BoundedAudioInput input { std::make_shared<LoadedAudioInput>(
        pathOf("pulse-input.so"), std::make_shared<LoadedAudioInput>(pathOf("alsa-input.so"))) };
};

}

class AlsaAudioInputTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void mutesByTheSwitch()
    {
        Setup s("\"Capture Switch\" switch rw 0 1 1\n\"Capture Volume\" volume rw 0 64 40\n");
        QTRY_COMPARE(s.isMuted(), false);
        QTRY_VERIFY(s.setMuted(true));
        QTRY_COMPARE(
            s.card(), "\"Capture Switch\" switch rw 0 1 0\n\"Capture Volume\" volume rw 0 64 40\n");
        QTRY_COMPARE(s.isMuted(), true);
        QTRY_VERIFY(s.setMuted(false));
        QTRY_COMPARE(
            s.card(), "\"Capture Switch\" switch rw 0 1 1\n\"Capture Volume\" volume rw 0 64 40\n");
        QTRY_COMPARE(s.isMuted(), false);
        QVERIFY(s.defaults.values.isEmpty());
    }

    void oneSwitchMutesEveryChannel()
    {
        Setup s("\"Capture Switch\" switch rw 0 1 1 1 1 1\n");
        QTRY_VERIFY(s.setMuted(true));
        QTRY_COMPARE(s.card(), "\"Capture Switch\" switch rw 0 1 0 0 0 0\n");
        QTRY_COMPARE(s.isMuted(), true);
    }

    void oneChannelThatListensIsNotMuted()
    {
        Setup s("\"Capture Switch\" switch rw 0 1 0 0 0 1\n");
        QTRY_COMPARE(s.isMuted(), false);
    }

    void aSwitchThatCannotBeSetLeavesTheVolume()
    {
        Setup s("\"Capture Switch\" switch r 0 1 1\n\"Capture Volume\" volume rw 10 60 40\n");
        QTRY_COMPARE(s.isMuted(), false);
        QTRY_VERIFY(s.setMuted(true));
        QTRY_COMPARE(
            s.card(), "\"Capture Switch\" switch r 0 1 1\n\"Capture Volume\" volume rw 10 60 10\n");
        QTRY_COMPARE(s.isMuted(), true);
        QTRY_VERIFY(s.setMuted(false));
        QTRY_COMPARE(
            s.card(), "\"Capture Switch\" switch r 0 1 1\n\"Capture Volume\" volume rw 10 60 40\n");
        QTRY_COMPARE(s.isMuted(), false);
    }

    void bothChannelsAreTurnedDown()
    {
        Setup s("\"Capture Volume\" volume rw 0 100 60 30\n");
        QTRY_COMPARE(s.isMuted(), false);
        QTRY_VERIFY(s.setMuted(true));
        QTRY_COMPARE(s.card(), "\"Capture Volume\" volume rw 0 100 0 0\n");
        QTRY_VERIFY(s.setMuted(false));
        QTRY_COMPARE(s.card(), "\"Capture Volume\" volume rw 0 100 60 60\n");
    }

    void aThirdChannelDoesNotGoOnListening()
    {
        Setup s("\"Capture Volume\" volume rw 0 100 60 60 30\n");
        QTRY_VERIFY(s.setMuted(true));
        QTRY_COMPARE(s.card(), "\"Capture Volume\" volume rw 0 100 0 0 0\n");
        QTRY_COMPARE(s.isMuted(), true);
    }

    void takesTheControlOfOneInputWhereThereIsNoOther()
    {
        Setup s(
            "\"Mic Playback Switch\" switch rw 0 1 1\n\"Mic Capture Switch\" switch rw 0 1 1\n");
        QTRY_VERIFY(s.setMuted(true));
        QTRY_COMPARE(s.card(),
            "\"Mic Playback Switch\" switch rw 0 1 1\n\"Mic Capture Switch\" switch rw 0 1 0\n");
    }

    void prefersTheControlOfAllInputs()
    {
        Setup s("\"Mic Capture Switch\" switch rw 0 1 1\n\"Capture Switch\" switch rw 0 1 1\n");
        QTRY_VERIFY(s.setMuted(true));
        QTRY_COMPARE(s.card(),
            "\"Mic Capture Switch\" switch rw 0 1 1\n\"Capture Switch\" switch rw 0 1 0\n");
    }

    void whatCannotBeSetIsNotMuted_data()
    {
        QTest::addColumn<QByteArray>("controls");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("read-only")
            << QByteArray("\"Capture Switch\" switch r 0 1 1\n\"Capture Volume\" volume r 0 9 5\n");
        QTest::newRow("playback") << QByteArray("\"Master Playback Switch\" switch rw 0 1 1\n\"PCM "
                                                "Playback Volume\" volume rw 0 9 5\n");
        QTest::newRow("no channel") << QByteArray("\"Capture Switch\" switch rw 0 1\n");
    }

    void whatCannotBeSetIsNotMuted()
    {
        QFETCH(QByteArray, controls);
        Setup s("\"Capture Switch\" switch rw 0 1 1\n");
        QTRY_COMPARE(
            s.isMuted(), false); // So that what comes is not due to a card that is missing.
        Setup::write(s.cardPath(), controls);
        QCOMPARE(s.isMuted(), std::nullopt);
        QVERIFY(!s.setMuted(true));
        QCOMPARE(s.card(), controls);
    }

    void aVolumeWithoutRangeIsNeverMuted()
    {
        Setup s("\"Capture Volume\" volume rw 5 5 5\n");
        QTRY_COMPARE(s.isMuted(), false);
    }

    void aMachineWithoutACardHasNoInput()
    {
        Setup s("\"Capture Switch\" switch rw 0 1 1\n");
        QTRY_COMPARE(s.isMuted(), false);
        Setup::write(s.configurationPath(), "ctl_type.played { lib \"/nonexistent\" }\n");
        QCOMPARE(s.isMuted(), std::nullopt);
        QVERIFY(!s.setMuted(true));
    }

    void aCardThatHangsHoldsNobodyUp()
    {
        Setup s({});
        QFile::remove(s.cardPath());
        QCOMPARE(::mkfifo(QFile::encodeName(s.cardPath()), 0600), 0);
        QElapsedTimer taken;
        taken.start();
        QCOMPARE(s.isMuted(), std::nullopt);
        QVERIFY2(taken.elapsed() < 1000, QByteArray::number(taken.elapsed()));
        Setup::write(s.cardPath(), "\"Capture Switch\" switch rw 0 1 1\n");
        QFile::remove(s.cardPath());
        Setup::write(s.cardPath(), "\"Capture Switch\" switch rw 0 1 0\n");
        QTRY_COMPARE(s.isMuted(), true);
    }
};

QTEST_GUILESS_MAIN(AlsaAudioInputTest)
#include "AlsaAudioInputTest.moc"
