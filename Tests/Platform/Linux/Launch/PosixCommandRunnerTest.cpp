#include "App/Platform/Linux/Launch/PosixCommandRunner.h"
#include "App/Platform/Linux/Launch/ChildProcess.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <memory>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int cannotRefuse = 77;

QString words(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

struct Run {
    explicit Run(const QString& path, const QStringList& arguments = {})
        : failure(runner.run(path, arguments, &waiter, [this](const CommandEnd& how) {
            ++ends;
            end = how;
        }))
    {
    }

    bool hasEnded() const { return failure || ends > 0; }

    PosixCommandRunner runner;
    QObject waiter;
    int ends = 0;
    CommandEnd end;
    std::optional<QString> failure;
};

struct Shell : Run {
    explicit Shell(const QString& script, const QStringList& arguments = {})
        : Run(u"/bin/sh"_s, QStringList { u"-c"_s, script, u"sh"_s } + arguments)
    {
    }
};

// Programs that read it wait for what is written to it.
class Gate final {
public:
    explicit Gate(const QString& path)
        : m_path(QFile::encodeName(path))
    {
        if (mkfifo(m_path.constData(), 0600) != 0)
            qFatal("No FIFO to be had");
    }

    // What waits still would do so for ever.
    ~Gate() { open(); }
    Q_DISABLE_COPY_MOVE(Gate)

    // False while nobody waits; once it was true it stays so.
    bool open()
    {
        const int gate
            = m_isOpen ? -1 : ::open(m_path.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
        if (gate >= 0) {
            m_isOpen = ::write(gate, "\n", 1) == 1;
            ::close(gate);
        }
        return m_isOpen;
    }

private:
    QByteArray m_path;
    bool m_isOpen = false;
};

// Not to be taken back: only for a process of its own.
bool refuse(const std::vector<long>& calls, int error)
{
    std::vector<sock_filter> filter { BPF_STMT(
        BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)) };
    for (const long call : calls) {
        filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<__u32>(call), 0, 1));
        filter.push_back(BPF_STMT(
            BPF_RET | BPF_K, static_cast<__u32>(SECCOMP_RET_ERRNO) | static_cast<__u32>(error)));
    }
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    const sock_fprog program { static_cast<unsigned short>(filter.size()), filter.data() };
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0
        && prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

bool refuse(const QString& what)
{
    if (what == u"process handles")
        return refuse({ SYS_pidfd_open }, ENOSYS);
    if (what != u"processes")
        return true;
#ifdef SYS_fork
    return refuse({ SYS_clone, SYS_clone3, SYS_fork, SYS_vfork }, EAGAIN);
#else
    return refuse({ SYS_clone, SYS_clone3 }, EAGAIN);
#endif
}

// Where something is refused it prints how the script ends; otherwise it ends before the script.
int play(const QString& refused, const QString& script)
{
    if (!refuse(refused))
        return cannotRefuse;
    Shell shell(script);
    if (refused == u"nothing")
        return 0;
    const bool ended = QTest::qWaitFor([&] { return shell.hasEnded(); });
    std::printf("%s %d %s", shell.failure.value_or(QString()).toLocal8Bit().constData(),
        ended && shell.end.succeeded, shell.end.errors.constData());
    return 0;
}

}

class PosixCommandRunnerTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void theEndIsToldOnceInALaterTurn();
    void onlyStatusZeroIsSuccess_data();
    void onlyStatusZeroIsSuccess();
    void argumentsArriveAsTheyAre();
    void errorsAreBytes();
    void moreErrorsThanAreKeptHoldNothingUp();
    void errorsAreNotCutInsideACharacter();
    void whereTheEndsOfProgramsWereIgnoredTheyAreToldAllTheSame();
    void itStartsAfresh();
    void nothingElseIsInherited();
    void whatQtIsToldForThisProgramAloneStaysHere();
    void aMissingHomeIsNoFailure();
    void whatCannotBeStartedIsToldAtOnce_data();
    void whatCannotBeStartedIsToldAtOnce();
    void noDescriptorsLeftIsToldAtOnce();
    void noProcessesLeftIsToldAtOnce();
    void whereThereAreNoHandlesOfProcessesTheEndIsToldAllTheSame();
    void whatIsLeftRunningIsNotWaitedFor();
    void whatIsLeftRunningMayGoOnWriting();
    void withoutItsWaiterItRunsOn();
    void afterTheQuitItRunsOn();
    void aHundredAtOnceAllEnd();

