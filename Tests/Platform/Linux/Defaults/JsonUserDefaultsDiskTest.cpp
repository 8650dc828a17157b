#include "App/Platform/Linux/Defaults/DefaultsFile.h"
#include "App/Platform/Linux/Defaults/JsonUserDefaults.h"
#include "Tests/Platform/Linux/Defaults/OtherDefaults.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <csignal>

using namespace Qt::StringLiterals;

namespace {

struct Setup {
    QTemporaryDir folder;
    QString path = folder.filePath(u"defaults.json"_s);

    qint64 disk(const QString& key) const
    {
        const auto entries = DefaultsFile(path).read();
        return entries ? entries->value(key, "-1").toLongLong() : -1;
    }
};

// The last number that the counting process saw on the disk before it died.
qint64 lastSeen(const QByteArray& printed)
{
    auto lines = printed.split('\n');
    lines.removeLast(); // Cut off by the death, or empty.
    return lines.isEmpty() ? 0 : lines.last().toLongLong();
}

qint64 countUntilKilled(const QString& path, int lines)
{
    QProcess counting;
    counting.start(QStringLiteral(DEFAULTS_PROCESS), { path, u"count"_s });
    QByteArray printed;
    while (printed.count('\n') < lines && counting.waitForReadyRead(5000))
        printed += counting.readAll();
    counting.kill();
    counting.waitForFinished();
    return lastSeen(printed + counting.readAll());
}

}

class JsonUserDefaultsDiskTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aHundredKillsLoseNothingThatWasOnDisk();
    void aFullDiskKeepsTheOldFileAndTakesTheNewLater();
    void aReadOnlyFolderHarmsNothing();
    void aSizeLimitEndsNeitherFileNorProgram();
    void aKeystrokeDoesNotWaitForAStoppedProcess();
    void quittingWaitsForAStoppedProcessABoundedTime();
    void aChangeOnItsWayOutlivesAnEdit();
    void twoProcessesKeepEachOthersKeys();
    void anOtherProcessIsHeard();
};

void JsonUserDefaultsDiskTest::aHundredKillsLoseNothingThatWasOnDisk()
{
    const Setup s;
    qint64 least = 0;
    for (int kill = 0; kill < 100; ++kill) {
        least = std::max(least, countUntilKilled(s.path, 1 + kill % 3));
        const auto entries = DefaultsFile(s.path).read();
        QVERIFY(!DefaultsFile(s.path).isDamaged());
        if (least > 0)
            QCOMPARE(entries.value_or(DefaultsFile::Entries()).size(), 9);
        for (int key = 0; key < 8; ++key)
            QVERIFY(least == 0 || s.disk(u"key%1"_s.arg(key)) >= least);
        least = std::max(least, s.disk(u"key7"_s));
    }
    QVERIFY(least >= 100);
    QVERIFY(QDir(s.folder.path()).entryList({ u"*.bad*"_s }).isEmpty());
}

void JsonUserDefaultsDiskTest::aFullDiskKeepsTheOldFileAndTakesTheNewLater()
{
    if (!OtherDefaults::mayMount())
        QSKIP("No mount namespaces here: the full disk was not tried.");
    const Setup s;
    OtherDefaults other(s.path, u"mount -t tmpfs -o size=64k,mode=700 tmpfs \"$folder\""_s);
    other.ask(u"set n 1"_s);
    QTRY_COMPARE(other.ask(u"disk n"_s), u"1"_s);
    QCOMPARE(other.ask(u"reopen"_s), u"done"_s);
    QCOMPARE(other.ask(u"fill"_s), u"full"_s);
    other.ask(u"set n 2"_s);
    QCOMPARE(other.ask(u"value n"_s), u"2"_s);
    QCOMPARE(other.ask(u"reopen"_s), u"done"_s); // Flushes, in vain.
    QCOMPARE(other.ask(u"disk n"_s), u"1"_s);
    QCOMPARE(other.ask(u"value n"_s), u"1"_s);
    QCOMPARE(other.ask(u"size .tmp"_s), u"0"_s);
    other.ask(u"set n 3"_s);
    QCOMPARE(other.ask(u"disk n"_s), u"1"_s);
    other.ask(u"drain"_s);
    QTRY_COMPARE(other.ask(u"disk n"_s), u"3"_s);
}

