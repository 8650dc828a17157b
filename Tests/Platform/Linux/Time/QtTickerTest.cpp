#include "App/Platform/Linux/Time/QtTicker.h"

#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QTest>

#include <memory>

using namespace std::chrono_literals;

class QtTickerTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void firesAgainAndAgain()
    {
        QtTicker ticker;
        QElapsedTimer elapsed;
        int ticks = 0;
        elapsed.start();
        qint64 fifth = 0;
        ticker.start(20ms, [&] {
            if (++ticks == 5)
                fifth = elapsed.elapsed();
        });
        QCOMPARE(ticks, 0);
        QTRY_VERIFY(ticks >= 5);
        QVERIFY(fifth >= 90);
    }

    void isSilentOnceStopped()
    {
        QtTicker ticker;
        int ticks = 0;
        ticker.start(1ms, [&] { ++ticks; });
        QTRY_VERIFY(ticks > 0);
        ticker.stop();
        const auto before = ticks;
        QtTicker other;
        int otherTicks = 0;
        other.start(1ms, [&] { ++otherTicks; });
        QTRY_VERIFY(otherTicks > 5);
        QCOMPARE(ticks, before);
    }

    void aSecondStartReplacesTheFirst()
    {
        QtTicker ticker;
        int first = 0;
        int second = 0;
        ticker.start(1ms, [&] { ++first; });
        ticker.start(1ms, [&] { ++second; });
        QTRY_VERIFY(second > 3);
        QCOMPARE(first, 0);
    }

    void mayBeStoppedFromItsOwnCall()
    {
        QtTicker ticker;
        const auto held = std::make_shared<int>(0);
        ticker.start(1ms, [&ticker, held] {
            ticker.stop();
            ++*held;
        });
        QTRY_COMPARE(*held, 1);
        QCOMPARE(held.use_count(), 1L);
    }

    void wakesTheProgramOnceATick()
    {
        QtTicker ticker;
        int ticks = 0;
        int wakeups = 0;
        QEventLoop loop;
        const auto* dispatcher = QAbstractEventDispatcher::instance();
        connect(dispatcher, &QAbstractEventDispatcher::awake, &loop, [&] { ++wakeups; });
        ticker.start(500ms, [&] {
            if (++ticks == 4)
                loop.quit();
        });
        loop.exec();
        QVERIFY2(wakeups <= ticks + 1, QByteArray::number(wakeups));
    }
};

QTEST_GUILESS_MAIN(QtTickerTest)
#include "QtTickerTest.moc"
