#include "App/Platform/Linux/Machine/MountedVolume.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <filesystem>
#include <limits>
#include <sys/statvfs.h>

using namespace Qt::StringLiterals;

class MountedVolumeTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tellsTheSpaceAroundAPath()
    {
        const QTemporaryDir folder;
        const auto space = MountedVolume(folder.path()).space();
        QVERIFY(space);
        QCOMPARE(space->totalBytes, std::filesystem::space(folder.path().toStdString()).capacity);
        QVERIFY(space->availableBytes <= space->totalBytes);
    }

    void noPathHasNoSpace()
    {
        const QTemporaryDir folder;
        QVERIFY(!MountedVolume(folder.filePath(u"nothing"_s)).space());
    }

    void storesOfNoFilesHaveNoSpace()
    {
        if (!QFile::exists(u"/proc/stat"_s))
            QSKIP("No /proc here: it was not asked for its space.");
        QVERIFY(!MountedVolume(u"/proc"_s).space());
    }

    void countsFragments_data()
    {
        constexpr auto largest = std::numeric_limits<std::uint64_t>::max();
        QTest::addColumn<std::uint64_t>("fragment");
        QTest::addColumn<std::uint64_t>("blocks");
        QTest::addColumn<std::uint64_t>("available");
        QTest::addColumn<std::uint64_t>("totalBytes");
        QTest::addColumn<std::uint64_t>("availableBytes");
        const auto row = [](const char* name, std::uint64_t fragment, std::uint64_t blocks,
                             std::uint64_t available, std::uint64_t total, std::uint64_t free) {
            QTest::newRow(name) << fragment << blocks << available << total << free;
        };
        row("usual", 4096, 1000, 250, 4'096'000, 1'024'000);
        row("full", 4096, 1000, 0, 4'096'000, 0);
        row("beyond 32 bits", 4096, 1U << 31U, 1U << 30U, 8'796'093'022'208, 4'398'046'511'104);
        row("more available than there is", 512, 10, 11, 5120, 5120);
        row("all ones", 4096, largest, largest, largest, largest);
        row("a total too large", 4096, largest, 2, largest, 8192);
        row("available below 0", 4096, 1000, largest - 5, 4'096'000, 4'096'000);
    }

    void countsFragments()
    {
        QFETCH(std::uint64_t, fragment);
        QFETCH(std::uint64_t, blocks);
        QFETCH(std::uint64_t, available);
        struct statvfs figures { };
        figures.f_bsize = 1U << 20U; // How much to write at a time: no unit of these figures.
        figures.f_frsize = fragment;
        figures.f_blocks = blocks;
        figures.f_bfree = blocks;
        figures.f_bavail = available;
        const auto space = MountedVolume::spaceIn(figures);
        QVERIFY(space);
        QTEST(space->totalBytes, "totalBytes");
        QTEST(space->availableBytes, "availableBytes");
    }

    void nothingIsNoSpace()
    {
        struct statvfs figures { };
        QVERIFY(!MountedVolume::spaceIn(figures));
        figures.f_frsize = 4096;
        QVERIFY(!MountedVolume::spaceIn(figures));
        figures.f_frsize = 0;
        figures.f_blocks = 1000;
        QVERIFY(!MountedVolume::spaceIn(figures));
    }
};

QTEST_GUILESS_MAIN(MountedVolumeTest)
#include "MountedVolumeTest.moc"
