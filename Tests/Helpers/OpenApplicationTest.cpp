#include "Tests/Support/DesktopEntries.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/RunHelper.h"

#include <QElapsedTimer>
#include <QStandardPaths>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

static const auto helper = QStringLiteral(CORVELLA_HELPERS_DIR "/open");
static const auto busVariable = u"DBUS_SESSION_BUS_ADDRESS"_s;

// A program that runs until the test has looked at it.
struct Started {
    explicit Started(pid_t number)
        : pid(number)
    {
    }
    ~Started()
    {
        if (pid > 0)
            ::kill(pid, SIGKILL);
    }
    Started(const Started&) = delete;
    Started& operator=(const Started&) = delete;

    QString path(const QString& name) const { return u"/proc/%1/"_s.arg(pid) + name; }
    QString link(const QString& name) const { return QFile::symLinkTarget(path(name)); }

    pid_t pid;
};

class OpenApplicationTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_user = std::make_unique<DesktopEntries>(); }

    void itIsStartedByWhatPeopleCallIt_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("program");
        QTest::newRow("name") << u"Pen"_s << u"pen"_s;
        QTest::newRow("localized") << u" füller "_s << u"pen"_s;
        QTest::newRow("id") << u"pen.desktop"_s << u"pen"_s;
        QTest::newRow("beginning") << u"Fül"_s << u"pen"_s;
        QTest::newRow("in a folder") << u"inks-red"_s << u"ink"_s;
        QTest::newRow("not shown") << u"Brush"_s << u"brush"_s;
        QTest::newRow("of another desktop") << u"chalk"_s << u"chalk"_s;
        QTest::newRow("browser") << u"Safari"_s << u"browser"_s;
    }

    void itIsStartedByWhatPeopleCallIt()
    {
        QFETCH(QString, name);
        QFETCH(QString, program);
        m_user->add(u"pen"_s, "Name=Pen\nName[de]=Füller\n");
        m_user->add(u"penknife"_s, "Name=Penknife\n");
        m_user->add(u"ink"_s, "NoDisplay=true\n");
        m_user->write(u"data/applications/inks/red.desktop"_s,
            "[Desktop Entry]\nType=Application\nName=Red\nExec=ink\n");
        m_user->add(u"brush"_s, "Name=Brush\nNoDisplay=true\n");
        m_user->add(u"chalk"_s, "Name=Chalk\nOnlyShowIn=KDE;\n");
        m_user->add(u"browser"_s);
        m_user->choose(u"browser"_s, "https");
        QCOMPARE(run({ u"-a"_s, name }, { { u"LC_ALL"_s, u"de_DE.UTF-8"_s } }), 0);
        QTRY_COMPARE(m_user->arguments(program), QByteArray("\n"));
        QCOMPARE(m_said, QByteArray());
    }

    void whatIsDeletedOrMissingIsNotThere()
    {
        m_user->add(u"pen"_s, "Name=Pen\nHidden=true\n");
        m_user->write(u"none/applications/pen.desktop"_s,
            "[Desktop Entry]\nType=Application\nName=Pen\nExec=pen\n");
        m_user->add(u"pencil"_s, "Name=Pencil\nTryExec=/nonexistent/pencil\n");
        m_user->add(u"pennant"_s, "Name=Pennant\nExec=/nonexistent/pennant\n");
        m_user->add(u"penalty"_s, "Name=Penalty\nType=Link\n");
        m_user->add(u"pending"_s, "Name=Pending\nExec=\"pending\n");
        QCOMPARE(run({ u"-a"_s, u"Pen"_s }), 1);
        QCOMPARE(m_said, QByteArray("Unable to find an application named “Pen”.\n"));
    }

    // Whoever reads what the helper says gets to the end of it while the program runs.
    void itLivesOnByItself()
    {
        const auto kept = m_user->path(u"kept"_s);
        m_user->add(u"pen"_s, {}, "echo $$ >" + kept.toUtf8() + "\nexec sleep 60\n");
        const auto end = runHelper(u"sh"_s,
            { u"-c"_s, u"\"$@\" 7<&0 2>&1 >/dev/null | cat >&2"_s, u"sh"_s, helper, u"-a"_s,
                u"pen"_s });
        QCOMPARE(end.status, 0);
        QTRY_VERIFY(read(kept).endsWith('\n'));
        const Started program(read(kept).toInt());
        QTRY_COMPARE(program.link(u"exe"_s),
            QFileInfo(QStandardPaths::findExecutable(u"sleep"_s)).canonicalFilePath());
        QCOMPARE(::getsid(program.pid), program.pid);
        QCOMPARE(program.link(u"cwd"_s), QFileInfo(m_user->path()).canonicalFilePath());
        const QStringList files { u"0"_s, u"1"_s, u"2"_s };
        QCOMPARE(QDir(program.path(u"fd"_s)).entryList(QDir::System | QDir::Files), files);
        for (const auto& file : files)
            QCOMPARE(program.link(u"fd/"_s + file), u"/dev/null"_s);
    }

    void itGetsNoSignalsOfOurs()
    {
        const auto status = m_user->path(u"status"_s);
        m_user->add(u"pen"_s);
        m_user->write(u"bin/pen"_s,
            "#!/bin/sh\nexec grep -E 'Sig(Blk|Ign)' /proc/self/status >" + status.toUtf8() + '\n');
        const auto end = runHelper(u"env"_s,
            { u"--block-signal=TERM"_s, u"--ignore-signal=INT,PIPE,USR1"_s, helper, u"-a"_s,
                u"pen"_s });
        QCOMPARE(end.status, 0);
        QTRY_COMPARE(read(status).count('\n'), 2);
        const auto lines = read(status).split('\n');
        QCOMPARE(lines.at(0), QByteArray("SigBlk:\t0000000000000000"));
        // Two belong to the C library, which ignores them in all that it starts.
        const auto ignored = lines.at(1).mid(8).toULongLong(nullptr, 16);
        QCOMPARE(ignored & ~0x180000000ULL, 0ULL);
    }

    void itRunsInTheFolderOfItsEntry()
    {
        const auto kept = m_user->path(u"kept"_s);
        m_user->add(u"pen"_s, "Path=" + m_user->path(u"bin"_s).toUtf8() + '\n',
            "pwd -P >" + kept.toUtf8() + '\n');
        m_user->add(u"ink"_s, "Path=/nonexistent\n", "pwd -P >" + kept.toUtf8() + '\n');
        QCOMPARE(run({ u"-a"_s, u"pen"_s }), 0);
        const auto home = QFileInfo(m_user->path()).canonicalFilePath().toUtf8();
        QTRY_COMPARE(read(kept), home + "/bin\n");
        QCOMPARE(run({ u"-a"_s, u"ink"_s }), 0);
        QTRY_COMPARE(read(kept), home + '\n');
    }

    void aScriptNeedNotSayWhatItIsWrittenIn()
    {
        m_user->add(u"pen"_s);
        m_user->write(u"bin/pen"_s, "echo \"$# $1\" >" + m_user->path(u"kept"_s).toUtf8() + '\n');
        m_user->write(u"data/applications/pen.desktop"_s,
            "[Desktop Entry]\nType=Application\nName=A Pen\nExec=pen %c\n");
        QCOMPARE(run({ u"-a"_s, u"pen"_s }), 0);
        QTRY_COMPARE(read(m_user->path(u"kept"_s)), QByteArray("1 A Pen\n"));
    }

    void aProgramInATerminalIsRunByTheTerminal_data()
    {
        QTest::addColumn<QString>("terminal");
        QTest::addColumn<QByteArray>("desktop");
        QTest::addColumn<QByteArray>("arguments");
        QTest::newRow("any") << u"xdg-terminal-exec"_s << QByteArray("XFCE")
                             << QByteArray("edit A Pen\n");
        QTest::newRow("XFCE") << u"xfce4-terminal"_s << QByteArray("XFCE")
                              << QByteArray("-x edit A Pen\n");
        QTest::newRow("KDE") << u"org.kde.konsole"_s << QByteArray("KDE")
                             << QByteArray("-e edit A Pen\n");
    }

    void aProgramInATerminalIsRunByTheTerminal()
    {
        QFETCH(QString, terminal);
        QFETCH(QByteArray, desktop);
        QFETCH(QByteArray, arguments);
        const auto standard = u"xdg-terminal-exec"_s;
        if (terminal != standard && !QStandardPaths::findExecutable(standard).isEmpty())
            QSKIP("There is a terminal for all desktops here: none of one desktop was tried");
        m_user->add(terminal, "Categories=TerminalEmulator;\n");
        m_user->add(u"edit"_s, "Name=A Pen\nExec=edit %f %c\nTerminal=true\n");
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        QCOMPARE(run({ u"-a"_s, u"edit"_s }), 0);
        QTRY_COMPARE(m_user->arguments(terminal), arguments);
    }

    void itIsStartedByAMessage()
    {
        addActivatable("false");
        const PrivateBus bus;
        QCOMPARE(run({ u"-a"_s, u"org.corvella.Pen"_s },
                     { { busVariable, QString::fromUtf8(bus.address()) } }),
            0);
        QTRY_COMPARE(read(m_user->path(u"kept"_s)), QByteArray("activated\n"));
    }

    void aMessageThatIsRefusedIsAnError()
    {
        addActivatable("false", " 'There is no ink'");
        const PrivateBus bus;
        QCOMPARE(
            run({ u"-a"_s, u"Pen"_s }, { { busVariable, QString::fromUtf8(bus.address()) } }), 1);
        QCOMPARE(m_said, QByteArray("“Pen” could not be started: There is no ink\n"));
    }

    void whereNobodyTakesTheMessageTheProgramIsStarted_data()
    {
        QTest::addColumn<bool>("isBusThere");
        QTest::addColumn<bool>("hangs");
        QTest::newRow("no bus") << false << false;
        QTest::newRow("a bus without it") << true << false;
        QTest::newRow("a bus that hangs") << true << true;
    }

    void whereNobodyTakesTheMessageTheProgramIsStarted()
    {
        QFETCH(bool, isBusThere);
        QFETCH(bool, hangs);
        m_user->add(u"org.corvella.Pen"_s, "DBusActivatable=true\n");
        PrivateBus bus;
        QVERIFY(!hangs || bus.hang());
        const auto address = isBusThere ? bus.address() : QByteArray("unix:path=/nonexistent");
        QCOMPARE(run({ u"-a"_s, u"org.corvella.Pen"_s },
                     { { busVariable, QString::fromUtf8(address) } }),
            0);
        QTRY_COMPARE(m_user->arguments(u"org.corvella.Pen"_s), QByteArray("\n"));
    }

    void whatDoesNotStartIsAnError()
    {
        m_user->add(u"pen"_s, "Name=Pen\n");
        m_user->write(u"bin/pen"_s, "#!/nonexistent/language\n");
        QCOMPARE(run({ u"-a"_s, u"pen"_s }), 1);
        QCOMPARE(m_said, QByteArray("“Pen” could not be started: No such file or directory\n"));
    }

    void aNameThatNothingHasIsAnError()
    {
        m_user->add(u"firefox"_s, "Name=Firefox\n");
        QCOMPARE(run({ u"-a"_s, u"Fierfox"_s }), 1);
        QCOMPARE(m_said,
            QByteArray("Unable to find an application named “Fierfox”. Did you mean “Firefox”?\n"));
    }

    void noNameDoesHarm_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("help") << QByteArray("--help");
        QTest::newRow("option") << QByteArray("-a");
        QTest::newRow("lines") << QByteArray("a\nb\r\n");
        QTest::newRow("controls") << QByteArray("\x1b]0;title\x07\x7f\x01");
        QTest::newRow("no UTF-8") << QByteArray("\xff\xfe\xed\xa0\x80");
        QTest::newRow("long") << QByteArray(100'000, 'x');
        QTest::newRow("shell") << QByteArray("$(touch x); `y` && \"z\" %s%n");
    }

    void noNameDoesHarm()
    {
        QFETCH(QByteArray, name);
        m_user->add(u"editor"_s, "Name=Editor\n");
        m_user->write(u"name"_s, name);
        // QProcess would hand on its own reading of bytes that are no text.
        const auto end = runHelper(u"sh"_s,
            { u"-c"_s, u"exec \"$0\" -a \"$(cat \"$1\")\""_s, helper, m_user->path(u"name"_s) });
        QCOMPARE(end.status, 1);
        QVERIFY(end.said.startsWith("Unable to find an application "));
        QVERIFY2(end.said.size() < 300, end.said);
        QCOMPARE(end.said.count('\n'), 1);
        QVERIFY(std::ranges::none_of(end.said.chopped(1),
            [](char each) { return (each >= 0 && each < ' ') || each == '\x7f'; }));
        QVERIFY(QString::fromUtf8(end.said).toUtf8() == end.said);
    }

    void noFolderDoesHarm()
    {
        const auto folder = m_user->path(u"data/applications/"_s);
        m_user->add(u"pen"_s, "Name=Pen\n");
        for (int count = 0; count < 2000; ++count)
            m_user->write(u"data/applications/other-%1.desktop"_s.arg(count),
                "[Desktop Entry]\nType=Application\nName=Other\nExec=pen %u\n");
        const QByteArray start("[Desktop Entry]\nType=Application\nExec=pen\nName=");
        m_user->write(u"data/applications/huge.desktop"_s, start + QByteArray(10'000'000, 'x'));
        m_user->write(u"data/applications/long.desktop"_s, start + QByteArray(900'000, 'x'));
        m_user->write(u"data/applications/odd.desktop"_s, start + "Pen\xff\n[[[\n=\n\0\n");
        m_user->write(u"data/applications/none.desktop"_s, {});
        QVERIFY(QDir().mkpath(folder + u"folder.desktop"_s));
        QVERIFY(QDir().mkpath(folder + u"loops/deep"_s));
        for (const auto& link : { u"loops/l1"_s, u"loops/l2"_s, u"loops/deep/l3"_s })
            QVERIFY(QFile::link(folder + u"loops"_s, folder + link));
        QVERIFY(QFile::link(u"self"_s, folder + u"self"_s));
        QVERIFY(QFile::link(u"/"_s, folder + u"all"_s));
        QCOMPARE(::mkfifo((folder + u"pipe.desktop"_s).toUtf8(), 0600), 0);
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(run({ u"-a"_s, u"Pen"_s }), 0);
        QVERIFY(timer.elapsed() < 10'000); // The whole disk takes longer.
        QTRY_COMPARE(m_user->arguments(u"pen"_s), QByteArray("\n"));
    }

private:
    void addActivatable(const QByteArray& command, const QByteArray& more = {})
    {
        m_user->write(u"data/applications/org.corvella.Pen.desktop"_s,
            "[Desktop Entry]\nType=Application\nName=Pen\nDBusActivatable=true\nExec=" + command
                + '\n');
        m_user->write(u"data/dbus-1/services/org.corvella.Pen.service"_s,
            "[D-BUS Service]\nName=org.corvella.Pen\nExec=/usr/bin/python3 " CORVELLA_APPLICATION
            " org.corvella.Pen "
                + m_user->path(u"kept"_s).toUtf8() + more + '\n');
    }

    int run(
        const QStringList& arguments, const QList<std::pair<QString, QString>>& environment = {})
    {
        const auto end = runHelper(helper, arguments, environment);
        m_said = end.said;
        return end.status;
    }

    static QByteArray read(const QString& path)
    {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<DesktopEntries> m_user;
    QByteArray m_said;
};

QTEST_GUILESS_MAIN(OpenApplicationTest)
#include "OpenApplicationTest.moc"
