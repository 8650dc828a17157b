#include "App/Platform/Linux/Defaults/JsonUserDefaults.h"
#include "App/Platform/Linux/Defaults/DefaultsFile.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

struct Setup {
    QTemporaryDir folder;
    QString path = folder.filePath(u"defaults.json"_s);

    void write(const QString& name, const QByteArray& bytes) const
    {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QFile::WriteOnly));
        file.write(bytes);
    }

    void write(const QByteArray& bytes) const { write(u"defaults.json"_s, bytes); }

    QByteArray read(const QString& name) const
    {
        QFile file(folder.filePath(name));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray("no such file");
    }

    QByteArray disk(const QString& key) const
    {
        const auto entries = DefaultsFile(path).read();
        return entries ? entries->value(key) : QByteArray();
    }

    bool has(const QString& name) const { return QFileInfo::exists(folder.filePath(name)); }
};

qsizetype threads()
{
    return QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

}

class JsonUserDefaultsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_threadsAtRest = threads(); }
    void nothingIsStoredAtFirst();
    void everyTypeOutlivesTheProgram();
    void aChangeIsReadableAndAnnouncedAtOnce();
    void theSameValueAgainIsNoChange();
    void aChangeReachesTheDiskWithoutQuitting();
    void theThreadEndsWithItsWork();
    void fileAndFolderAreTheUsersOwn();
    void aDamagedFileIsKeptAside_data();
    void aDamagedFileIsKeptAside();
    void aDamagedFileFallsBackOnTheLastGoodCopy();
    void badFilesNeverReplaceEachOther();
    void aLostFileFallsBackOnTheLastGoodCopy();
    void noOrdinaryFileIsSetAsideAtOnce_data();
    void noOrdinaryFileIsSetAsideAtOnce();
    void aHugeFileIsSetAsideUnread();
    void aLauncherFullOfButtonsIsKept();
    void aValueTooLargeStaysInMemory();
    void contentOfOthersIsKept();
    void anEditByRenameIsHeard();
    void anEditInPlaceIsHeard();
    void anEditThatChangesNothingIsNotAnnounced();
    void aHalfWrittenEditChangesNothing();
    void aRemovedKeyIsGone();
    void aRemovedFolderComesBack();
    void aLinkIsWrittenThrough();
    void aLinkToNowhereIsFilledIn();
    void anEditBehindALinkIsHeard();

private:
    qsizetype m_threadsAtRest = 0;
};

void JsonUserDefaultsTest::nothingIsStoredAtFirst()
{
    const Setup s;
    const JsonUserDefaults defaults(s.path);
    QVERIFY(!defaults.value(u"n"_s));
    QVERIFY(!s.has(u"defaults.json"_s));
}

void JsonUserDefaultsTest::everyTypeOutlivesTheProgram()
{
    const Setup s;
    {
        JsonUserDefaults defaults(s.path);
        defaults.setValue(u"integer"_s, qint64(25));
        defaults.setValue(u"real"_s, 25.0);
        defaults.setValue(u"boolean"_s, false);
        defaults.setValue(u"text"_s, u"Lärm"_s);
        defaults.setValue(u"data"_s, QByteArray("[]"));
    }
    const JsonUserDefaults defaults(s.path);
    QCOMPARE(defaults.integer(u"integer"_s), 25);
    QVERIFY(!defaults.integer(u"real"_s));
    QCOMPARE(defaults.real(u"real"_s), 25.0);
    QCOMPARE(defaults.boolean(u"boolean"_s), false);
    QCOMPARE(defaults.text(u"text"_s), u"Lärm"_s);
    QCOMPARE(defaults.data(u"data"_s), QByteArray("[]"));
}

void JsonUserDefaultsTest::aChangeIsReadableAndAnnouncedAtOnce()
{
    const Setup s;
    JsonUserDefaults defaults(s.path);
    QList<qint64> seen;
    connect(&defaults, &UserDefaults::changed, this,
        [&] { seen << defaults.integer(u"n"_s).value_or(-1); });
    defaults.setValue(u"n"_s, qint64(1));
    QCOMPARE(seen, QList<qint64> { 1 });
}

void JsonUserDefaultsTest::theSameValueAgainIsNoChange()
{
    const Setup s;
    JsonUserDefaults defaults(s.path);
    const QSignalSpy spy(&defaults, &UserDefaults::changed);
    defaults.setValue(u"n"_s, qint64(1));
    defaults.setValue(u"n"_s, qint64(1));
    QCOMPARE(spy.size(), 1);
    defaults.setValue(u"n"_s, 1.0);
    QCOMPARE(spy.size(), 2);
}

