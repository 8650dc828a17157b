#include "App/Platform/Linux/Machine/LinuxCounters.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

constexpr std::uint64_t wrap = std::uint64_t { 1 } << 32U;

void write(const QString& path, const QByteArray& text)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), text.size());
}

struct Setup {
    QTemporaryDir folder;
    LinuxCounterPaths paths {
        .stat = folder.filePath(u"stat"_s),
        .memInfo = folder.filePath(u"meminfo"_s),
        .arcStats = folder.filePath(u"arcstats"_s),
        .volume = folder.path(),
    };
    LinuxCounters counters { paths };

    ProcessorTicks ticksAfter(const QByteArray& stat)
    {
        write(paths.stat, stat);
        return counters.processorTicks().value_or(ProcessorTicks { 1, 1, 1, 1 });
    }

    ProcessorTicks ticksAfterIdle(std::uint64_t idle, std::uint64_t waiting = 0)
    {
        return ticksAfter(
            "cpu 10 0 0 " + QByteArray::number(idle) + ' ' + QByteArray::number(waiting) + '\n');
    }
};

}

class LinuxCountersTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void countsTheProcessorsTime()
    {
        Setup s;
        const auto ticks = s.ticksAfter("cpu  101 22 303 4004 55 6 7 8 90 100\ncpu0 1 2 3 4\n");
        QCOMPARE(ticks.user, 101U);
        QCOMPARE(ticks.nice, 22U);
        QCOMPARE(ticks.system, 324U);
        QCOMPARE(ticks.idle, 4059U);
    }

    void idleTimeNeverStepsBack()
    {
        Setup s;
        QCOMPARE(s.ticksAfterIdle(1000, 100).idle, 1100U);
        QCOMPARE(s.ticksAfterIdle(1001, 90).idle, 1100U);
        QCOMPARE(s.ticksAfterIdle(1021, 90).idle, 1120U);
    }

    void timeGoesOnAfterItBeganAnew()
    {
        Setup s;
        QCOMPARE(s.ticksAfterIdle(1'000'000).idle, 1'000'000U);
        QCOMPARE(s.ticksAfterIdle(20).idle, 1'000'000U);
        QCOMPARE(s.ticksAfterIdle(50).idle, 1'000'030U);
    }

    void ticksBeginAnewAt32Bits()
    {
        Setup s;
        QCOMPARE(s.ticksAfterIdle(wrap - 1).idle, 4294967295U);
        QCOMPARE(s.ticksAfterIdle(wrap + 4).idle, 4U);
        QCOMPARE(s.ticksAfter("cpu 18446744073709551615 0 0 0\n").user, 4294967295U);
    }

    void noOtherCounterStepsBackEither()
    {
        Setup s;
        s.ticksAfter("cpu 50 60 70 80\n");
        const auto ticks = s.ticksAfter("cpu 49 59 69 79\n");
        QCOMPARE(ticks.user, 50U);
        QCOMPARE(ticks.nice, 60U);
        QCOMPARE(ticks.system, 70U);
        QCOMPARE(ticks.idle, 80U);
    }

    void countsTheMemoryInUse()
    {
        Setup s;
        write(s.paths.memInfo, "MemTotal: 1000 kB\nMemFree: 1 kB\nMemAvailable: 400 kB\n");
        QCOMPARE(s.counters.memoryUse()->usedBytes, 600U * 1024);
        QCOMPARE(s.counters.memoryUse()->physicalBytes, 1000U * 1024);
        write(s.paths.arcStats, "size 4 204800\nc_min 4 102400\n");
        QCOMPARE(s.counters.memoryUse()->usedBytes, 500U * 1024);
    }

    void findsTheMemoryFiguresInTheMostThatKernelsSay()
    {
        Setup s;
        const QByteArray padding(3900, 'x');
        write(s.paths.memInfo, padding + "\nMemTotal: 1000 kB\nMemAvailable: 400 kB\nMore: 1 kB\n");
        QCOMPARE(s.counters.memoryUse()->usedBytes, 600U * 1024);
    }

    void whatIsNotThereIsNone()
    {
        Setup s;
        QVERIFY(!s.counters.processorTicks());
        QVERIFY(!s.counters.memoryUse());
        QVERIFY(s.counters.startupVolume());
        QVERIFY(!LinuxCounters({ .volume = s.folder.filePath(u"no"_s) }).startupVolume());
    }

    void whatIsNoTableIsNone_data()
    {
        QTest::addColumn<QString>("kind");
        for (const char* kind : { "nothing", "junk", "a folder", "a pipe" })
            QTest::newRow(kind) << QString::fromLatin1(kind);
    }

    void whatIsNoTableIsNone()
    {
        QFETCH(QString, kind);
        Setup s;
        for (const auto& path : { s.paths.stat, s.paths.memInfo, s.paths.arcStats }) {
            if (kind == u"nothing" || kind == u"junk")
                write(path, QByteArray(kind == u"junk" ? 1 << 20 : 0, 'x'));
            else if (kind == u"a folder")
                QVERIFY(QDir().mkdir(path));
            else
                QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), S_IRUSR | S_IWUSR), 0);
        }
        QVERIFY(!s.counters.processorTicks());
        QVERIFY(!s.counters.memoryUse());
    }

    void readsThisMachine()
    {
        if (!QFile::exists(u"/proc/stat"_s) || !QFile::exists(u"/proc/meminfo"_s))
            QSKIP("No /proc here: this machine's counters were not read.");
        LinuxCounters counters;
        const auto ticks = counters.processorTicks();
        QVERIFY(ticks);
        const auto more = [&] {
            const auto now = counters.processorTicks().value_or(ProcessorTicks());
            return now.user + now.system + now.idle + now.nice
                != ticks->user + ticks->system + ticks->idle + ticks->nice;
        };
        QTRY_VERIFY(more());
        QVERIFY(counters.memoryUse());
        QVERIFY(counters.startupVolume());
    }
};

QTEST_GUILESS_MAIN(LinuxCountersTest)
#include "LinuxCountersTest.moc"
