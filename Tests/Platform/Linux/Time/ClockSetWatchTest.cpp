#include "App/Platform/Linux/Time/ClockSetWatch.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <sys/timerfd.h>

using namespace Qt::StringLiterals;

struct Setup {
    int timer = ClockSetWatch::openTimer();
    ClockSetWatch watch { timer };
    QSignalSpy told { &watch, &ClockSetWatch::clockSet };

    // A timer that runs out wakes the watch like one that a set clock cancels; only the error
    // that reading it gives is another.
    void runOut()
    {
        itimerspec soon {};
        soon.it_value.tv_nsec = 1;
        timerfd_settime(timer, TFD_TIMER_ABSTIME, &soon, nullptr);
    }

    time_t secondsLeft() const
    {
        itimerspec left {};
        timerfd_gettime(timer, &left);
        return left.it_value.tv_sec;
    }

    QByteArray kernelView() const
    {
        QFile info(u"/proc/self/fdinfo/%1"_s.arg(timer));
        return info.open(QIODevice::ReadOnly) ? info.readAll() : QByteArray();
    }
};

class ClockSetWatchTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void waitsForCenturies()
    {
        const Setup s;
        QVERIFY(s.secondsLeft() > 100LL * 365 * 86'400);
        QCOMPARE(s.told.count(), 0);
    }

    void asksTheKernelToBeToldOfASetClock()
    {
        const Setup s;
        const auto absoluteAndCancelled = QByteArray("settime flags: 03");
        QVERIFY2(s.kernelView().contains(absoluteAndCancelled), s.kernelView());
        QVERIFY2(s.kernelView().contains("clockid: 0"), s.kernelView());
    }

    void tellsOnceAndWaitsAgain()
    {
        Setup s;
        s.runOut();
        QTRY_COMPARE(s.told.count(), 1);
        QVERIFY(s.secondsLeft() > 100LL * 365 * 86'400);
        QVERIFY2(s.kernelView().contains("settime flags: 03"), s.kernelView());
        QCoreApplication::processEvents();
        QCOMPARE(s.told.count(), 1);
    }

    void tellsEveryTime()
    {
        Setup s;
        s.runOut();
        QTRY_COMPARE(s.told.count(), 1);
        s.runOut();
        QTRY_COMPARE(s.told.count(), 2);
    }

    void staysSilentWithoutATimer()
    {
        ClockSetWatch watch(-1);
        const QSignalSpy told(&watch, &ClockSetWatch::clockSet);
        QCoreApplication::processEvents();
        QCOMPARE(told.count(), 0);
    }
};

QTEST_GUILESS_MAIN(ClockSetWatchTest)
#include "ClockSetWatchTest.moc"