void JsonUserDefaultsTest::aChangeReachesTheDiskWithoutQuitting()
{
    const Setup s;
    JsonUserDefaults defaults(s.path);
    const QSignalSpy spy(&defaults, &UserDefaults::changed);
    defaults.setValue(u"n"_s, qint64(1));
    defaults.setValue(u"n"_s, qint64(2));
    QTRY_COMPARE(s.disk(u"n"_s), "2");
    QTRY_COMPARE(threads(), m_threadsAtRest);
    QCoreApplication::processEvents();
    QCOMPARE(spy.size(), 2);
}

void JsonUserDefaultsTest::theThreadEndsWithItsWork()
{
    const Setup s;
    JsonUserDefaults defaults(s.path);
    QTRY_COMPARE(threads(), m_threadsAtRest);
    defaults.setValue(u"n"_s, qint64(1));
    QTRY_COMPARE(s.disk(u"n"_s), "1");
    QTRY_COMPARE(threads(), m_threadsAtRest);
}

void JsonUserDefaultsTest::fileAndFolderAreTheUsersOwn()
{
    const Setup s;
    const auto path = s.folder.filePath(u"config/corvella/defaults.json"_s);
    JsonUserDefaults(path).setValue(u"n"_s, qint64(1));
    struct stat status { };
    QCOMPARE(stat(QFile::encodeName(path).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777U, 0600U);
    QCOMPARE(stat(QFile::encodeName(QFileInfo(path).path()).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777U, 0700U);
}

void JsonUserDefaultsTest::aDamagedFileIsKeptAside_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("corrupt") << QByteArray("{\"n\": 1, \"text\": \"cut o");
    QTest::newRow("binary") << QByteArray("\x7f\x00\xff\xfe\x01{}", 7);
    QTest::newRow("zeros") << QByteArray(4096, '\0');
    QTest::newRow("another kind of JSON") << QByteArray("[1, 2, 3]");
}

void JsonUserDefaultsTest::aDamagedFileIsKeptAside()
{
    QFETCH(QByteArray, bytes);
    const Setup s;
    s.write(bytes);
    JsonUserDefaults defaults(s.path);
    QVERIFY(!defaults.value(u"n"_s));
    QTRY_COMPARE(s.read(u"defaults.json.bad"_s), bytes);
    defaults.setValue(u"n"_s, qint64(2));
    QTRY_COMPARE(s.disk(u"n"_s), "2");
}

void JsonUserDefaultsTest::aDamagedFileFallsBackOnTheLastGoodCopy()
{
    const Setup s;
    JsonUserDefaults(s.path).setValue(u"n"_s, qint64(1));
    s.write("{\"n\": ");
    const JsonUserDefaults defaults(s.path);
    QCOMPARE(defaults.integer(u"n"_s), 1);
    QTRY_COMPARE(s.disk(u"n"_s), "1");
    QCOMPARE(s.read(u"defaults.json.bad"_s), "{\"n\": ");
}

void JsonUserDefaultsTest::badFilesNeverReplaceEachOther()
{
    const Setup s;
    for (const char* bad : { "first", "second", "third" }) {
        s.write(bad);
        const JsonUserDefaults defaults(s.path);
        QTRY_VERIFY(!s.has(u"defaults.json"_s));
    }
    QCOMPARE(s.read(u"defaults.json.bad"_s), "first");
    QCOMPARE(s.read(u"defaults.json.bad-1"_s), "second");
    QCOMPARE(s.read(u"defaults.json.bad-2"_s), "third");
}

void JsonUserDefaultsTest::aLostFileFallsBackOnTheLastGoodCopy()
{
    const Setup s;
    JsonUserDefaults(s.path).setValue(u"n"_s, qint64(1));
    QVERIFY(QFile::remove(s.path));
    JsonUserDefaults defaults(s.path);
    QCOMPARE(defaults.integer(u"n"_s), 1);
    defaults.setValue(u"m"_s, qint64(2));
    QTRY_COMPARE(s.disk(u"m"_s), "2");
    QCOMPARE(s.disk(u"n"_s), "1");
}

void JsonUserDefaultsTest::noOrdinaryFileIsSetAsideAtOnce_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("pipe") << u"pipe"_s;
    QTest::newRow("folder") << u"folder"_s;
    QTest::newRow("link to a device") << u"/dev/null"_s;
    QTest::newRow("link to itself") << u"defaults.json"_s;
}

