#include "App/Meetings/Microphone.h"
#include "Tests/Fakes/FakeAudioInput.h"
#include "Tests/Fakes/FakeUserDefaults.h"

#include <QTest>

using namespace Qt::StringLiterals;

using Control = FakeAudioInput::Control;
using Controls = FakeAudioInput::Controls;
using Writes = QList<std::pair<InputControl, int>>;

static const auto volumeKey = u"micVolumeBeforeMute"_s;
static const auto mute = InputControl::mute;
static const auto volume = InputControl::volume;

static Control readOnly(float value)
{
    return { .value = value, .isSettable = false };
}

static Control unreadable(float value)
{
    return { .value = value, .canBeRead = false };
}

static Control stuck(float value)
{
    return { .value = value, .canBeWritten = false };
}

struct Setup {
    explicit Setup(const Controls& switches = {}, const Controls& volumes = {})
    {
        input.switches = switches;
        input.volumes = volumes;
    }

    std::optional<bool> isMuted() { return Microphone::isMuted(input); }
    bool setMuted(bool muted) { return Microphone::setMuted(input, defaults, muted); }
    float volumeOf(int element) const { return input.volumes.value(element).value; }
    std::optional<double> remembered() const { return defaults.real(volumeKey); }

    FakeAudioInput input;
    FakeUserDefaults defaults;
};

class MicrophoneTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void findsTheDefaultInput()
    {
        Setup s;
        QVERIFY(Microphone::defaultInput(s.input));
        s.input.isThere = false;
        QVERIFY(!Microphone::defaultInput(s.input));
    }

    void withoutAnInputNothingCanBeMuted()
    {
        Setup s({ { 0, {} } }, { { 0, {} } });
        s.input.isThere = false;
        QCOMPARE(s.isMuted(), std::nullopt);
        QVERIFY(!s.setMuted(true));
        QVERIFY(!s.setMuted(false));
        QVERIFY(s.input.writes.isEmpty());
        QCOMPARE(s.defaults.writes, 0);
    }

    void tellsWhetherItIsMuted_data()
    {
        QTest::addColumn<Controls>("switches");
        QTest::addColumn<Controls>("volumes");
        QTest::addColumn<std::optional<bool>>("isMuted");
        const auto row = [](const char* name, const Controls& switches, const Controls& volumes,
                             std::optional<bool> isMuted) {
            QTest::newRow(name) << switches << volumes << isMuted;
        };
        const Controls none;
        const Controls silent { { 0, { 0 } } };
        row("no control", none, none, {});
        row("read-only controls", { { 0, readOnly(1) } }, { { 0, readOnly(0) } }, {});
        row("controls of a third channel", { { 3, { 1 } } }, { { 3, { 0 } } }, {});
        row("switch on", { { 0, { 1 } } }, none, true);
        row("switch off", { { 0, { 0 } } }, silent, false);
        row("switch at two", { { 0, { 2 } } }, none, false);
        row("both channels' switches on", { { 1, { 1 } }, { 2, { 1 } } }, none, true);
        row("one channel's switch off", { { 1, { 1 } }, { 2, { 0 } } }, none, false);
        row("main switch off", { { 0, { 0 } }, { 1, { 1 } }, { 2, { 1 } } }, none, false);
        row("switch that cannot be read", { { 0, unreadable(1) } }, silent, false);
        row("second switch that cannot be read", { { 1, { 1 } }, { 2, unreadable(1) } }, none,
            false);
        row("read-only switch beside another", { { 0, readOnly(0) }, { 1, { 1 } } }, none, true);
        row("read-only switch, silent", { { 0, readOnly(0) } }, silent, true);
        row("read-only switch, loud", { { 0, readOnly(1) } }, { { 0, { 0.5F } } }, false);
        row("silent", none, silent, true);
        row("loud", none, { { 0, { 0.6F } } }, false);
        row("all but silent", none, { { 0, { 1e-7F } } }, false);
        row("both channels silent", none, { { 1, { 0 } }, { 2, { 0 } } }, true);
        row("one channel loud", none, { { 1, { 0 } }, { 2, { 0.5F } } }, false);
        row("volume that cannot be read", none, { { 0, unreadable(0) } }, false);
        row("read-only volume beside another", none, { { 0, readOnly(1) }, { 2, { 0 } } }, true);
    }

    void tellsWhetherItIsMuted()
    {
        QFETCH(Controls, switches);
        QFETCH(Controls, volumes);
        Setup s(switches, volumes);
        QTEST(s.isMuted(), "isMuted");
        QVERIFY(s.input.writes.isEmpty());
    }

    void theSwitchIsUsedWhereThereIsOne()
    {
        Setup s({ { 0, { 0 } } }, { { 0, { 0.6F } } });
        QVERIFY(s.setMuted(true));
        QCOMPARE(s.isMuted(), true);
        QVERIFY(s.setMuted(false));
        QCOMPARE(s.input.switches.value(0).value, 0.0F);
        QCOMPARE(s.volumeOf(0), 0.6F);
        QCOMPARE(s.input.writes, (Writes { { mute, 0 }, { mute, 0 } }));
        QCOMPARE(s.defaults.writes, 0);
    }

    void allSwitchesAreSetInOrder()
    {
        Setup s({ { 0, { 0 } }, { 1, { 0 } }, { 2, { 0 } }, { 3, { 0 } } });
        QVERIFY(s.setMuted(true));
        QCOMPARE(s.input.writes, (Writes { { mute, 0 }, { mute, 1 }, { mute, 2 } }));
        QCOMPARE(s.isMuted(), true);
    }

    void aSwitchThatIsReadOnlyIsLeftAlone()
    {
        Setup s({ { 0, readOnly(0) } }, { { 0, { 0.6F } } });
        QVERIFY(s.setMuted(true));
        QCOMPARE(s.input.writes, (Writes { { volume, 0 } }));
        QCOMPARE(s.isMuted(), true);
    }

    void withoutAUsableControlNothingIsChanged()
    {
        Setup s({ { 0, readOnly(0) } }, { { 0, readOnly(0.6F) } });
        QVERIFY(!s.setMuted(true));
        QVERIFY(!s.setMuted(false));
        QVERIFY(s.input.writes.isEmpty());
        QCOMPARE(s.defaults.writes, 0);
    }

    void theVolumeIsTurnedDownAndBroughtBack()
    {
        Setup s({}, { { 0, { 0.6F } } });
        QVERIFY(s.setMuted(true));
        QCOMPARE(s.volumeOf(0), 0.0F);
        QCOMPARE(s.remembered(), double { 0.6F });
        QVERIFY(s.setMuted(false));
        QCOMPARE(s.volumeOf(0), 0.6F);
    }

    void mutingTwiceKeepsTheVolumeBeforeTheFirst()
    {
        Setup s({}, { { 0, { 0.6F } } });
        s.setMuted(true);
        QVERIFY(s.setMuted(true));
        QCOMPARE(s.remembered(), double { 0.6F });
        s.setMuted(false);
        QCOMPARE(s.volumeOf(0), 0.6F);
    }

    void theVolumeIsRememberedAfterUnmuting()
    {
        Setup s({}, { { 0, { 0.6F } } });
        s.setMuted(true);
        s.setMuted(false);
        s.input.volumes[0].value = 0;
        s.setMuted(false);
        QCOMPARE(s.volumeOf(0), 0.6F);
        QCOMPARE(s.defaults.writes, 1);
    }

    void aVolumeThatCannotBeReadIsNotRemembered()
    {
        Setup s({}, { { 0, unreadable(0.6F) } });
        s.defaults.setReal(volumeKey, 0.5);
        QVERIFY(s.setMuted(true));
        QCOMPARE(s.volumeOf(0), 0.0F);
        QCOMPARE(s.remembered(), 0.5);
    }

    void withoutAUsableMemoryTheVolumeIsTheUsualOne_data()
    {
        using Stored = QHash<QString, UserDefaults::Value>;
        QTest::addColumn<Stored>("stored");
        QTest::newRow("nothing") << Stored {};
        QTest::newRow("text") << Stored { { volumeKey, u"0.5"_s } };
        QTest::newRow("flag") << Stored { { volumeKey, true } };
        QTest::newRow("data") << Stored { { volumeKey, QByteArray("0.5") } };
    }

    void withoutAUsableMemoryTheVolumeIsTheUsualOne()
    {
        using Stored = QHash<QString, UserDefaults::Value>;
        QFETCH(Stored, stored);
        Setup s({}, { { 0, { 0 } } });
        s.defaults.values = stored;
        QVERIFY(s.setMuted(false));
        QCOMPARE(s.volumeOf(0), 0.75F);
    }

    void aMemoryOfNoPossibleVolumeIsBroughtIntoRange_data()
    {
        QTest::addColumn<double>("stored");
        QTest::addColumn<float>("volume");
        QTest::newRow("too loud") << 7.5 << 1.0F;
        QTest::newRow("too loud for the type") << 1e300 << 1.0F;
        QTest::newRow("less than silent") << -1.0 << 0.0F;
        QTest::newRow("full") << 1.0 << 1.0F;
    }

    void aMemoryOfNoPossibleVolumeIsBroughtIntoRange()
    {
        QFETCH(double, stored);
        Setup s({}, { { 0, { 0.5F } } });
        s.defaults.setReal(volumeKey, stored);
        QVERIFY(s.setMuted(false));
        QTEST(s.volumeOf(0), "volume");
    }

    void bothChannelsFollowTheFirst()
    {
        Setup s({}, { { 1, { 0.4F } }, { 2, { 0.8F } } });
        QVERIFY(s.setMuted(true));
        QCOMPARE(s.input.writes, (Writes { { volume, 1 }, { volume, 2 } }));
        QCOMPARE(s.remembered(), double { 0.4F });
        QCOMPARE(s.isMuted(), true);
        QVERIFY(s.setMuted(false));
        QCOMPARE(s.volumeOf(1), 0.4F);
        QCOMPARE(s.volumeOf(2), 0.4F);
    }

    void theMainVolumeIsTheOneRemembered()
    {
        Setup s({}, { { 0, { 0.3F } }, { 1, { 0.4F } } });
        s.setMuted(true);
        QCOMPARE(s.remembered(), double { 0.3F });
    }

    void aReadOnlyVolumeIsNeitherRememberedNorSet()
    {
        Setup s({}, { { 0, readOnly(0.9F) }, { 1, { 0.4F } } });
        QVERIFY(s.setMuted(true));
        QCOMPARE(s.remembered(), double { 0.4F });
        QCOMPARE(s.input.writes, (Writes { { volume, 1 } }));
    }

    void whatCannotBeWrittenIsToldByReading()
    {
        Setup s({ { 0, stuck(0) } });
        QVERIFY(s.setMuted(true));
        QCOMPARE(s.isMuted(), false);
        Setup v({}, { { 1, stuck(0.4F) }, { 2, { 0.4F } } });
        QVERIFY(v.setMuted(true));
        QCOMPARE(v.volumeOf(2), 0.0F);
        QCOMPARE(v.isMuted(), false);
    }
};

QTEST_GUILESS_MAIN(MicrophoneTest)
#include "MicrophoneTest.moc"
