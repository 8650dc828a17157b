#include "App/Platform/Linux/Machine/ProcText.h"

#include <QTest>

#include <limits>
#include <string>

namespace {

constexpr auto largest = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t kib = 1024;

const std::string stat = "cpu  101 22 303 4004 55 6 7 8 90 100\n"
                         "cpu0 1 2 3 4 5 6 7 8 9 10\n"
                         "intr 12345 0 0 1\n";

const std::string memInfo = "MemTotal:       16000000 kB\n"
                            "MemFree:         1000000 kB\n"
                            "MemAvailable:    6000000 kB\n"
                            "Buffers:          200000 kB\n"
                            "HugePages_Total:       0\n";

const std::string arcStats = "9 1 0x01 123 33456 1234567890 9876543210\n"
                             "name                            type data\n"
                             "hits                            4    7\n"
                             "c                               4    9000\n"
                             "c_min                           4    1000\n"
                             "c_max                           4    9999\n"
                             "size                            4    5000\n"
                             "compressed_size                 4    1\n";

std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    return text.replace(text.find(from), from.size(), to);
}

// On the heap to the byte, so that a sanitizer sees a read behind its end.
std::string beginning(const std::string& text, std::size_t size)
{
    std::string cut(text, 0, size);
    cut.shrink_to_fit();
    return cut;
}

}

class ProcTextTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void sortsTheProcessorsTimes();
    void oldKernelsHaveFourTimes();
    void timesMayBeHuge();
    void noTimesInWhatIsNone_data();
    void noTimesInWhatIsNone();
    void aCutOffLineOfTimesSaysNothing();
    void memoryInUseIsWhatIsNotAvailable();
    void aSpareCacheIsNotInUse();
    void memoryInUseIsNeverNegative_data();
    void memoryInUseIsNeverNegative();
    void noMemoryInWhatIsNone_data();
    void noMemoryInWhatIsNone();
    void aCutOffTableOfMemorySaysNothing();
    void theCacheGivesBackAllButItsLeastSize();
    void aCacheBelowItsLeastSizeGivesNothingBack();
    void aCutOffTableOfTheCacheSaysNothing();
    void junkSaysNothing_data();
    void junkSaysNothing();
};

void ProcTextTest::sortsTheProcessorsTimes()
{
    const auto times = ProcText::processorTimes(stat);
    QVERIFY(times);
    QCOMPARE(times->user, 101U);
    QCOMPARE(times->nice, 22U);
    QCOMPARE(times->system, 303U + 6 + 7 + 8);
    QCOMPARE(times->idle, 4004U + 55);
}

void ProcTextTest::oldKernelsHaveFourTimes()
{
    const auto times = ProcText::processorTimes("cpu 1 2 3 4\n");
    QVERIFY(times);
    QCOMPARE(times->system, 3U);
    QCOMPARE(times->idle, 4U);
}

void ProcTextTest::timesMayBeHuge()
{
    const auto number = std::to_string(largest);
    const auto times = ProcText::processorTimes("cpu " + number + " 2 3 " + number + "\n");
    QVERIFY(times);
    QCOMPARE(times->user, largest);
    QCOMPARE(times->idle, largest);
}

void ProcTextTest::noTimesInWhatIsNone_data()
{
    QTest::addColumn<std::string>("text");
    QTest::newRow("three times") << std::string("cpu 1 2 3\n");
    QTest::newRow("no times") << std::string("cpu\n");
    QTest::newRow("one processor's") << std::string("cpu0 1 2 3 4\n");
    QTest::newRow("not the first line") << "\n" + stat;
    QTest::newRow("a negative time") << replaced(stat, "303", "-3");
    QTest::newRow("a fraction") << replaced(stat, "303", "3.5");
    QTest::newRow("letters behind") << replaced(stat, " 100\n", " 100x\n");
    QTest::newRow("2^64") << replaced(stat, "303", "18446744073709551616");
}

void ProcTextTest::noTimesInWhatIsNone()
{
    QFETCH(std::string, text);
    QVERIFY(!ProcText::processorTimes(text));
}

void ProcTextTest::aCutOffLineOfTimesSaysNothing()
{
    const auto whole = stat.find('\n') + 1;
    for (std::size_t size = 0; size <= stat.size(); ++size)
        QCOMPARE(ProcText::processorTimes(beginning(stat, size)).has_value(), size >= whole);
}

void ProcTextTest::memoryInUseIsWhatIsNotAvailable()
{
    const auto memory = ProcText::memoryUse(memInfo, 0);
    QVERIFY(memory);
    QCOMPARE(memory->usedBytes, 10'000'000 * kib);
    QCOMPARE(memory->physicalBytes, 16'000'000 * kib);
}

