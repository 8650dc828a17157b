// A program that runs beside the test for as long as the test holds it.
#pragma once

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

#include <algorithm>
#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>
#include <utility>

class Daemon final {
public:
    Daemon(const QString& program, const QStringList& arguments,
        const QList<std::pair<QString, QString>>& environment = {})
    {
        auto variables = QProcessEnvironment::systemEnvironment();
        for (const auto& [name, value] : environment)
            variables.insert(name, value);
        m_process.setProcessEnvironment(variables);
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        // As real daemons are: a signal to the group of some other test is none to this one. And
        // yet it never outlives the test.
        m_process.setChildProcessModifier([] {
            ::setpgid(0, 0);
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        });
        m_process.start(program, arguments);
        m_process.waitForStarted();
    }

    ~Daemon() { stop(); }

    bool isRunning() const { return m_process.state() == QProcess::Running; }
    qint64 pid() const { return m_process.processId(); }

    // Stands still, in all its threads, when this returns true.
    bool hang()
    {
        signal(SIGSTOP);
        QElapsedTimer waited;
        waited.start();
        while (!standsStill() && isRunning() && waited.elapsed() < 5000)
            m_process.waitForReadyRead(1);
        return standsStill();
    }

    void resume() { signal(SIGCONT); }
    // Without a word to anyone.
    void crash() { signal(SIGKILL); }

    // To its standard input.
    void tell(const QByteArray& line)
    {
        m_process.write(line + '\n');
        m_process.waitForBytesWritten();
    }

    // What the program has printed since the last call.
    QByteArray output()
    {
        m_process.waitForReadyRead(1);
        return m_process.readAll();
    }

    void stop()
    {
        if (!isRunning())
            return;
        resume();
        m_process.terminate();
        if (!m_process.waitForFinished(2000)) {
            m_process.kill();
            m_process.waitForFinished();
        }
    }

private:
    // Number 0 would be this test and all that runs beside it.
    void signal(int number)
    {
        if (pid() > 0)
            ::kill(static_cast<pid_t>(pid()), number);
    }

    bool standsStill() const
    {
        const QDir threads(QStringLiteral("/proc/%1/task").arg(pid()));
        const auto names = threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        return !names.isEmpty() && std::ranges::all_of(names, [&](const QString& name) {
            QFile status(threads.filePath(name) + QStringLiteral("/stat"));
            if (!status.open(QIODevice::ReadOnly))
                return false;
            // The name before it may hold anything.
            const auto line = status.readAll();
            return line.mid(line.lastIndexOf(')') + 2, 1) == "T";
        });
    }

    QProcess m_process;
};
