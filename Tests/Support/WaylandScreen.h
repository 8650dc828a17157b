// A compositor without a screen, and with a keyboard on which the same letter is typed without end.
#pragma once

#include "Tests/Support/Daemon.h"

#include <QTemporaryDir>

#include <memory>
#include <pwd.h>

class WaylandScreen final {
public:
    WaylandScreen()
    {
        if (!m_folder.isValid() || !configure())
            return;
        const QStringList sway { QStringLiteral("sway"), QStringLiteral("--config"), config() };
        const auto command = asAnyoneButRoot() + sway;
        m_compositor = std::make_unique<Daemon>(command.first(), command.mid(1),
            QList<std::pair<QString, QString>> { { QStringLiteral("HOME"), m_folder.path() },
                { QStringLiteral("XDG_RUNTIME_DIR"), m_folder.path() },
                { QStringLiteral("WLR_BACKENDS"), QStringLiteral("headless") },
                { QStringLiteral("WLR_LIBINPUT_NO_DEVICES"), QStringLiteral("1") },
                { QStringLiteral("WLR_RENDERER"), QStringLiteral("pixman") } });
        QElapsedTimer waited;
        waited.start();
        while (socket().isEmpty() && m_compositor->isRunning() && waited.elapsed() < 20'000)
            m_compositor->output();
        if (!socket().isEmpty())
            plugInKeyboard();
    }

    // The value for WAYLAND_DISPLAY; empty when the compositor did not start.
    QString socket() const
    {
        const QDir folder(m_folder.path());
        const auto name = folder.entryList({ QStringLiteral("wayland-?") }, QDir::System).value(0);
        return name.isEmpty() ? QString() : folder.filePath(name);
    }

private:
    QString config() const { return m_folder.filePath(QStringLiteral("config")); }

    bool configure() const
    {
        QFile file(config());
        return file.open(QIODevice::WriteOnly)
            && file.write("output * resolution 640x480\nxwayland disable\n") > 0
            && file.setPermissions(QFile::ReadOwner | QFile::ReadOther);
    }

    // The compositor refuses to run as root.
    QStringList asAnyoneButRoot() const
    {
        const auto* nobody = ::getpwnam("nobody");
        if (::geteuid() != 0 || !nobody)
            return {};
        const auto owner = QFile::encodeName(m_folder.path());
        if (::chown(owner.constData(), nobody->pw_uid, nobody->pw_gid) != 0)
            return {};
        return { QStringLiteral("setpriv"), QStringLiteral("--reuid=nobody"),
            QStringLiteral("--regid=nogroup"), QStringLiteral("--clear-groups"),
            QStringLiteral("--inh-caps=-all"), QStringLiteral("--pdeathsig=KILL") };
    }

    // It is there for as long as the program that types: a letter every 50 ms, for ten minutes.
    void plugInKeyboard()
    {
        m_keyboard = std::make_unique<Daemon>(QStringLiteral("wtype"),
            QStringList { QStringLiteral("-d"), QStringLiteral("50"), QString(12'000, u'a') },
            QList<std::pair<QString, QString>> { { QStringLiteral("WAYLAND_DISPLAY"), socket() } });
    }

    QTemporaryDir m_folder;
    std::unique_ptr<Daemon> m_compositor;
    std::unique_ptr<Daemon> m_keyboard;
};
