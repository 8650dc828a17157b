// A message bus of the test's own, which may hang and end.
#pragma once

#include "Tests/Support/Daemon.h"

#include <QElapsedTimer>

class PrivateBus final {
public:
    explicit PrivateBus(const QList<std::pair<QString, QString>>& environment = {},
        const QString& address = QStringLiteral("unix:tmpdir=/tmp"))
        : m_daemon(QStringLiteral("dbus-daemon"),
            { QStringLiteral("--session"), QStringLiteral("--nofork"),
                QStringLiteral("--print-address"), QStringLiteral("--address=") + address },
            environment)
    {
        QElapsedTimer waited;
        waited.start();
        QByteArray printed;
        while (!printed.contains('\n') && waited.elapsed() < 20'000)
            printed += m_daemon.output();
        // There may be warnings on lines of their own.
        for (const auto& line : printed.split('\n')) {
            if (line.startsWith("unix:"))
                m_address = line;
        }
    }

    QByteArray address() const { return m_address; } // Empty when it did not start.
    bool hang() { return m_daemon.hang(); }
    void resume() { m_daemon.resume(); }
    void crash() { m_daemon.crash(); }

private:
    Daemon m_daemon;
    QByteArray m_address;
};
