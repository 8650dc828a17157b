// A user whose only programs are those of the test. Each keeps what it was started with.
#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

class DesktopEntries final {
public:
    DesktopEntries()
    {
        qputenv("HOME", path().toUtf8());
        qputenv("XDG_DATA_HOME", path(QStringLiteral("data")).toUtf8());
        qputenv("XDG_CONFIG_HOME", path(QStringLiteral("config")).toUtf8());
        qputenv("XDG_DATA_DIRS", path(QStringLiteral("none")).toUtf8());
        qputenv("XDG_CONFIG_DIRS", path(QStringLiteral("none")).toUtf8());
        qunsetenv("XDG_CURRENT_DESKTOP");
        // Found by name, as programs are.
        qputenv("PATH", path(QStringLiteral("bin")).toUtf8() + ':' + qgetenv("PATH"));
    }

    QString path(const QString& name = {}) const { return m_folder.filePath(name); }

    // A program that writes its arguments to a file of its name, as a line, and an entry that
    // starts it.
    void add(const QString& name, const QByteArray& lines = {}, const QByteArray& more = {})
    {
        const auto kept = path(name).toUtf8();
        write(QStringLiteral("bin/") + name,
            "#!/bin/sh\nprintf '%s\\n' \"$*\" >" + kept + ".new\nmv " + kept + ".new " + kept + "\n"
                + more);
        QFile::setPermissions(path(QStringLiteral("bin/") + name),
            QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        write(QStringLiteral("data/applications/") + name + QStringLiteral(".desktop"),
            "[Desktop Entry]\nType=Application\nName=Test\nExec=" + name.toUtf8() + " %u\n"
                + lines);
    }

    void choose(const QString& name, const QByteArray& schemes)
    {
        QByteArray list("[Default Applications]\n");
        for (const auto& scheme : schemes.split(' '))
            list += "x-scheme-handler/" + scheme + '=' + name.toUtf8() + ".desktop\n";
        write(QStringLiteral("config/mimeapps.list"), list);
    }

    // A line; empty while the program has not been started.
    QByteArray arguments(const QString& name) const
    {
        QFile file(path(name));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

    void write(const QString& name, const QByteArray& text)
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        if (!file.open(QFile::WriteOnly) || file.write(text) < 0)
            qFatal("No file to be had");
    }

private:
    QTemporaryDir m_folder;
};
