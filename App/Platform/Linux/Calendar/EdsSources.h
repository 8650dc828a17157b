// Which calendars the desktop's calendar service (Evolution Data Server) has.
#pragma once

#include "App/Platform/Linux/Bus/BusQuestion.h"
#include "App/Platform/Linux/Calendar/Retry.h"

#include <QDBusConnection>
#include <QHash>
#include <QObject>
#include <QStringList>
#include <QTimer>

class EdsSources final : public QObject {
    Q_OBJECT

public:
    explicit EdsSources(const QDBusConnection& bus);

    // Those of the sources, given as the service keeps them, that are calendars and enabled with
    // all that they belong to. Sorted.
    static QStringList calendarsAmong(const QHash<QString, QString>& sources);

    // Asks now and whenever something changes. Starts the service.
    void look();
    QStringList calendars() const { return m_calendars; } // By identifier, sorted.

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void hear(const QDBusMessage& signal);
    void hearProperties(const QDBusMessage& signal);
    void changeOwner(const QDBusMessage& signal);

private:
    void follow();
    void ask();
    void learn(const QDBusMessage& answer);

    QDBusConnection m_bus;
    BusQuestion m_question;
    QTimer m_soon;
    Retry m_retry;
    bool m_isFollowed = false;
    bool m_isStale = false;
    QString m_owner; // The only one whose signals count.
    QStringList m_calendars;
};
