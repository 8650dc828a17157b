// A program that runs beside the test for as long as the test holds it.
#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

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
        m_process.start(program, arguments);
        m_process.waitForStarted();
    }

    ~Daemon() { stop(); }

    bool isRunning() const { return m_process.state() == QProcess::Running; }
    qint64 pid() const { return m_process.processId(); }

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
        m_process.terminate();
        if (!m_process.waitForFinished(2000)) {
            m_process.kill();
            m_process.waitForFinished();
        }
    }

private:
    QProcess m_process;
};