void ProcTextTest::aSpareCacheIsNotInUse()
{
    QCOMPARE(ProcText::memoryUse(memInfo, 4'000'000 * kib)->usedBytes, 6'000'000 * kib);
}

void ProcTextTest::memoryInUseIsNeverNegative_data()
{
    QTest::addColumn<std::string>("text");
    QTest::addColumn<std::uint64_t>("spare");
    const auto available = replaced(memInfo, " 6000000", "16000001");
    QTest::newRow("more available than there is") << available << std::uint64_t { 0 };
    QTest::newRow("more spare than used") << memInfo << 10'000'001 * kib;
    QTest::newRow("all the spare of the world") << memInfo << largest;
}

void ProcTextTest::memoryInUseIsNeverNegative()
{
    QFETCH(std::string, text);
    QFETCH(std::uint64_t, spare);
    const auto memory = ProcText::memoryUse(text, spare);
    QVERIFY(memory);
    QCOMPARE(memory->usedBytes, 0U);
    QCOMPARE(memory->physicalBytes, 16'000'000 * kib);
}

void ProcTextTest::noMemoryInWhatIsNone_data()
{
    QTest::addColumn<std::string>("text");
    QTest::newRow("none available") << replaced(memInfo, "MemAvailable:", "MemAvail:    ");
    QTest::newRow("no total") << replaced(memInfo, "MemTotal:", "MemSum:  ");
    QTest::newRow("a total of 0") << replaced(memInfo, "16000000", "0");
    QTest::newRow("a negative total") << replaced(memInfo, "16000000", "-1");
    QTest::newRow("no number") << replaced(memInfo, "16000000", "");
    QTest::newRow("another unit") << replaced(memInfo, "16000000 kB", "16000000 MB");
    QTest::newRow("no unit") << replaced(memInfo, "16000000 kB", "16000000");
    QTest::newRow("beyond 2^64 bytes") << replaced(memInfo, "16000000", "18014398509481985");
    QTest::newRow("2^64 kB") << replaced(memInfo, "16000000", "18446744073709551616");
}

void ProcTextTest::noMemoryInWhatIsNone()
{
    QFETCH(std::string, text);
    QVERIFY(!ProcText::memoryUse(text, 0));
}

void ProcTextTest::aCutOffTableOfMemorySaysNothing()
{
    const auto whole = memInfo.find("Buffers");
    for (std::size_t size = 0; size <= memInfo.size(); ++size)
        QCOMPARE(ProcText::memoryUse(beginning(memInfo, size), 0).has_value(), size >= whole);
}

void ProcTextTest::theCacheGivesBackAllButItsLeastSize()
{
    QCOMPARE(ProcText::spareCacheBytes(arcStats), 4000U);
}

void ProcTextTest::aCacheBelowItsLeastSizeGivesNothingBack()
{
    QCOMPARE(ProcText::spareCacheBytes(replaced(arcStats, "5000", "999")), 0U);
}

void ProcTextTest::aCutOffTableOfTheCacheSaysNothing()
{
    const auto whole = arcStats.find("compressed_size");
    for (std::size_t size = 0; size <= arcStats.size(); ++size)
        QCOMPARE(ProcText::spareCacheBytes(beginning(arcStats, size)), size >= whole ? 4000U : 0U);
}

void ProcTextTest::junkSaysNothing_data()
{
    QTest::addColumn<std::string>("junk");
    QTest::newRow("nothing") << std::string();
    QTest::newRow("spaces") << std::string(1 << 20, ' ');
    QTest::newRow("line ends") << std::string(1 << 20, '\n');
    QTest::newRow("zeros") << std::string(1 << 20, '\0');
    QTest::newRow("digits") << "cpu " + std::string(1 << 20, '7') + " 1 1 1\n";
    std::string noise(1 << 20, '\0');
    std::uint32_t state = 1;
    for (char& c : noise) {
        state = state * 1664525 + 1013904223;
        c = static_cast<char>(state >> 24U);
    }
    QTest::newRow("noise") << noise;
}

void ProcTextTest::junkSaysNothing()
{
    QFETCH(std::string, junk);
    QVERIFY(!ProcText::processorTimes(junk));
    QVERIFY(!ProcText::memoryUse(junk, 0));
    QCOMPARE(ProcText::spareCacheBytes(junk), 0U);
}

QTEST_GUILESS_MAIN(ProcTextTest)
#include "ProcTextTest.moc"
