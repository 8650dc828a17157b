#include "App/Platform/Linux/Session/PortalAppearance.h"

#include "App/Platform/Linux/Session/FontNames.h"
#include "App/Platform/Linux/Session/GtkSettings.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

using Spaces = QMap<QString, QVariantMap>;

static const auto service = u"org.freedesktop.portal.Desktop"_s;
static const auto path = u"/org/freedesktop/portal/desktop"_s;
static const auto interface = u"org.freedesktop.portal.Settings"_s;

static const auto colours = u"org.freedesktop.appearance"_s;
static const auto gnome = u"org.gnome.desktop.interface"_s;
static const auto kde = u"org.kde.kdeglobals.General"_s;
static const auto kdeIcons = u"org.kde.kdeglobals.Icons"_s;

// All that is kept of what the portal tells.
static const auto colorScheme = colours + u"/color-scheme"_s;
static const auto accentColor = colours + u"/accent-color"_s;
static const auto gnomeFont = gnome + u"/font-name"_s;
static const auto kdeFont = kde + u"/font"_s;
static const auto gnomeIconTheme = gnome + u"/icon-theme"_s;
static const auto kdeIconTheme = kdeIcons + u"/Theme"_s;

static bool isOfInterest(const QString& setting)
{
    return setting == colorScheme || setting == accentColor || setting == gnomeFont
        || setting == kdeFont || setting == gnomeIconTheme || setting == kdeIconTheme;
}

static bool isKde()
{
    const QByteArrayList desktops = qgetenv("XDG_CURRENT_DESKTOP").split(':');
    return desktops.contains("KDE");
}

PortalAppearance::PortalAppearance(QDBusConnection bus)
    : m_bus(bus)
    , m_watcher(service, bus, QDBusServiceWatcher::WatchForRegistration)
{
    qDBusRegisterMetaType<Spaces>();
    m_look.iconTheme = GtkSettings::iconTheme();
    if (!m_bus.isConnected())
        return;
    // Signals are matched by the names of types, and nothing else may have made this one known yet.
    qRegisterMetaType<QDBusVariant>();
    // With its types: a signal of others would end the program when it meets the slot.
    m_bus.connect(service, path, interface, u"SettingChanged"_s, u"ssv"_s, this,
        SLOT(changeSetting(QString, QString, QDBusVariant)));
    // A portal that comes late or again may have missed changes itself.
    connect(&m_watcher, &QDBusServiceWatcher::serviceRegistered, this, &PortalAppearance::readAll);
    readAll();
}

void PortalAppearance::readAll()
{
    m_changedSince.clear();
    auto request = QDBusMessage::createMethodCall(service, path, interface, u"ReadAll"_s);
    request << QStringList { colours, gnome, kde, kdeIcons };
    auto* call = new QDBusPendingCallWatcher(m_bus.asyncCall(request), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        call->deleteLater();
        learnAll(call->reply());
    });
}

void PortalAppearance::learnAll(const QDBusMessage& answer)
{
    const QDBusPendingReply<Spaces> spaces(QDBusPendingCall::fromCompletedCall(answer));
    if (!spaces.isValid())
        return;
    m_settings.clear();
    const auto told = spaces.value();
    for (auto space = told.cbegin(); space != told.cend(); ++space) {
        for (auto setting = space->cbegin(); setting != space->cend(); ++setting) {
            const auto name = space.key() + u'/' + setting.key();
            if (isOfInterest(name))
                m_settings.insert(name, setting.value());
        }
    }
    // Answers and signals may overtake each other; only signals keep their order among themselves.
    m_settings.insert(m_changedSince);
    show();
}

void PortalAppearance::changeSetting(
    const QString& space, const QString& key, const QDBusVariant& value)
{
    const auto setting = space + u'/' + key;
    if (!isOfInterest(setting))
        return;
    m_settings.insert(setting, value.variant());
    m_changedSince.insert(setting, value.variant());
    show();
}

void PortalAppearance::show()
{
    constexpr uint preferDark = 1;
    const Look look {
        .dark = m_settings.value(colorScheme).toUInt() == preferDark,
        .accent = readAccent(),
        .fontFamily = readFontFamily(),
        .iconTheme = readIconTheme(),
    };
    if (look == m_look)
        return;
    m_look = look;
    Q_EMIT changed();
}

QColor PortalAppearance::readAccent() const
{
    const auto value = m_settings.value(accentColor);
    if (value.metaType() != QMetaType::fromType<QDBusArgument>())
        return {};
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != u"(ddd)"_s)
        return {};
    double red = -1;
    double green = -1;
    double blue = -1;
    argument.beginStructure();
    argument >> red >> green >> blue;
    argument.endStructure();
    // Desktops without an accent colour tell one out of range.
    const auto isLight = [](double part) { return part >= 0 && part <= 1; };
    if (!isLight(red) || !isLight(green) || !isLight(blue))
        return {};
    return QColor::fromRgbF(float(red), float(green), float(blue));
}

QString PortalAppearance::readFontFamily() const
{
    const auto family = FontNames::pangoFamily(m_settings.value(gnomeFont).toString());
    if (!family.isEmpty())
        return family;
    return FontNames::kdeFamily(m_settings.value(kdeFont).toString());
}

QString PortalAppearance::readIconTheme() const
{
    const auto gnomes = m_settings.value(gnomeIconTheme).toString();
    const auto kdes = m_settings.value(kdeIconTheme).toString();
    const auto own = isKde() ? kdes : gnomes;
    if (!own.isEmpty())
        return own;
    const auto other = isKde() ? gnomes : kdes;
    return other.isEmpty() ? GtkSettings::iconTheme() : other;
}
