// Tells that the machine's time zone became another, and lets local time follow.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

class ZoneWatch final : public QObject {
    Q_OBJECT

public:
    // The link that names the zone. Nothing is watched where the environment names one: it then
    // counts whatever the machine's is.
    explicit ZoneWatch(const QString& link = QStringLiteral("/etc/localtime"));
    ~ZoneWatch() override;

Q_SIGNALS:
    void zoneChanged();

private:
    void arm();
    void drain();

    const QByteArray m_link;
    int m_descriptor = -1;
    int m_watch = -1;
    bool m_isMissing = false; // Then the folder is watched for it.
    QSocketNotifier m_notifier { QSocketNotifier::Read };
};