private:
    QString path(const QString& name) const { return m_home->filePath(name); }
    QByteArray read(const QString& name) const;
    static QByteArray played(const QString& refused, const QString& script);

    std::unique_ptr<QTemporaryDir> m_home;
    qsizetype m_descriptors = 0;
    qsizetype m_followed = 0;
};

static qsizetype descriptors()
{
    return QDir(u"/proc/self/fd"_s).entryList(QDir::AllEntries | QDir::System).size();
}

static qsizetype followed()
{
    return QCoreApplication::instance()->children().size();
}

static bool hasChildren()
{
    siginfo_t info {};
    return waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0;
}

void PosixCommandRunnerTest::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    qputenv("HOME", m_home->path().toUtf8());
    m_descriptors = descriptors();
    m_followed = followed();
}

void PosixCommandRunnerTest::cleanup()
{
    QTRY_VERIFY(!hasChildren());
    QTRY_COMPARE(descriptors(), m_descriptors);
    QTRY_COMPARE(followed(), m_followed);
}

QByteArray PosixCommandRunnerTest::read(const QString& name) const
{
    QFile file(path(name));
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray PosixCommandRunnerTest::played(const QString& refused, const QString& script)
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), { u"--play"_s, refused, script });
    if (!process.waitForFinished() || process.exitCode() == cannotRefuse)
        return {};
    return process.readAllStandardOutput();
}

void PosixCommandRunnerTest::theEndIsToldOnceInALaterTurn()
{
    Run run(u"/bin/true"_s);
    QVERIFY(!run.failure);
    siginfo_t info {};
    QCOMPARE(waitid(P_ALL, 0, &info, WEXITED | WNOWAIT), 0);
    QCOMPARE(run.ends, 0);
    QTRY_COMPARE(followed(), m_followed);
    QCOMPARE(run.ends, 1);
    QVERIFY(run.end.succeeded);
    QCOMPARE(run.end.errors, QByteArray());
}

void PosixCommandRunnerTest::onlyStatusZeroIsSuccess_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<bool>("succeeds");
    QTest::newRow("0") << u"exit 0"_s << true;
    QTest::newRow("0 with errors") << u"echo oops >&2"_s << true;
    QTest::newRow("1") << u"exit 1"_s << false;
    QTest::newRow("255") << u"exit 255"_s << false;
    QTest::newRow("terminated") << u"kill -TERM $$"_s << false;
    QTest::newRow("killed") << u"kill -KILL $$"_s << false;
}

void PosixCommandRunnerTest::onlyStatusZeroIsSuccess()
{
    QFETCH(QString, script);
    const Shell shell(script);
    QTRY_VERIFY(shell.hasEnded());
    QTEST(shell.end.succeeded, "succeeds");
}

void PosixCommandRunnerTest::argumentsArriveAsTheyAre()
{
    const QStringList arguments { u"two words"_s, u"\"'`$HOME`$(id)\\"_s, u"two\nlines\t"_s,
        u"Lärm 音 🙂"_s, QString(), u"-e"_s, u"*"_s };
    const Shell shell(u"printf '%s\\0' \"$@\" >&2"_s, arguments);
    QTRY_VERIFY(shell.hasEnded());
    QCOMPARE(shell.end.errors, arguments.join(QChar(u'\0')).toUtf8() + '\0');
}

void PosixCommandRunnerTest::errorsAreBytes()
{
    const Shell shell(u"printf 'a\\377\\000\\376z' >&2; exit 1"_s);
    QTRY_VERIFY(shell.hasEnded());
    QCOMPARE(shell.end.errors, QByteArray("a\xff\0\xfez", 5));
}

void PosixCommandRunnerTest::moreErrorsThanAreKeptHoldNothingUp()
{
    const Shell shell(u"printf first >&2; head -c 10485760 /dev/zero >&2"_s);
    QTRY_VERIFY(shell.hasEnded());
    QVERIFY(shell.end.succeeded);
    QCOMPARE(shell.end.errors.size(), 65536);
    QVERIFY(shell.end.errors.startsWith("first"));
}

void PosixCommandRunnerTest::errorsAreNotCutInsideACharacter()
{
    const Shell shell(u"{ printf ..; yes … | tr -d '\\n' | head -c 131072; } >&2"_s);
    QTRY_VERIFY(shell.hasEnded());
    QVERIFY(shell.end.errors.size() > 65530);
    QVERIFY(shell.end.errors.endsWith("…"));
}