void JsonUserDefaultsTest::noOrdinaryFileIsSetAsideAtOnce()
{
    QFETCH(QString, kind);
    const Setup s;
    const auto name = QFile::encodeName(s.path);
    if (kind == u"pipe")
        QCOMPARE(mkfifo(name.constData(), 0600), 0);
    else if (kind == u"folder")
        QVERIFY(QDir().mkdir(s.path));
    else
        QCOMPARE(symlink(QFile::encodeName(kind).constData(), name.constData()), 0);
    QElapsedTimer timer;
    timer.start();
    JsonUserDefaults defaults(s.path);
    QVERIFY(timer.elapsed() < 150);
    defaults.setValue(u"n"_s, qint64(1));
    QTRY_COMPARE(s.disk(u"n"_s), "1");
    struct stat status { };
    QCOMPARE(lstat((name + ".bad").constData(), &status), 0);
}

void JsonUserDefaultsTest::aHugeFileIsSetAsideUnread()
{
    const Setup s;
    s.write("{}");
    QVERIFY(QFile::resize(s.path, 100 * 1024 * 1024));
    QElapsedTimer timer;
    timer.start();
    const JsonUserDefaults defaults(s.path);
    QVERIFY(timer.elapsed() < 150);
    QTRY_VERIFY(s.has(u"defaults.json.bad"_s));
}

void JsonUserDefaultsTest::aLauncherFullOfButtonsIsKept()
{
    const Setup s;
    // Ten thousand, of what JSON takes for one with long names.
    const auto buttons = QByteArray(600, 'b').repeated(10000);
    {
        JsonUserDefaults defaults(s.path);
        defaults.setValue(u"n"_s, qint64(1));
        defaults.setValue(u"buttons"_s, buttons);
        defaults.setValue(u"n"_s, qint64(2));
    }
    const JsonUserDefaults defaults(s.path);
    QCOMPARE(defaults.data(u"buttons"_s), buttons);
    QCOMPARE(defaults.integer(u"n"_s), 2);
}

void JsonUserDefaultsTest::aValueTooLargeStaysInMemory()
{
    const Setup s;
    JsonUserDefaults defaults(s.path);
    const QByteArray large(DefaultsFile::maximumSize, 'x');
    defaults.setValue(u"large"_s, large);
    defaults.setValue(u"n"_s, qint64(1));
    QTRY_COMPARE(s.disk(u"n"_s), "1");
    QVERIFY(s.disk(u"large"_s).isEmpty());
    s.write("{\"n\": 2}");
    QTRY_COMPARE(defaults.integer(u"n"_s), 2);
    QCOMPARE(defaults.data(u"large"_s), large);
}

void JsonUserDefaultsTest::contentOfOthersIsKept()
{
    const Setup s;
    s.write("{\"later\": [null, 1.50], \"date\": {\"date\": \"x\"}, \"n\": 1}");
    JsonUserDefaults(s.path).setValue(u"n"_s, qint64(2));
    QCOMPARE(s.disk(u"later"_s), "[null, 1.50]");
    QCOMPARE(s.disk(u"date"_s), "{\"date\": \"x\"}");
    QCOMPARE(s.disk(u"n"_s), "2");
}

void JsonUserDefaultsTest::anEditByRenameIsHeard()
{
    const Setup s;
    const JsonUserDefaults defaults(s.path);
    const QSignalSpy spy(&defaults, &UserDefaults::changed);
    for (int n = 1; n <= 5; ++n) {
        s.write(u"new"_s, "{\"n\": " + QByteArray::number(n) + "}");
        QCOMPARE(::rename(QFile::encodeName(s.folder.filePath(u"new"_s)).constData(),
                     QFile::encodeName(s.path).constData()),
            0);
        QTRY_COMPARE(defaults.integer(u"n"_s), n);
    }
    QCOMPARE(spy.size(), 5);
}

void JsonUserDefaultsTest::anEditInPlaceIsHeard()
{
    const Setup s;
    JsonUserDefaults defaults(s.path);
    defaults.setValue(u"n"_s, qint64(1));
    QTRY_COMPARE(s.disk(u"n"_s), "1");
    QSignalSpy spy(&defaults, &UserDefaults::changed);
    s.write("{\"n\": 2}");
    QTRY_COMPARE(defaults.integer(u"n"_s), 2);
    QCOMPARE(spy.size(), 1);
}

void JsonUserDefaultsTest::anEditThatChangesNothingIsNotAnnounced()
{
    const Setup s;
    s.write("{\"n\": 1, \"last\": 0}");
    const JsonUserDefaults defaults(s.path);
    QSignalSpy spy(&defaults, &UserDefaults::changed);
    s.write("{ \"last\":0,\n\"n\":1, \"unknown\": null }");
    s.write(u"new"_s, "{\"n\": 1, \"last\": 1}");
    QTRY_COMPARE(threads(), m_threadsAtRest);
    QVERIFY(QFile::remove(s.path));
    QVERIFY(QFile::rename(s.folder.filePath(u"new"_s), s.path));
    QTRY_COMPARE(defaults.integer(u"last"_s), 1);
    QCOMPARE(spy.size(), 1);
}

