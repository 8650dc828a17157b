#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

static const auto program = QStringLiteral(CORVELLA_HELPERS_DIR "/shortcuts");
static const auto folder = u".local/share/corvella/shortcuts/"_s;

class ShortcutsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();

    void theFirstThatFitsIsRun_data();
    void theFirstThatFitsIsRun();
    void itIsFoundElsewhereByItsVeryName();
    void theDataFolderIsTheUsersChoice();
    void theStatusIsItsOwn();
    void itRunsAtHomeWithoutArgumentsAndInput();
    void aScriptWithoutInterpreterLineIsRunByTheShell();
    void whatCannotBeStartedIsSaid_data();
    void whatCannotBeStartedIsSaid();
    void whatIsNotExecutableIsSaid_data();
    void whatIsNotExecutableIsSaid();
    void onlyFilesCount();
    void anUnknownNameIsSaid_data();
    void anUnknownNameIsSaid();
    void namesThatLeadElsewhereAreRefused_data();
    void namesThatLeadElsewhereAreRefused();
    void theListIsOfExecutablesSorted();
    void anythingElseIsAnsweredWithTheUsage_data();
    void anythingElseIsAnsweredWithTheUsage();
    void theUsageCanBeAskedFor();

private:
    QString path(const QString& name) const { return m_home->filePath(name); }
    void write(const QString& name, const QByteArray& text, mode_t mode = 0700) const;
    // Says which one it is.
    void add(const QString& name) const;
    int run(const QString& name) { return start({ u"run"_s, name }); }
    int start(const QStringList& arguments);

    std::unique_ptr<QTemporaryDir> m_home;
    QByteArray m_printed;
    QByteArray m_said;
};

void ShortcutsTest::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    qputenv("HOME", m_home->path().toUtf8());
    qputenv("PATH", path(u"bin"_s).toUtf8() + ":bin::/usr/bin:/bin");
    qputenv("LC_ALL", "C");
    qunsetenv("XDG_DATA_HOME");
    QVERIFY(QDir(m_home->path()).mkpath(folder));
}

void ShortcutsTest::write(const QString& name, const QByteArray& text, mode_t mode) const
{
    QDir().mkpath(QFileInfo(path(name)).path());
    QFile file(path(name));
    if (!file.open(QFile::WriteOnly) || file.write(text) < 0)
        qFatal("No file to be had");
    file.close();
    chmod(QFile::encodeName(path(name)).constData(), mode);
}

void ShortcutsTest::add(const QString& name) const
{
    write(name, "#!/bin/sh\necho '" + name.toUtf8() + "'\n");
}

int ShortcutsTest::start(const QStringList& arguments)
{
    QProcess process;
    process.setWorkingDirectory(m_home->path());
    process.start(program, arguments);
    process.waitForFinished();
    m_printed = process.readAllStandardOutput();
    m_said = process.readAllStandardError();
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

void ShortcutsTest::theFirstThatFitsIsRun_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("found");
    QTest::newRow("itself") << QStringList { u"Deep work"_s } << u"Deep work"_s << u"Deep work"_s;
    QTest::newRow("itself before another case")
        << QStringList { u"MORNING"_s, u"Morning"_s } << u"Morning"_s << u"Morning"_s;
    QTest::newRow("another case") << QStringList { u"Morning"_s } << u"morNing"_s << u"Morning"_s;
    QTest::newRow("case of any language")
        << QStringList { u"ÜBUNG ΟΔΟΣ"_s } << u"übung οδος"_s << u"ÜBUNG ΟΔΟΣ"_s;
    QTest::newRow("case before extension")
        << QStringList { u"MORNING"_s, u"Morning.sh"_s } << u"Morning"_s << u"MORNING"_s;
    QTest::newRow("extension") << QStringList { u"Morning.sh"_s } << u"Morning"_s
                               << u"Morning.sh"_s;
    QTest::newRow("extension after a dot")
        << QStringList { u"v1.2.py"_s } << u"v1.2"_s << u"v1.2.py"_s;
    QTest::newRow("extension before both")
        << QStringList { u"MORNING.py"_s, u"Morning.sh"_s } << u"Morning"_s << u"Morning.sh"_s;
    QTest::newRow("both") << QStringList { u"Morning.sh"_s } << u"MORNING"_s << u"Morning.sh"_s;
    QTest::newRow("several extensions")
        << QStringList { u"a.sh"_s, u"a.py"_s, u"a.rb"_s } << u"a"_s << u"a.py"_s;
    QTest::newRow("several cases") << QStringList { u"aB"_s, u"Ab"_s } << u"ab"_s << u"Ab"_s;
    QTest::newRow("an option") << QStringList { u"--help"_s } << u"--help"_s << u"--help"_s;
    QTest::newRow("hidden") << QStringList { u".start"_s } << u".start"_s << u".start"_s;
}

