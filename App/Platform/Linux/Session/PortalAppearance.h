// The desktop's look as the settings portal tells it; light and plain until it has.
#pragma once

#include "App/Platform/Appearance.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QHash>
#include <QVariant>

class QDBusMessage;
class QDBusVariant;

class PortalAppearance final : public Appearance {
    Q_OBJECT

public:
    explicit PortalAppearance(QDBusConnection bus = QDBusConnection::sessionBus());

    bool isDark() const override { return m_look.dark; }
    QColor accent() const override { return m_look.accent; }
    QString fontFamily() const override { return m_look.fontFamily; }
    QString iconTheme() const override { return m_look.iconTheme; }

private Q_SLOTS:
    void changeSetting(const QString& space, const QString& key, const QDBusVariant& value);

private:
    struct Look {
        bool dark = false;
        QColor accent;
        QString fontFamily;
        QString iconTheme;

        bool operator==(const Look&) const = default;
    };

    void readAll();
    void learnAll(const QDBusMessage& answer);
    void show();
    QColor readAccent() const;
    QString readFontFamily() const;
    QString readIconTheme() const;

    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    QHash<QString, QVariant> m_settings; // By namespace and key, with a slash between.
    QHash<QString, QVariant> m_changedSince; // The last reading was asked for.
    Look m_look;
};
