// Runs the helper itself on calendars that are meant to do harm, and asks the kernel what that
// took.
#include "App/Platform/Linux/Calendar/ExpanderPipe.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr bool measures = false; // Instrumented code is no measure of time or memory.
#else
constexpr bool measures = true;
#endif

struct Run {
    std::optional<EventExpander::Result> result;
    int status = -1;
    double seconds = 0; // Of processor time.
};

QByteArray good(const char* uid)
{
    return QByteArray("BEGIN:VEVENT\r\nUID:") + uid
        + "\r\nDTSTART:20260329T100000Z\r\nDURATION:PT1H\r\nEND:VEVENT\r\n";
}

// Each begins and ends with something that harms nobody.
QByteArray hostile(const QByteArray& lines, int count = 1)
{
    QByteArray events;
    for (int i = 0; i < count; ++i)
        events += "BEGIN:VEVENT\r\nUID:bad" + QByteArray::number(i)
            + "\r\nDTSTART:00010101T000000\r\n" + lines + "\r\nEND:VEVENT\r\n";
    return events;
}

QByteArray zone(int number, const QByteArray& rule)
{
    return "BEGIN:VTIMEZONE\r\nTZID:Zone" + QByteArray::number(number)
        + "\r\nBEGIN:STANDARD\r\nDTSTART:16010101T000000\r\nTZOFFSETFROM:+0100\r\nTZOFFSETTO:+"
          "0200\r\nRRULE:"
        + rule + "\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n";
}

// Each has one event that asks for it.
QByteArray hostileZones(const QByteArray& rule, int count)
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += zone(i, rule) + "BEGIN:VEVENT\r\nUID:bad\r\nDTSTART;TZID=Zone"
            + QByteArray::number(i) + ":20260401T000000\r\nEND:VEVENT\r\n";
    return text;
}

QByteArray withNames(int count)
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += "BEGIN:VEVENT\r\nUID:bad\r\nDTSTART;TZID="
            + QByteArray::number(i).rightJustified(6, '0').repeated(9000)
            + ":20200101T000000\r\nEND:VEVENT\r\n";
    return text;
}

QByteArray withDates(int count)
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += "BEGIN:VTIMEZONE\r\nTZID:z" + QByteArray::number(i)
            + "\r\nBEGIN:STANDARD\r\nDTSTART:19700101T000000\r\nTZOFFSETTO:+0000\r\nRDATE:"
            + QByteArray("19700101,").repeated(4100) + "\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n";
    return text;
}

QByteArray dear(int count)
{
    QByteArray rule("RRULE:FREQ=YEARLY;BYMONTHDAY=1");
    for (int day = 2; day <= 31; ++day)
        rule += ',' + QByteArray::number(day);
    rule += ";BYHOUR=0";
    for (int hour = 1; hour < 24; ++hour)
        rule += ',' + QByteArray::number(hour);
    rule += ";BYMINUTE=0,30;BYSETPOS=";
    QByteArray text;
    for (int i = 0; i < count; ++i) {
        text += "BEGIN:VEVENT\r\nUID:a" + QByteArray::number(i)
            + "\r\nDTSTART:20200101T000000Z\r\nDURATION:P366D\r\n";
        for (int j = 1; j <= 4; ++j)
            text += rule + QByteArray::number(j + i % 300) + "\r\n";
        text += "END:VEVENT\r\n";
    }
    return text;
}

