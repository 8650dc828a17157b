#include "App/Platform/Linux/Time/SteadyClock.h"

#include <QTest>

#include <ctime>

static double monotonic()
{
    timespec now {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
}

class SteadyClockTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void runsOnWhateverTheWallClockShows()
    {
        const SteadyClock clock;
        const double before = monotonic();
        const double now = clock.now().time_since_epoch().count();
        const double after = monotonic();
        QVERIFY(before <= now + 1e-6);
        QVERIFY(now <= after + 1e-6);
    }

    void measuresASpan()
    {
        const SteadyClock clock;
        const Moment start = clock.now();
        QTRY_VERIFY((clock.now() - start).count() >= 0.01);
        QVERIFY((clock.now() - start).count() < 10);
    }
};

QTEST_GUILESS_MAIN(SteadyClockTest)
#include "SteadyClockTest.moc"
