// Another process over the same defaults, ruled line by line.
#pragma once

#include <QProcess>
#include <QString>

class OtherDefaults final {
public:
    explicit OtherDefaults(const QString& path)
        : OtherDefaults(QStringLiteral(DEFAULTS_PROCESS), QStringList { path })
    {
    }

    // In a mount namespace of its own, behind a shell command that may mount at $0's folder.
    OtherDefaults(const QString& path, const QString& mounting)
        : OtherDefaults(QStringLiteral("unshare"),
            QStringList { QStringLiteral("-rm"), QStringLiteral("sh"), QStringLiteral("-c"),
                QStringLiteral("folder=$(dirname \"$0\"); ") + mounting
                    + QStringLiteral(" && exec \"$1\" \"$0\""),
                path, QStringLiteral(DEFAULTS_PROCESS) })
    {
    }

    ~OtherDefaults()
    {
        m_process.closeWriteChannel();
        m_process.waitForFinished(5000);
    }

    static bool mayMount()
    {
        return QProcess::execute(QStringLiteral("unshare"),
                   QStringList { QStringLiteral("-rm"), QStringLiteral("mount"),
                       QStringLiteral("-t"), QStringLiteral("tmpfs"), QStringLiteral("tmpfs"),
                       QStringLiteral("/mnt") })
            == 0;
    }

    QString ask(const QString& line)
    {
        m_process.write(line.toUtf8() + '\n');
        while (!m_process.canReadLine() && m_process.waitForReadyRead(5000)) { }
        return QString::fromUtf8(m_process.readLine().trimmed());
    }

    qint64 pid() const { return m_process.processId(); }

private:
    OtherDefaults(const QString& program, const QStringList& arguments)
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(program, arguments);
        m_process.waitForStarted();
    }

    QProcess m_process;
};