QByteArray junk(int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = 1;
    for (auto& byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

}

class ExpandEventsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        qputenv("TZ", "Europe/Berlin");
    }

    void hostileTextsTakeFromNobody_data()
    {
        QTest::addColumn<QByteArray>("text");
        const auto exception = QByteArray("EXDATE:20260329T100000Z\r\n");
        QTest::newRow("one line of 100 MB") << hostile("SUMMARY:" + QByteArray(100'000'000, 'x'));
        QTest::newRow("exceptions in one line") << hostile(
            "RRULE:FREQ=DAILY\r\nEXDATE:" + QByteArray("20260329T100000Z,").repeated(500'000));
        QTest::newRow("exceptions in many lines")
            << hostile("RRULE:FREQ=DAILY\r\n" + exception.repeated(500'000));
        QTest::newRow("every second") << hostile("RRULE:FREQ=SECONDLY", 2000);
        QTest::newRow("rules of one event")
            << hostile(QByteArray("RRULE:FREQ=DAILY\r\n").repeated(2000));
        QTest::newRow("never") << hostile("RRULE:FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30\r\nRRULE:FREQ="
                                          "MONTHLY;BYMONTH=2;BYMONTHDAY=30",
            2000);
        QTest::newRow("never, counted")
            << hostile("RRULE:FREQ=DAILY;BYMONTH=2;BYMONTHDAY=30;COUNT=3", 20'000);
        QTest::newRow("every hour, for years")
            << hostile("DURATION:P999999D\r\nRRULE:FREQ=HOURLY;BYMINUTE=1,2,3,4,5,6,7,8,9", 500);
        QTest::newRow("zones") << zone(1, "FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU").repeated(500'000);
        QTest::newRow("zones in use") << hostileZones("FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU", 5000);
        QTest::newRow("zones of every second") << hostileZones("FREQ=SECONDLY", 5000);
        QTest::newRow("zones that never change")
            << hostileZones("FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30;COUNT=9", 5000);
        QTest::newRow("nesting") << QByteArray("BEGIN:X\r\n").repeated(2'000'000);
        QTest::newRow("nesting in an event")
            << "BEGIN:VEVENT\r\n" + QByteArray("BEGIN:VALARM\r\n").repeated(2'000'000);
        QTest::newRow("replacements")
            << QByteArray("BEGIN:VEVENT\r\nUID:bad\r\nRECURRENCE-ID:20260401T000000Z\r\nDTSTART:"
                          "20260401T000000Z\r\nEND:VEVENT\r\n")
                   .repeated(300'000);
        QTest::newRow("long notes")
            << QByteArray("BEGIN:VEVENT\r\nUID:bad\r\nDTSTART:20260330T100000Z\r\nDESCRIPTION:"
                   + QByteArray(65'000, 'x') + "\r\nEND:VEVENT\r\n")
                   .repeated(1500);
        QTest::newRow("long names of zones") << withNames(1100);
        QTest::newRow("dates of zones") << withDates(700);
        QTest::newRow("junk") << junk(20'000'000);
    }

    void hostileTextsTakeFromNobody()
    {
        QFETCH(const QByteArray, text);
        write(u"calendar.ics"_s, { good("first"), text, "\r\n", good("last") });
        const auto run = expand({ m_dir->path() });
        checkCost(run);
        QVERIFY(run.result);
        if (measures || run.result->isComplete)
            QCOMPARE(goodOnes(*run.result), 2);
    }

    void aZoneThatNamesAPathIsNotOpened()
    {
        const auto fifo = m_dir->filePath(u"fifo"_s);
        QCOMPARE(mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        const auto event = "BEGIN:VEVENT\r\nUID:good\r\nDTSTART;TZID=../../.."
            + QFile::encodeName(fifo) + ":20260329T100000\r\nEND:VEVENT\r\n";
        write(u"calendar.ics"_s, { event });
        const auto run = expand({ m_dir->path() });
        QVERIFY(run.result);
        QCOMPARE(goodOnes(*run.result), 1);
        QCOMPARE(run.result->unknownZones.size(), 1);
        checkCost(run);
    }

    void whatIsNoFileHoldsNobodyUp()
    {
        write(u"good.ics"_s, { good("good") });
        QCOMPARE(mkfifo(QFile::encodeName(m_dir->filePath(u"fifo.ics"_s)).constData(), 0600), 0);
        QVERIFY(QDir().mkdir(m_dir->filePath(u"folder.ics"_s)));
        QVERIFY(QFile::link(u"loop.ics"_s, m_dir->filePath(u"loop.ics"_s)));
        QVERIFY(QFile::link(u"/dev/zero"_s, m_dir->filePath(u"zero.ics"_s)));
        write(u"locked.ics"_s, { good("locked") });
        QVERIFY(QFile::setPermissions(m_dir->filePath(u"locked.ics"_s), QFile::Permissions()));
        const auto run = expand({ m_dir->path(), m_dir->filePath(u"fifo.ics"_s) });
        const bool isLocked
            = access(QFile::encodeName(m_dir->filePath(u"locked.ics"_s)).constData(), R_OK) != 0;
        QVERIFY(run.result);
        QCOMPARE(run.result->isComplete, !isLocked);
        QCOMPARE(goodOnes(*run.result), 1);
        checkCost(run);
    }

    void aFolderMayHoldManyFiles()
    {
        constexpr int files = measures ? 30'000 : 3'000;
        for (int i = 0; i < files; ++i) {
            QFile file(m_dir->filePath(u"%1.ics"_s.arg(i)));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(i % 1000 == 0 ? good("good") : hostile("SUMMARY:x"));
        }
        const auto run = expand({ m_dir->path() });
        QVERIFY(run.result && run.result->isComplete);
        QCOMPARE(goodOnes(*run.result), files / 1000);
        checkCost(run);
    }

    void aHugeFileIsReadAfterAllOthers()
    {
        QFile sparse(m_dir->filePath(u"a.ics"_s));
        QVERIFY(sparse.open(QIODevice::WriteOnly) && sparse.resize(qint64 { 1 } << 40));
        write(u"b.ics"_s, { good("good") });
        const auto run = expand({ m_dir->path() });
        QVERIFY(run.result && !run.result->isComplete);
        QCOMPARE(goodOnes(*run.result), 1);
        checkCost(run);
    }

    void dearRulesTakeNothingFromLargerFiles()
    {
        write(u"dear.ics"_s, { dear(1000) });
        write(u"larger.ics"_s,
            { good("first"), "BEGIN:VEVENT\r\nUID:good\r\nDTSTART:20260322T100000Z\r\nRRULE:FREQ=",
                "WEEKLY\r\nEND:VEVENT\r\nBEGIN:VEVENT\r\nUID:last\r\nDTSTART:20260302T100000Z",
                "\r\nRRULE:FREQ=WEEKLY;COUNT=9;BYDAY=MO,SU\r\nEND:VEVENT\r\n",
                QByteArray("X-FILLER:x\r\n").repeated(200'000) });
        const auto run = expand({ m_dir->path() });
        QVERIFY(run.result);
        if (measures || run.result->isComplete)
            QCOMPARE(goodOnes(*run.result), 3);
        checkCost(run);
    }

    void aRequestThatIsNoneIsAnError()
    {
        for (const auto& input : { QByteArray(), QByteArray("x"), QByteArray(100, '\xFF'),
                 ExpanderPipe::head({}).chopped(1) }) {
            const auto run = start(input);
            QVERIFY(WIFEXITED(run.status));
            QCOMPARE(WEXITSTATUS(run.status), 1);
        }
    }

private:
    void write(const QString& name, const QByteArrayList& parts)
    {
        QFile file(m_dir->filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        for (const auto& part : parts)
            QCOMPARE(file.write(part), part.size());
    }

    static qsizetype goodOnes(const EventExpander::Result& result)
    {
        return std::ranges::count_if(result.events, [](const CalendarEvent& event) {
            const auto uid = event.identifier.value_or(QString()).section(u'\n', 1, 1);
            return uid == u"good" || uid == u"first" || uid == u"last";
        });
    }

    static void checkCost(const Run& run)
    {
        QVERIFY2(
            WIFEXITED(run.status) && WEXITSTATUS(run.status) == 0, QByteArray::number(run.status));
        if (measures)
            QVERIFY2(run.seconds < 2, QByteArray::number(run.seconds));
    }

    Run expand(const QStringList& paths)
    {
        EventExpander::Request request;
        request.start = Moment(std::chrono::seconds(1774738800));
        request.end = Moment(std::chrono::seconds(1774821600));
        request.paths = paths;
        return start(ExpanderPipe::head(request));
    }

    // Without QProcess, which does not tell what a process took.
    Run start(const QByteArray& input)
    {
        const auto inputName = QFile::encodeName(m_dir->filePath(u"input"_s));
        const auto outputName = QFile::encodeName(m_dir->filePath(u"output"_s));
        write(u"input"_s, { input });
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(
            &actions, STDIN_FILENO, inputName.constData(), O_RDONLY, 0);
        posix_spawn_file_actions_addopen(
            &actions, STDOUT_FILENO, outputName.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        std::string helper(CORVELLA_HELPERS_DIR "/expand-events");
        std::array<char*, 2> arguments { helper.data(), nullptr };
        pid_t process = 0;
        const bool isStarted
            = posix_spawn(&process, helper.c_str(), &actions, nullptr, arguments.data(), environ)
            == 0;
        posix_spawn_file_actions_destroy(&actions);
        if (!isStarted)
            return {};
        Run run;
        rusage usage {};
        wait4(process, &run.status, 0, &usage);
        const auto seconds = [](timeval time) {
            return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
        };
        run.seconds = seconds(usage.ru_utime) + seconds(usage.ru_stime);
        QFile output(m_dir->filePath(u"output"_s));
        if (output.open(QIODevice::ReadOnly))
            run.result = ExpanderPipe::result(output.readAll());
        return run;
    }

    std::unique_ptr<QTemporaryDir> m_dir;
};

QTEST_GUILESS_MAIN(ExpandEventsTest)
#include "ExpandEventsTest.moc"
