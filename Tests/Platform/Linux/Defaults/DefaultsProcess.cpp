// A second program over the same defaults: does what the lines on its input say, or counts until
// it is killed. Answers every line with one line.
#include "App/Platform/Linux/Defaults/DefaultsFile.h"
#include "App/Platform/Linux/Defaults/JsonUserDefaults.h"
#include "App/Platform/Linux/Files/FileLock.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <iostream>
#include <memory>
#include <sys/resource.h>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int keys = 8;

QString numbered(int key)
{
    return u"key%1"_s.arg(key);
}

qint64 stored(const QString& path, const QString& key)
{
    const auto entries = DefaultsFile(path).read();
    return entries ? entries->value(key).toLongLong() : -1;
}

// Prints what has reached the disk, so that the killer knows what must not be lost.
[[noreturn]] void count(const QString& path)
{
    JsonUserDefaults defaults(path);
    defaults.setValue(u"bulk"_s, QByteArray(20000, 'x'));
    qint64 seen = stored(path, numbered(keys - 1));
    for (qint64 n = defaults.integer(numbered(0)).value_or(0) + 1;; ++n) {
        for (int key = 0; key < keys; ++key)
            defaults.setValue(numbered(key), n);
        const qint64 now = stored(path, numbered(keys - 1));
        if (std::exchange(seen, now) != now)
            std::cout << now << std::endl;
    }
}

class Conversation final {
public:
    explicit Conversation(const QString& path)
        : m_path(path)
        , m_defaults(std::make_unique<JsonUserDefaults>(path))
    {
    }

    QString answer(const QStringList& words)
    {
        const auto& verb = words.at(0);
        const auto argument = words.value(1);
        if (verb == u"set")
            m_defaults->setValue(argument, words.value(2).toLongLong());
        else if (verb == u"value")
            return QString::number(m_defaults->integer(argument).value_or(-1));
        else if (verb == u"disk")
            return QString::number(stored(m_path, argument));
        else if (verb == u"reopen")
            reopen();
        else if (verb == u"limit")
            limit(argument.toULong());
        else if (verb == u"fill")
            return fill() ? u"full"_s : u"room left"_s;
        else if (verb == u"drain")
            QFile::remove(filler());
        else if (verb == u"lock")
            return lock() ? u"locked"_s : u"busy"_s;
        else if (verb == u"unlock")
            m_lock.reset();
        else if (verb == u"size")
            return QString::number(QFileInfo(m_path + argument).size());
        return u"done"_s;
    }

private:
    QString filler() const { return QFileInfo(m_path).path() + u"/filler"_s; }

    void reopen()
    {
        m_defaults.reset();
        m_defaults = std::make_unique<JsonUserDefaults>(m_path);
    }

    static void limit(unsigned long bytes)
    {
        rlimit limits {};
        getrlimit(RLIMIT_FSIZE, &limits);
        limits.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limits);
    }

    bool fill() const
    {
        QFile file(filler());
        if (!file.open(QFile::WriteOnly | QFile::Unbuffered))
            return false;
        const QByteArray block(512, 'f');
        for (int blocks = 0; blocks < 10000; ++blocks) {
            if (file.write(block) != block.size())
                return true;
        }
        return false;
    }

    bool lock()
    {
        m_lock = std::make_unique<FileLock>(m_path + u".lock"_s, 1s);
        return m_lock->isHeld();
    }

    QString m_path;
    std::unique_ptr<JsonUserDefaults> m_defaults;
    std::unique_ptr<FileLock> m_lock;
};

}

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const auto arguments = QCoreApplication::arguments();
    const auto& path = arguments.at(1);
    if (arguments.value(2) == u"count")
        count(path);
    Conversation conversation(path);
    for (std::string line; std::getline(std::cin, line);) {
        const auto words = QString::fromStdString(line).split(u' ');
        std::cout << conversation.answer(words).toStdString() << std::endl;
    }
    return 0;
}
