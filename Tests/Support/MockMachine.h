// A machine whose devices are made up, and system daemons that take them for real.
#pragma once

#include "Tests/Support/Daemon.h"

#include <QElapsedTimer>

#include <memory>

class MockMachine final {
public:
    MockMachine()
        : m_script(QStringLiteral("umockdev-wrapper"),
            { QStringLiteral("/usr/bin/python3"), QStringLiteral(CORVELLA_MOCK_MACHINE) })
        , m_root(answer())
    {
    }

    bool isReady() const { return !m_root.isEmpty(); }

    // As Tests/Support/mock_machine.py takes them.
    bool tell(const QString& command)
    {
        m_script.tell(command.toUtf8());
        return answer() == "done";
    }

    // On the system bus of the environment.
    std::unique_ptr<Daemon> start(const QString& program) const
    {
        return std::make_unique<Daemon>(program, QStringList(),
            QList<std::pair<QString, QString>> {
                { QStringLiteral("LD_PRELOAD"), QStringLiteral("libumockdev-preload.so.0") },
                { QStringLiteral("UMOCKDEV_DIR"), QString::fromLocal8Bit(m_root) },
                // Root's UPower would add these batteries to what it remembers of the real ones.
                { QStringLiteral("UPOWER_HISTORY_DIR"), QString::fromLocal8Bit(m_root) },
            });
    }

private:
    QByteArray answer()
    {
        QElapsedTimer waited;
        waited.start();
        QByteArray printed;
        while (!printed.endsWith('\n') && m_script.isRunning() && waited.elapsed() < 20'000)
            printed += m_script.output();
        return printed.trimmed();
    }

    Daemon m_script;
    QByteArray m_root;
};