void PosixCommandRunnerTest::whereTheEndsOfProgramsWereIgnoredTheyAreToldAllTheSame()
{
    // As a program may hand it on to those that it starts.
    const auto handler = signal(SIGCHLD, SIG_IGN);
    const Shell shell(u"exit 0"_s);
    QTRY_VERIFY(shell.hasEnded());
    signal(SIGCHLD, handler);
    QVERIFY(shell.end.succeeded);
}

void PosixCommandRunnerTest::itStartsAfresh()
{
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigprocmask(SIG_BLOCK, &blocked, &before);
    const auto handler = signal(SIGPIPE, SIG_IGN);
    // The shell is the leader of the session that grep reports.
    const Shell shell(u"readlink /proc/self/fd/0 /proc/self/fd/1 /proc/self/cwd 3>&1 1>&2 2>&3; "
                      "echo $$ >&2; cut -d' ' -f6 /proc/$$/stat >&2; "
                      "exec grep -E 'Sig(Blk|Ign)' /proc/self/status >&2"_s);
    signal(SIGPIPE, handler);
    sigprocmask(SIG_SETMASK, &before, nullptr);
    QTRY_VERIFY(shell.hasEnded());
    const auto lines = shell.end.errors.trimmed().split('\n');
    QCOMPARE(lines.size(), 7);
    QCOMPARE(lines.at(0), "/dev/null");
    QCOMPARE(QFile::decodeName(lines.at(2)), QDir(m_home->path()).canonicalPath());
    QCOMPARE(lines.at(3), lines.at(4));
    QCOMPARE(lines.at(5), "SigBlk:\t0000000000000000");
    constexpr qulonglong ours = 0x7fffffff; // The C library has the two after them for itself.
    QCOMPARE(lines.at(6).sliced(8).toULongLong(nullptr, 16) & ours, 0U);
}

void PosixCommandRunnerTest::nothingElseIsInherited()
{
    const int file = ::open("/dev/null", O_RDONLY); // Not closed by itself.
    const Shell shell(u"ls /proc/self/fd >&2"_s);
    ::close(file);
    QTRY_VERIFY(shell.hasEnded());
    QCOMPARE(shell.end.errors, "0\n1\n2\n3\n"); // The last is the folder itself.
}

void PosixCommandRunnerTest::whatQtIsToldForThisProgramAloneStaysHere()
{
    qputenv(ChildProcess::privateVariable, "1");
    const Shell shell(u"env | grep -c -e '^HOME=' -e '^QT_WAYLAND_USE_BYPASS' >&2"_s);
    qunsetenv(ChildProcess::privateVariable);
    QTRY_VERIFY(shell.hasEnded());
    QCOMPARE(shell.end.errors, "1\n");
}

void PosixCommandRunnerTest::aMissingHomeIsNoFailure()
{
    qputenv("HOME", "/nonexistent");
    const Shell shell(u"pwd >&2"_s);
    QTRY_VERIFY(shell.hasEnded());
    QCOMPARE(shell.end.errors, "/\n");
}

void PosixCommandRunnerTest::whatCannotBeStartedIsToldAtOnce_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("argument");
    QTest::addColumn<int>("error");
    QTest::newRow("missing") << u"/nonexistent/program"_s << u"a"_s << ENOENT;
    QTest::newRow("empty") << QString() << u"a"_s << ENOENT;
    QTest::newRow("folder") << u"/"_s << u"a"_s << EACCES;
    QTest::newRow("not executable") << u"plain"_s << u"a"_s << EACCES;
    QTest::newRow("not a program") << u"prose"_s << u"a"_s << ENOEXEC;
    QTest::newRow("no interpreter") << u"script"_s << u"a"_s << ENOENT;
    QTest::newRow("huge argument") << u"/bin/true"_s << QString(2 << 20, u'x') << E2BIG;
    QTest::newRow("cut argument") << u"/bin/true"_s << u"a\0b"_s << EINVAL;
    QTest::newRow("cut path") << u"/bin/true\0b"_s << u"a"_s << EINVAL;
}

void PosixCommandRunnerTest::whatCannotBeStartedIsToldAtOnce()
{
    QFETCH(QString, program);
    QFETCH(QString, argument);
    QFETCH(int, error);
    for (const char* const name : { "plain", "prose", "script" }) {
        QFile file(path(QString::fromLatin1(name)));
        QVERIFY(file.open(QFile::WriteOnly));
        file.write("#!/nonexistent/interpreter\n" + (name[0] == 's' ? 0 : 1));
        if (name[1] != 'l')
            file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    }
    const bool isOurs = !program.isEmpty() && !program.startsWith(u'/');
    const Run run(isOurs ? path(program) : program, { argument });
    QCOMPARE(run.failure, words(error));
    QVERIFY(!hasChildren());
}

