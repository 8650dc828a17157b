#include "App/Platform/Linux/Calendar/EdsSources.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QMap>
#include <QVariantMap>

#include <chrono>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

using Interfaces = QMap<QString, QVariantMap>;
using Objects = QMap<QDBusObjectPath, Interfaces>;

static const auto service = u"org.gnome.evolution.dataserver.Sources5"_s;
static const auto path = u"/org/gnome/evolution/dataserver/SourceManager"_s;
static const auto sourceInterface = u"org.gnome.evolution.dataserver.Source"_s;
static const auto objectManager = u"org.freedesktop.DBus.ObjectManager"_s;
static const auto theBus = u"org.freedesktop.DBus"_s;

namespace {

constexpr qsizetype mostSources = 4096;
constexpr qsizetype mostCalendars = 256;
constexpr qsizetype longestSource = 1 << 20; // Characters.
constexpr int mostAncestors = 16;

struct Source {
    bool isCalendar = false;
    bool isEnabled = true;
    QString parent = {};
};

Source parsed(const QString& text)
{
    Source source;
    QStringView section;
    for (const auto line : QStringView(text).split(u'\n')) {
        const auto trimmed = line.trimmed();
        if (trimmed.startsWith(u'[')) {
            section = trimmed;
            source.isCalendar |= section == u"[Calendar]"_s;
        }
        const auto equals = trimmed.indexOf(u'=');
        if (section != u"[Data Source]"_s || equals < 0)
            continue;
        const auto key = trimmed.first(equals).trimmed();
        const auto value = trimmed.sliced(equals + 1).trimmed();
        if (key == u"Enabled"_s)
            source.isEnabled = value == u"true"_s || value == u"1"_s;
        else if (key == u"Parent"_s)
            source.parent = value.toString();
    }
    return source;
}

bool isEnabled(const QHash<QString, Source>& sources, Source source)
{
    for (int depth = 0; depth < mostAncestors; ++depth) {
        if (!source.isEnabled)
            return false;
        const auto parent = sources.constFind(source.parent);
        if (source.parent.isEmpty() || parent == sources.cend())
            return true;
        source = *parent;
    }
    return false;
}

QHash<QString, QString> sourcesIn(const QDBusMessage& answer)
{
    QHash<QString, QString> sources;
    const auto objects = qdbus_cast<Objects>(answer.arguments().constFirst());
    for (const auto& interfaces : objects) {
        const auto properties = interfaces.value(sourceInterface);
        const auto uid = properties.value(u"UID"_s).toString();
        const auto text = properties.value(u"Data"_s).toString();
        if (!uid.isEmpty() && text.size() <= longestSource && sources.size() < mostSources)
            sources.insert(uid, text);
    }
    return sources;
}

}

EdsSources::EdsSources(const QDBusConnection& bus)
    : m_bus(bus)
    , m_question(bus)
{
    m_soon.setSingleShot(true);
    m_soon.setInterval(std::chrono::milliseconds(200));
    m_soon.callOnTimeout(this, &EdsSources::ask);
    m_retry.callOnTimeout(this, &EdsSources::ask);
}

QStringList EdsSources::calendarsAmong(const QHash<QString, QString>& texts)
{
    QHash<QString, Source> sources;
    for (auto text = texts.cbegin(); text != texts.cend(); ++text)
        sources.insert(text.key(), parsed(text.value()));
    QStringList calendars;
    for (auto source = sources.cbegin(); source != sources.cend(); ++source) {
        if (source->isCalendar && isEnabled(sources, *source))
            calendars.append(source.key());
    }
    calendars.sort();
    return calendars.first(std::min(calendars.size(), mostCalendars));
}

void EdsSources::look()
{
    if (!m_bus.isConnected())
        return;
    if (!std::exchange(m_isFollowed, true))
        follow();
    m_retry.succeeded();
    ask();
}

// Without names of services, whose owners the library would wait for; with types, since a signal of
// others would end the program when it meets the slot.
void EdsSources::follow()
{
    m_bus.connect(QString(), path, objectManager, u"InterfacesAdded"_s, {}, u"oa{sa{sv}}"_s, this,
        SLOT(hear(QDBusMessage)));
    m_bus.connect(QString(), path, objectManager, u"InterfacesRemoved"_s, {}, u"oas"_s, this,
        SLOT(hear(QDBusMessage)));
    m_bus.connect(QString(), QString(), u"org.freedesktop.DBus.Properties"_s,
        u"PropertiesChanged"_s, { sourceInterface }, u"sa{sv}as"_s, this,
        SLOT(hearProperties(QDBusMessage)));
    m_bus.connect(QString(), u"/org/freedesktop/DBus"_s, theBus, u"NameOwnerChanged"_s, { service },
        u"sss"_s, this, SLOT(changeOwner(QDBusMessage)));
}

void EdsSources::ask()
{
    m_isStale = true;
    if (m_question.isOpen())
        return;
    m_isStale = false;
    m_question.ask(
        QDBusMessage::createMethodCall(service, path, objectManager, u"GetManagedObjects"_s),
        [this](const QDBusMessage& answer) { learn(answer); });
}

void EdsSources::learn(const QDBusMessage& answer)
{
    // Whose signals counted was not known yet, or the answer is older than they.
    if (m_isStale)
        m_soon.start();
    // Where no such service can be had, its coming will be heard of.
    if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != u"a{oa{sa{sv}}}"_s) {
        if (answer.errorName() != u"org.freedesktop.DBus.Error.ServiceUnknown"_s)
            m_retry.later();
        return;
    }
    m_retry.succeeded();
    m_owner = answer.service();
    const auto calendars = calendarsAmong(sourcesIn(answer));
    if (calendars == m_calendars)
        return;
    m_calendars = calendars;
    Q_EMIT changed();
}

void EdsSources::hear(const QDBusMessage& signal)
{
    if (m_question.isOpen())
        m_isStale = true;
    else if (signal.service() == m_owner && !m_soon.isActive())
        m_soon.start();
}

// That a calendar's server was reached is said here as well, and of no interest.
void EdsSources::hearProperties(const QDBusMessage& signal)
{
    const auto changed = qdbus_cast<QVariantMap>(signal.arguments().at(1));
    if (changed.contains(u"Data"_s) || signal.arguments().at(2).toStringList().contains(u"Data"_s))
        hear(signal);
}

void EdsSources::changeOwner(const QDBusMessage& signal)
{
    if (signal.service() != theBus)
        return;
    m_owner.clear();
    if (signal.arguments().at(2).toString().isEmpty())
        m_retry.later();
    else if (!m_question.isOpen())
        ask();
}