void JsonUserDefaultsDiskTest::aReadOnlyFolderHarmsNothing()
{
    if (!OtherDefaults::mayMount())
        QSKIP("No mount namespaces here: the read-only folder was not tried.");
    const Setup s;
    JsonUserDefaults(s.path).setValue(u"n"_s, qint64(1));
    OtherDefaults other(
        s.path, u"mount --bind \"$folder\" \"$folder\" && mount -o remount,bind,ro \"$folder\""_s);
    QCOMPARE(other.ask(u"set n 2"_s), u"done"_s);
    QCOMPARE(other.ask(u"value n"_s), u"2"_s);
    QCOMPARE(other.ask(u"reopen"_s), u"done"_s);
    QCOMPARE(other.ask(u"value n"_s), u"1"_s);
    QCOMPARE(s.disk(u"n"_s), 1);
}

void JsonUserDefaultsDiskTest::aSizeLimitEndsNeitherFileNorProgram()
{
    const Setup s;
    OtherDefaults other(s.path);
    other.ask(u"set n 1"_s);
    QTRY_COMPARE(s.disk(u"n"_s), 1);
    other.ask(u"limit 4"_s);
    other.ask(u"set n 2"_s);
    QCOMPARE(other.ask(u"reopen"_s), u"done"_s);
    QCOMPARE(s.disk(u"n"_s), 1);
    other.ask(u"set n 3"_s);
    QCOMPARE(other.ask(u"value n"_s), u"3"_s);
    other.ask(u"limit 1000000"_s);
    QTRY_COMPARE(s.disk(u"n"_s), 3);
}

void JsonUserDefaultsDiskTest::aKeystrokeDoesNotWaitForAStoppedProcess()
{
    const Setup s;
    OtherDefaults other(s.path);
    JsonUserDefaults defaults(s.path);
    QCOMPARE(other.ask(u"lock"_s), u"locked"_s);
    ::kill(static_cast<pid_t>(other.pid()), SIGSTOP);
    QElapsedTimer timer;
    timer.start();
    for (qint64 n = 1; n <= 100; ++n)
        defaults.setValue(u"n"_s, n);
    const auto taken = timer.elapsed();
    ::kill(static_cast<pid_t>(other.pid()), SIGCONT);
    QVERIFY2(taken < 100, qPrintable(QString::number(taken)));
    QCOMPARE(defaults.integer(u"n"_s), 100);
    QCOMPARE(s.disk(u"n"_s), -1);
    other.ask(u"unlock"_s);
    QTRY_COMPARE(s.disk(u"n"_s), 100);
}

void JsonUserDefaultsDiskTest::quittingWaitsForAStoppedProcessABoundedTime()
{
    const Setup s;
    OtherDefaults other(s.path);
    QCOMPARE(other.ask(u"lock"_s), u"locked"_s);
    QElapsedTimer timer;
    timer.start();
    JsonUserDefaults(s.path).setValue(u"n"_s, qint64(1));
    QVERIFY2(timer.elapsed() < 1500, qPrintable(QString::number(timer.elapsed())));
}

void JsonUserDefaultsDiskTest::aChangeOnItsWayOutlivesAnEdit()
{
    const Setup s;
    OtherDefaults other(s.path);
    JsonUserDefaults defaults(s.path);
    QCOMPARE(other.ask(u"lock"_s), u"locked"_s);
    defaults.setValue(u"n"_s, qint64(1));
    QFile file(s.path);
    QVERIFY(file.open(QFile::WriteOnly));
    file.write("{\"n\": 5, \"m\": 5}");
    file.close();
    QTRY_COMPARE(defaults.integer(u"m"_s), 5);
    QCOMPARE(defaults.integer(u"n"_s), 1);
    other.ask(u"unlock"_s);
    QTRY_COMPARE(s.disk(u"n"_s), 1);
    QCOMPARE(s.disk(u"m"_s), 5);
}

void JsonUserDefaultsDiskTest::twoProcessesKeepEachOthersKeys()
{
    const Setup s;
    OtherDefaults one(s.path);
    OtherDefaults other(s.path);
    for (int n = 1; n <= 50; ++n) {
        one.ask(u"set a%1 %1"_s.arg(n));
        other.ask(u"set b%1 %1"_s.arg(n));
    }
    QTRY_COMPARE(s.disk(u"a50"_s), 50);
    QTRY_COMPARE(s.disk(u"b50"_s), 50);
    QCOMPARE(DefaultsFile(s.path).read()->size(), 100);
}

void JsonUserDefaultsDiskTest::anOtherProcessIsHeard()
{
    const Setup s;
    JsonUserDefaults defaults(s.path);
    OtherDefaults other(s.path);
    other.ask(u"set n 1"_s);
    QTRY_COMPARE(defaults.integer(u"n"_s), 1);
    other.ask(u"set n 2"_s);
    QTRY_COMPARE(defaults.integer(u"n"_s), 2);
}

QTEST_GUILESS_MAIN(JsonUserDefaultsDiskTest)
#include "JsonUserDefaultsDiskTest.moc"
