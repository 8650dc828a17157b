#include "App/Platform/Linux/Defaults/JsonUserDefaults.h"

#include "App/Platform/Linux/Files/WholeFile.h"

#include <QFileInfo>

JsonUserDefaults::JsonUserDefaults(const QString& path)
    : m_file(path)
    , m_values(begin())
    , m_worker(m_file, m_values, [this] {
        QMetaObject::invokeMethod(this, &JsonUserDefaults::adopt, Qt::QueuedConnection);
    })
{
    connect(&m_watch, &FolderWatch::changed, this, [this](const QString& name) {
        const QFileInfo link(m_file.path());
        const QFileInfo target(WholeFile::behindLinks(m_file.path()));
        if (name.isEmpty() || name == link.fileName() || name == target.fileName())
            m_worker.reread();
    });
    if (!m_isRead && m_file.isDamaged())
        m_worker.repair();
}

std::optional<UserDefaults::Value> JsonUserDefaults::value(const QString& key) const
{
    const auto found = m_values.constFind(key);
    return found == m_values.constEnd() ? std::nullopt : std::optional(*found);
}

void JsonUserDefaults::setValue(const QString& key, const Value& value)
{
    auto values = m_values;
    values.insert(key, value);
    if (DefaultsCodec::same(values, m_values))
        return;
    m_values = values;
    m_worker.store(key, value);
    Q_EMIT changed();
}

// Watches before it reads, so that no edit falls between the two.
DefaultsCodec::Values JsonUserDefaults::begin()
{
    WholeFile::makeFolder(QFileInfo(m_file.path()).path());
    watch();
    auto entries = m_file.read();
    m_isRead = entries.has_value();
    if (!entries)
        entries = m_file.readLastGood();
    return DefaultsCodec::decodeAll(entries.value_or(DefaultsCodec::Entries()));
}

// Every time anew: the folder may have been removed, and a link may lead elsewhere by now.
void JsonUserDefaults::watch()
{
    m_watch.watch(QFileInfo(m_file.path()).path());
    m_watch.watch(QFileInfo(WholeFile::behindLinks(m_file.path())).path());
}

void JsonUserDefaults::adopt()
{
    watch();
    const auto values = m_worker.collect();
    if (!values || DefaultsCodec::same(*values, m_values))
        return;
    m_values = *values;
    Q_EMIT changed();
}