void ShortcutsTest::theFirstThatFitsIsRun()
{
    QFETCH(QStringList, files);
    QFETCH(QString, name);
    QFETCH(QString, found);
    for (const auto& file : files)
        add(folder + file);
    QCOMPARE(run(name), 0);
    QCOMPARE(m_printed, (folder + found).toUtf8() + '\n');
}

void ShortcutsTest::itIsFoundElsewhereByItsVeryName()
{
    add(u"bin/backup"_s);
    QCOMPARE(run(u"backup"_s), 0);
    QCOMPARE(m_printed, "bin/backup\n");
    add(u".local/bin/backup"_s);
    QCOMPARE(run(u"backup"_s), 0);
    QCOMPARE(m_printed, ".local/bin/backup\n");
    QCOMPARE(run(u"Backup"_s), 1);
    add(folder + u"backup.sh"_s);
    QCOMPARE(run(u"backup"_s), 0);
    QCOMPARE(m_printed, folder.toUtf8() + "backup.sh\n");
    write(u".local/bin/backup"_s, {}, 0600);
    QVERIFY(QFile::remove(path(folder + u"backup.sh"_s)));
    QCOMPARE(run(u"backup"_s), 0);
    QCOMPARE(m_printed, "bin/backup\n");
}

void ShortcutsTest::theDataFolderIsTheUsersChoice()
{
    add(u"data/corvella/shortcuts/Morning"_s);
    qputenv("XDG_DATA_HOME", path(u"data"_s).toUtf8());
    QCOMPARE(run(u"Morning"_s), 0);
    qputenv("XDG_DATA_HOME", "data");
    QCOMPARE(run(u"Morning"_s), 1);
}

void ShortcutsTest::theStatusIsItsOwn()
{
    write(folder + u"three"_s, "#!/bin/sh\necho oops >&2\nexit 3\n");
    QCOMPARE(run(u"three"_s), 3);
    QCOMPARE(m_said, "oops\n");
    write(folder + u"killed"_s, "#!/bin/sh\nkill -KILL $$\n");
    QCOMPARE(run(u"killed"_s), -1);
}

void ShortcutsTest::itRunsAtHomeWithoutArgumentsAndInput()
{
    write(folder + u"where"_s, "#!/bin/sh\necho \"$0\" $#\npwd -P\nreadlink /proc/self/fd/0\n");
    QCOMPARE(run(u"where"_s), 0);
    QCOMPARE(m_printed,
        path(folder + u"where"_s).toUtf8() + " 0\n" + QDir(m_home->path()).canonicalPath().toUtf8()
            + "\n/dev/null\n");
}

void ShortcutsTest::aScriptWithoutInterpreterLineIsRunByTheShell()
{
    write(folder + u"bare"_s, "echo \"$0\" $#\n");
    QCOMPARE(run(u"bare"_s), 0);
    QCOMPARE(m_printed, path(folder + u"bare"_s).toUtf8() + " 0\n");
    write(folder + u"empty"_s, {});
    QCOMPARE(run(u"empty"_s), 0);
}

void ShortcutsTest::whatCannotBeStartedIsSaid_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("for another machine") << QByteArray("\x7f"
                                                       "ELF\0\0",
        6) << QByteArray("Exec format error");
    QTest::newRow("without its interpreter") << QByteArray(
        "#!/nonexistent\n") << QByteArray("the program named in its first line is missing");
}

void ShortcutsTest::whatCannotBeStartedIsSaid()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, reason);
    write(folder + u"broken"_s, text);
    QCOMPARE(run(u"broken"_s), 1);
    QCOMPARE(m_said, "~/" + folder.toUtf8() + "broken cannot be started: " + reason + ".\n");
}

void ShortcutsTest::whatIsNotExecutableIsSaid_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("typed");
    QTest::newRow("plain") << u"Plain.sh"_s << u"plain"_s << QByteArray("Plain.sh");
    QTest::newRow("quoted") << u"It's mine"_s << u"It's mine"_s << QByteArray("'It'\\''s mine'");
}

void ShortcutsTest::whatIsNotExecutableIsSaid()
{
    QFETCH(QString, file);
    QFETCH(QString, name);
    QFETCH(QByteArray, typed);
    write(folder + file, "#!/bin/sh\n", 0600);
    add(u"bin/"_s + name); // Not the one that is meant.
    QCOMPARE(run(name), 1);
    const auto start = "“" + name.toUtf8() + "” is not executable. To let it run: chmod +x ";
    QVERIFY2(m_said.startsWith(start), m_said);
    const auto command = m_said.sliced(start.size() - 9).trimmed();
    QVERIFY2(command.endsWith(typed) || typed.startsWith('\''), command);
    QCOMPARE(QProcess::execute(u"/bin/sh"_s, { u"-c"_s, QString::fromUtf8(command) }), 0);
    QCOMPARE(run(name), 0);
}

