// The item's menu, as status bars read it over com.canonical.dbusmenu.
#pragma once

#include <QDBusVirtualObject>
#include <QStringList>

class DBusMenu final : public QDBusVirtualObject {
    Q_OBJECT

public:
    explicit DBusMenu(const QStringList& entries);

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override;

Q_SIGNALS:
    void chosen(int entry); // Its index.

private:
    QVariantList reply(const QDBusMessage& message);
    QVariantMap properties(int id) const;
    QVariant layout(int id) const;
    QVariant groupProperties(const QList<int>& ids) const;
    void receive(int id, const QString& event);
    bool knows(int id) const { return id >= 0 && id <= m_entries.size(); }

    QStringList m_entries; // Entry i has the id i + 1; 0 is the menu itself.
};
