#include "App/Platform/Linux/Audio/BoundedAudioInput.h"
#include "App/Platform/Linux/Audio/LoadedAudioInput.h"
#include "Tests/Fakes/FakeAudioInput.h"

#include <QElapsedTimer>
#include <QSemaphore>
#include <QTest>
#include <QThread>

#include <atomic>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// An input that answers when it is let, here or to a single question.
struct SlowInput final : AudioInput {
    struct Device final : AudioInputDevice {
        explicit Device(SlowInput& input)
            : slow(input)
        {
        }
        ~Device() override { slow.ended = QThread::currentThread(); }

        bool hasControl(InputControl, int) const override { return true; }
        bool isSettable(InputControl, int) const override { return true; }
        std::optional<quint32> mute(int) const override
        {
            slow.questions.acquire();
            return 1;
        }
        bool setMute(int, quint32) override { return true; }
        std::optional<float> volume(int) const override { return 1; }
        bool setVolume(int, float) override { return true; }

        SlowInput& slow;
    };

    std::unique_ptr<AudioInputDevice> defaultInput() override
    {
        worked = QThread::currentThread();
        searches.acquire();
        return std::make_unique<Device>(*this);
    }

    QSemaphore searches;
    QSemaphore questions;
    std::atomic<QThread*> worked = nullptr;
    std::atomic<QThread*> ended = nullptr;
};

struct Setup {
    std::shared_ptr<SlowInput> slow = std::make_shared<SlowInput>();
    BoundedAudioInput input { slow };
};

}

class BoundedAudioInputTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void handsEverythingOn()
    {
        const auto fake = std::make_shared<FakeAudioInput>();
        fake->switches = { { mainElement, { .value = 1 } }, { 1, { .isSettable = false } } };
        fake->volumes = { { 2, { .value = 0.5F } }, { 1, { .canBeWritten = false } } };
        BoundedAudioInput input(fake, 20s);
        const auto device = input.defaultInput();
        QVERIFY(device);
        QVERIFY(device->hasControl(InputControl::mute, mainElement));
        QVERIFY(!device->hasControl(InputControl::volume, mainElement));
        QVERIFY(device->isSettable(InputControl::volume, 2));
        QVERIFY(!device->isSettable(InputControl::mute, 1));
        QCOMPARE(device->mute(mainElement), 1U);
        QVERIFY(device->setMute(mainElement, 0));
        QCOMPARE(fake->switches[mainElement].value, 0.0F);
        QCOMPARE(device->volume(2), 0.5F);
        QVERIFY(device->setVolume(2, 0.25F));
        QCOMPARE(fake->volumes[2].value, 0.25F);
        QVERIFY(!device->setVolume(1, 0.25F));
    }

    void noInputIsNone()
    {
        const auto fake = std::make_shared<FakeAudioInput>();
        fake->isThere = false;
        BoundedAudioInput input(fake, 20s);
        QVERIFY(!input.defaultInput());
        fake->isThere = true;
        QVERIFY(input.defaultInput());
    }

    void aSearchMayTakeAHundredAndFiftyMilliseconds()
    {
        Setup s;
        QElapsedTimer taken;
        taken.start();
        QVERIFY(!s.input.defaultInput());
        const auto first = taken.restart();
        QVERIFY2(first >= 149 && first < 500, QByteArray::number(first));
        // What is late is not waited for again, until it is there after all.
        QVERIFY(!s.input.defaultInput());
        QVERIFY2(taken.elapsed() < 100, QByteArray::number(taken.elapsed()));
        s.slow->searches.release(1000);
        QTRY_VERIFY(s.input.defaultInput());
    }

    void allQuestionsTogetherMayTakeNoLonger()
    {
        Setup s;
        s.slow->searches.release(1000);
        std::unique_ptr<AudioInputDevice> device;
        QElapsedTimer taken;
        const auto find = [&] {
            taken.start();
            device = s.input.defaultInput();
            return device != nullptr;
        };
        QTRY_VERIFY(find());
        QVERIFY(!device->mute(mainElement));
        QVERIFY2(
            taken.elapsed() >= 149 && taken.elapsed() < 500, QByteArray::number(taken.elapsed()));
        s.slow->questions.release(1000);
        QTRY_VERIFY(s.input.defaultInput());
        // Its time is over, even if there are answers now.
        QVERIFY(!device->mute(mainElement));
        QVERIFY(!device->setMute(mainElement, 1));
        QVERIFY(!device->hasControl(InputControl::mute, mainElement));
        QVERIFY(!device->volume(mainElement));
    }

    void endsTheDeviceWhereItWasMade()
    {
        Setup s;
        s.slow->searches.release(1000);
        QTRY_VERIFY(s.input.defaultInput());
        QTRY_VERIFY(s.slow->ended);
        QCOMPARE(s.slow->ended.load(), s.slow->worked.load());
        QVERIFY(s.slow->ended != QThread::currentThread());
    }

    void aSearchMayOutliveTheInput()
    {
        auto slow = std::make_shared<SlowInput>();
        {
            BoundedAudioInput input(slow, 1ms);
            QVERIFY(!input.defaultInput());
        }
        slow->searches.release();
        QTRY_COMPARE(slow.use_count(), 1);
    }

    void aModuleThatIsMissingIsNoInput()
    {
        QVERIFY(!LoadedAudioInput(u"/nonexistent/input.so"_s).defaultInput());
        const auto otherwise = std::make_shared<FakeAudioInput>();
        QVERIFY(LoadedAudioInput(u"/nonexistent/input.so"_s, otherwise).defaultInput());
    }
};

QTEST_GUILESS_MAIN(BoundedAudioInputTest)
#include "BoundedAudioInputTest.moc"
