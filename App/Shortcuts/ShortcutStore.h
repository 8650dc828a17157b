// The user's launcher buttons, kept between runs; runs them and keeps what went wrong last.
#pragma once

#include "App/Core/Model.h"
#include "App/Shortcuts/ShortcutItem.h"

class CommandRunner;
class UserDefaults;
class Workspace;

// The programs that open applications and run shortcuts, by their paths.
struct ShortcutTools {
    QString open;
    QString shortcuts;
};

class ShortcutStore final : public Model {
    Q_OBJECT

public:
    ShortcutStore(UserDefaults& defaults, Workspace& workspace, CommandRunner& runner,
        const ShortcutTools& tools);
    static ShortcutStore& shared(); // Defined in App/Wiring.cpp.

    const QList<ShortcutItem>& items() const { return m_items; }
    QString lastError() const { return m_lastError; } // Empty: none since the last run began.

    void setItems(const QList<ShortcutItem>& items); // Stored at once.

    void run(const ShortcutItem& item);

private:
    void follow();
    void runUrl(const QString& target);
    void runApp(const QString& target);
    void exec(const QString& path, const QStringList& arguments);

    UserDefaults& m_defaults;
    Workspace& m_workspace;
    CommandRunner& m_runner;
    ShortcutTools m_tools;
    QByteArray m_stored; // What the items were last read from or written to.
    QList<ShortcutItem> m_items;
    QString m_lastError;
};
