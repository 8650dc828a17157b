// A sound server of the test's own, PulseAudio or PipeWire, without any device of the machine.
#pragma once

#include "Tests/Support/Daemon.h"

#include <QTest>

#include <memory>
#include <vector>

class SoundServer final {
public:
    enum Kind { pulseAudio, pipeWire };

    // In an empty folder of its own. PipeWire needs a session bus to have a default input.
    SoundServer(Kind kind, const QString& folder)
        : m_folder(folder)
    {
        QDir().mkpath(folder + QStringLiteral("/pulse"));
        kind == pulseAudio ? startPulseAudio() : startPipeWire();
        waitFor([&] { return pactl({ QStringLiteral("info") }).contains("Default"); });
    }

    ~SoundServer()
    {
        while (!m_daemons.empty())
            m_daemons.pop_back();
        QDir(m_folder).removeRecursively();
    }

    Q_DISABLE_COPY_MOVE(SoundServer)

    QByteArray address() const { return "unix:" + socket().toUtf8(); }
    // What the programs of the server's users talk to.
    Daemon& daemon() { return *m_daemons.back(); }

    // What the tool prints; nothing when it failed.
    QByteArray pactl(const QStringList& arguments) const
    {
        QProcess process;
        auto variables = QProcessEnvironment::systemEnvironment();
        variables.insert(QStringLiteral("PULSE_SERVER"), QString::fromUtf8(address()));
        variables.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
        process.setProcessEnvironment(variables);
        process.start(QStringLiteral("pactl"), arguments);
        const bool succeeded = process.waitForFinished() && process.exitCode() == 0;
        return succeeded ? process.readAllStandardOutput() : QByteArray();
    }

private:
    QString socket() const { return m_folder + QStringLiteral("/pulse/native"); }

    // Whoever then finds no server says so.
    template <typename Condition>
    static void waitFor(Condition condition)
    {
        static_cast<void>(QTest::qWaitFor(condition, 20'000));
    }

    void startPulseAudio()
    {
        const auto protocol
            = QStringLiteral("module-native-protocol-unix auth-anonymous=1 socket=") + socket();
        start(QStringLiteral("pulseaudio"),
            { QStringLiteral("--daemonize=no"), QStringLiteral("--use-pid-file=no"),
                QStringLiteral("--exit-idle-time=-1"), QStringLiteral("--disable-shm=yes"),
                QStringLiteral("-n"), QStringLiteral("-L"), protocol });
    }

    void startPipeWire()
    {
        leaveDevicesAlone(QStringLiteral("main"), "alsa_monitor v4l2_monitor libcamera_monitor");
        leaveDevicesAlone(QStringLiteral("bluetooth"), "bluez_monitor");
        start(QStringLiteral("pipewire"));
        waitFor([&] { return QFile::exists(m_folder + QStringLiteral("/pipewire-0")); });
        start(QStringLiteral("wireplumber"));
        start(QStringLiteral("pipewire-pulse"));
    }

    void leaveDevicesAlone(const QString& part, const QByteArray& monitors) const
    {
        const auto folder = m_folder + QStringLiteral("/wireplumber/%1.lua.d").arg(part);
        QDir().mkpath(folder);
        QFile script(folder + QStringLiteral("/51-no-devices.lua"));
        if (!script.open(QIODevice::WriteOnly))
            return;
        for (const auto& monitor : monitors.split(' '))
            script.write(monitor + ".enabled = false\n");
    }

    void start(const QString& program, const QStringList& arguments = {})
    {
        QList<std::pair<QString, QString>> environment;
        for (const auto* name :
            { "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME", "HOME" })
            environment.append({ QString::fromLatin1(name), m_folder });
        m_daemons.push_back(std::make_unique<Daemon>(program, arguments, environment));
    }

    QString m_folder;
    std::vector<std::unique_ptr<Daemon>> m_daemons;
};
