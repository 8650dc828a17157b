// A folder with small files as the kernel shows them.
#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <initializer_list>
#include <utility>

class SysfsFolder final {
public:
    using Attributes = std::initializer_list<std::pair<const char*, const char*>>;

    QString path() const { return m_folder.path(); }
    QString path(const QString& name) const { return m_folder.filePath(name); }

    void write(const QString& name, const QByteArray& value)
    {
        QDir(path()).mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        if (!file.open(QFile::WriteOnly) || file.write(value + '\n') < 0)
            qFatal("No file to be had");
    }

    void add(const QString& device, Attributes attributes)
    {
        for (const auto& [name, value] : attributes)
            write(device + u'/' + QString::fromUtf8(name), value);
    }

private:
    QTemporaryDir m_folder;
};