void JsonUserDefaultsTest::aHalfWrittenEditChangesNothing()
{
    const Setup s;
    s.write("{\"n\": 1}");
    const JsonUserDefaults defaults(s.path);
    QSignalSpy spy(&defaults, &UserDefaults::changed);
    QFile file(s.path);
    QVERIFY(file.open(QFile::WriteOnly | QFile::Unbuffered));
    file.write("{\"n\":");
    file.close();
    FolderWatch watch;
    QSignalSpy events(&watch, &FolderWatch::changed);
    watch.watch(s.folder.path());
    QVERIFY(file.open(QFile::Append | QFile::Unbuffered));
    file.write(" ");
    file.close();
    QTRY_VERIFY(!events.isEmpty());
    QTRY_COMPARE(threads(), m_threadsAtRest);
    QCOMPARE(defaults.integer(u"n"_s), 1);
    QVERIFY(s.has(u"defaults.json"_s));
    QVERIFY(file.open(QFile::Append));
    file.write("2}");
    file.close();
    QTRY_COMPARE(defaults.integer(u"n"_s), 2);
    QCOMPARE(spy.size(), 1);
}

void JsonUserDefaultsTest::aRemovedKeyIsGone()
{
    const Setup s;
    s.write("{\"n\": 1, \"m\": 1}");
    const JsonUserDefaults defaults(s.path);
    s.write("{\"m\": 1}");
    QTRY_VERIFY(!defaults.value(u"n"_s));
    QCOMPARE(defaults.integer(u"m"_s), 1);
}

void JsonUserDefaultsTest::aRemovedFolderComesBack()
{
    const Setup s;
    const auto path = s.folder.filePath(u"config/defaults.json"_s);
    JsonUserDefaults defaults(path);
    defaults.setValue(u"n"_s, qint64(1));
    QTRY_VERIFY(DefaultsFile(path).readLastGood());
    QTRY_COMPARE(threads(), m_threadsAtRest);
    QVERIFY(QDir(QFileInfo(path).path()).removeRecursively());
    defaults.setValue(u"m"_s, qint64(2));
    QTRY_VERIFY(DefaultsFile(path).read());
    QCOMPARE(DefaultsFile(path).read()->keys(), QStringList({ u"m"_s, u"n"_s }));
    QTRY_COMPARE(threads(), m_threadsAtRest);
    QCoreApplication::processEvents();
    QFile file(path);
    QVERIFY(file.open(QFile::WriteOnly));
    file.write("{\"n\": 3}");
    file.close();
    QTRY_COMPARE(defaults.integer(u"n"_s), 3);
}

void JsonUserDefaultsTest::aLinkIsWrittenThrough()
{
    const Setup s;
    QVERIFY(QDir(s.folder.path()).mkdir(u"dotfiles"_s));
    s.write(u"dotfiles/mine.json"_s, "{\"n\": 1}");
    QCOMPARE(symlink("dotfiles/mine.json", QFile::encodeName(s.path).constData()), 0);
    {
        JsonUserDefaults defaults(s.path);
        QCOMPARE(defaults.integer(u"n"_s), 1);
        defaults.setValue(u"n"_s, qint64(2));
    }
    QVERIFY(QFileInfo(s.path).isSymLink());
    QVERIFY(s.read(u"dotfiles/mine.json"_s).contains("\"n\": 2"));
}

void JsonUserDefaultsTest::aLinkToNowhereIsFilledIn()
{
    const Setup s;
    QCOMPARE(symlink("dotfiles/mine.json", QFile::encodeName(s.path).constData()), 0);
    JsonUserDefaults(s.path).setValue(u"n"_s, qint64(1));
    QVERIFY(QFileInfo(s.path).isSymLink());
    QVERIFY(s.read(u"dotfiles/mine.json"_s).contains("\"n\": 1"));
}

void JsonUserDefaultsTest::anEditBehindALinkIsHeard()
{
    const Setup s;
    QVERIFY(QDir(s.folder.path()).mkdir(u"dotfiles"_s));
    s.write(u"dotfiles/mine.json"_s, "{\"n\": 1}");
    QCOMPARE(symlink("dotfiles/mine.json", QFile::encodeName(s.path).constData()), 0);
    const JsonUserDefaults defaults(s.path);
    s.write(u"dotfiles/mine.json"_s, "{\"n\": 2}");
    QTRY_COMPARE(defaults.integer(u"n"_s), 2);
}

QTEST_GUILESS_MAIN(JsonUserDefaultsTest)
#include "JsonUserDefaultsTest.moc"