void PosixCommandRunnerTest::noDescriptorsLeftIsToldAtOnce()
{
    rlimit before {};
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit none { 3, before.rlim_max };
    setrlimit(RLIMIT_NOFILE, &none);
    const Run run(u"/bin/true"_s);
    setrlimit(RLIMIT_NOFILE, &before);
    QCOMPARE(run.failure, words(EMFILE));
}

void PosixCommandRunnerTest::noProcessesLeftIsToldAtOnce()
{
    const auto said = played(u"processes"_s, u"exit 0"_s);
    if (said.isEmpty())
        QSKIP("Nothing can be refused here: not tried without processes");
    QCOMPARE(said, words(EAGAIN).toLocal8Bit() + " 0 ");
}

void PosixCommandRunnerTest::whereThereAreNoHandlesOfProcessesTheEndIsToldAllTheSame()
{
    const auto said = played(u"process handles"_s, u"echo oops >&2"_s);
    if (said.isEmpty())
        QSKIP("Nothing can be refused here: not tried without handles of processes");
    QCOMPARE(said, " 1 oops\n");
    QCOMPARE(played(u"process handles"_s, u"echo oops >&2; exit 3"_s), " 0 oops\n");
}

void PosixCommandRunnerTest::whatIsLeftRunningIsNotWaitedFor()
{
    Gate gate(path(u"gate"_s));
    const Shell shell(u"read line <gate & echo oops >&2; exit 1"_s);
    QTRY_VERIFY(shell.hasEnded());
    QCOMPARE(shell.end.errors, "oops\n");
    QTRY_VERIFY(gate.open());
}

void PosixCommandRunnerTest::whatIsLeftRunningMayGoOnWriting()
{
    Gate gate(path(u"gate"_s));
    const Shell shell(
        u"{ read line <gate; head -c 1048576 /dev/zero >&2; echo $? >status; } & exit 0"_s);
    QTRY_VERIFY(shell.hasEnded());
    QTRY_VERIFY(gate.open());
    QTRY_COMPARE(read(u"status"_s), "0\n");
    QCOMPARE(shell.ends, 1);
}

void PosixCommandRunnerTest::withoutItsWaiterItRunsOn()
{
    Gate gate(path(u"gate"_s));
    PosixCommandRunner runner;
    auto waiter = std::make_unique<QObject>();
    bool isTold = false;
    const auto failure = runner.run(u"/bin/sh"_s,
        { u"-c"_s, u"read line <gate; head -c 1048576 /dev/zero >&2; echo $? >status"_s },
        waiter.get(), [&](const CommandEnd&) { isTold = true; });
    QVERIFY(!failure);
    waiter.reset();
    QTRY_VERIFY(gate.open());
    QTRY_COMPARE(read(u"status"_s), "0\n");
    QTRY_VERIFY(!hasChildren());
    QVERIFY(!isTold);
}

void PosixCommandRunnerTest::afterTheQuitItRunsOn()
{
    Gate gate(path(u"gate"_s));
    played(u"nothing"_s, u"read line <gate; head -c 1048576 /dev/zero >&2; echo $? >status"_s);
    QTRY_VERIFY(gate.open());
    QTRY_COMPARE(read(u"status"_s), "0\n");
}

void PosixCommandRunnerTest::aHundredAtOnceAllEnd()
{
    std::vector<std::unique_ptr<Shell>> shells;
    for (int number = 0; number < 100; ++number)
        shells.push_back(std::make_unique<Shell>(
            u"echo $1 >&2; exit $1"_s, QStringList { QString::number(number) }));
    for (int number = 0; number < 100; ++number) {
        const auto& shell = *shells.at(static_cast<size_t>(number));
        QTRY_VERIFY(shell.hasEnded());
        QCOMPARE(shell.end.errors, QByteArray::number(number) + '\n');
        QCOMPARE(shell.end.succeeded, number == 0);
    }
}

int main(int argc, char** argv)
{
    if (argc != 4 || qstrcmp(argv[1], "--play") != 0) {
        QCoreApplication application(argc, argv);
        PosixCommandRunnerTest test;
        return QTest::qExec(&test, argc, argv);
    }
    int status = 0;
    {
        const QCoreApplication application(argc, argv);
        const auto words = QCoreApplication::arguments();
        status = play(words.at(2), words.at(3));
    }
    std::fflush(stdout);
    _exit(status); // The search for leaks would want what is refused.
}

#include "PosixCommandRunnerTest.moc"