void ShortcutsTest::onlyFilesCount()
{
    const QDir shortcuts(path(folder));
    const auto name = [&](const char* file) {
        return QFile::encodeName(shortcuts.filePath(QString::fromLatin1(file)));
    };
    QVERIFY(shortcuts.mkdir(u"one"_s));
    QCOMPARE(mkfifo(name("two").constData(), 0700), 0);
    QCOMPARE(symlink("three", name("three").constData()), 0);
    QCOMPARE(symlink("nowhere", name("four").constData()), 0);
    QCOMPARE(symlink("/dev/null", name("five").constData()), 0);
    for (const auto& file : { u"one"_s, u"two"_s, u"three"_s, u"four"_s, u"five"_s }) {
        QCOMPARE(run(file), 1);
        QVERIFY2(m_said.startsWith("No shortcut is named"), m_said);
    }
    add(u"elsewhere"_s);
    QCOMPARE(symlink("../../../../elsewhere", name("six").constData()), 0);
    QCOMPARE(run(u"six"_s), 0);
    QCOMPARE(m_printed, "elsewhere\n");
}

void ShortcutsTest::anUnknownNameIsSaid_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("shown");
    QTest::newRow("short") << u"Deep work"_s << QByteArray("Deep work");
    QTest::newRow("control characters") << u"a\x1b[1m\nb\u0085"_s << QByteArray("a�[1m�b�");
    QTest::newRow("huge") << QString(60'000, u'ä') << QByteArray("ä").repeated(59) + "…";
    QTest::newRow("an option") << u"-a"_s << QByteArray("-a");
}

void ShortcutsTest::anUnknownNameIsSaid()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, shown);
    QCOMPARE(run(name), 1);
    QCOMPARE(m_said,
        "No shortcut is named “" + shown
            + "”. To make one, put an executable file of that name into "
              "~/.local/share/corvella/shortcuts.\n");
}

void ShortcutsTest::namesThatLeadElsewhereAreRefused_data()
{
    QTest::addColumn<QString>("name");
    for (const auto& name : { QString(), u"."_s, u".."_s, u"../start"_s, u"/bin/true"_s })
        QTest::newRow(name.isEmpty() ? "empty" : name.toUtf8().constData()) << name;
}

void ShortcutsTest::namesThatLeadElsewhereAreRefused()
{
    QFETCH(QString, name);
    add(u".local/share/corvella/start"_s);
    QCOMPARE(run(name), 1);
    QCOMPARE(m_said, "“" + name.toUtf8() + "” cannot be the name of a shortcut.\n");
}

void ShortcutsTest::theListIsOfExecutablesSorted()
{
    QCOMPARE(start({ u"list"_s }), 0);
    QCOMPARE(m_printed, QByteArray());
    for (const auto& file : { u"b.sh"_s, u"Zettel"_s, u"two\nlines"_s, u".hidden"_s })
        add(folder + file);
    write(folder + u"plain"_s, {}, 0600);
    const QByteArray latin = QFile::encodeName(path(folder)) + "\xe4";
    QCOMPARE(symlink("b.sh", latin.constData()), 0);
    QVERIFY(QDir(path(folder)).mkdir(u"folder"_s));
    QCOMPARE(start({ u"list"_s }), 0);
    ::unlink(latin.constData()); // Qt could not remove it with the folder.
    QCOMPARE(m_printed, "Zettel\nb.sh\ntwo�lines\n�\n");
}

void ShortcutsTest::anythingElseIsAnsweredWithTheUsage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("nothing") << QStringList();
    QTest::newRow("no name") << QStringList { u"run"_s };
    QTest::newRow("two names") << QStringList { u"run"_s, u"a"_s, u"b"_s };
    QTest::newRow("a name only") << QStringList { u"Morning"_s };
    QTest::newRow("list of something") << QStringList { u"list"_s, u"a"_s };
}

void ShortcutsTest::anythingElseIsAnsweredWithTheUsage()
{
    QFETCH(QStringList, arguments);
    QCOMPARE(start(arguments), 2);
    QVERIFY2(m_said.startsWith("Usage: shortcuts run NAME\n"), m_said);
}

void ShortcutsTest::theUsageCanBeAskedFor()
{
    QCOMPARE(start({ u"--help"_s }), 0);
    QVERIFY2(m_printed.startsWith("Usage: shortcuts run NAME\n"), m_printed);
    QCOMPARE(m_said, QByteArray());
}

QTEST_GUILESS_MAIN(ShortcutsTest)
#include "ShortcutsTest.moc"
