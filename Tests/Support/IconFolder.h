// Icon themes of a test's own, and no others.
#pragma once

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

class IconFolder final {
public:
    IconFolder()
    {
        qputenv("HOME", m_folder.path().toLocal8Bit());
        qputenv("XDG_DATA_HOME", m_folder.path().toLocal8Bit());
        qputenv("XDG_DATA_DIRS", m_folder.filePath(QStringLiteral("none")).toLocal8Bit());
    }

    // A name that no other test has, so that nothing is known of it from there.
    QString theme() const { return QDir(m_folder.path()).dirName(); }
    QString path(const QString& name) const { return m_folder.filePath(name); }

    bool write(const QString& name, const QByteArray& bytes) const
    {
        QDir(m_folder.path()).mkpath(QFileInfo(name).path());
        QFile file(path(name));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }

    // With the folders 16 and 48, of pictures of that size, and "any".
    bool addTheme(const QString& theme, const QByteArray& parents = {}) const
    {
        return write(QStringLiteral("icons/") + theme + QStringLiteral("/index.theme"),
            "[Icon Theme]\nName=Test\nDirectories=48,16,any\nInherits=" + parents
                + "\n[48]\nSize=48\nType=Fixed\n[16]\nSize=16\nType=Fixed\n"
                  "[any]\nSize=16\nType=Scalable\nMinSize=8\nMaxSize=512\n");
    }

    // A red rectangle in a picture of 16 by 16.
    bool addShape(const QString& name, const QByteArray& rectangle) const
    {
        return write(QStringLiteral("icons/") + name,
            "<svg xmlns='http://www.w3.org/2000/svg' width='16' height='16'><rect " + rectangle
                + " fill='#f00'/></svg>");
    }

    // Its left half in one colour, its right half in another.
    bool addHalves(const QString& name, int side, const QColor& left, const QColor& right) const
    {
        QImage image(side, side, QImage::Format_ARGB32);
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x)
                image.setPixelColor(x, y, x < side / 2 ? left : right);
        }
        const QString file = path(QStringLiteral("icons/") + name);
        return QDir().mkpath(QFileInfo(file).path()) && image.save(file);
    }

private:
    QTemporaryDir m_folder;
};
