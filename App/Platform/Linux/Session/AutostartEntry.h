// A desktop entry that starts a program at login, as the Desktop Application Autostart
// Specification of freedesktop.org has it.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

class AutostartEntry final {
public:
    AutostartEntry() = default;
    explicit AutostartEntry(const QByteArray& text); // Lines that are none are passed over.

    // Without a value: empty.
    QString value(const QString& key) const { return m_values.value(key); }
    // Whether this session starts it: not hidden, not switched off, not another desktop's, and its
    // program there.
    bool isEnabled() const;
    // The program of the command line; empty when there is none.
    QString program() const;

    static QByteArray starting(const QString& program); // With this absolute path.
    static QByteArray hidden(); // Takes the place of one for all users.

private:
    bool isForThisDesktop() const;

    QHash<QString, QString> m_values;
};
