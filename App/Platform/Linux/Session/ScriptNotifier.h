// Notifications by a display-notification script, for sessions without a notification service.
#pragma once

#include "App/Platform/Notifier.h"

class ScriptNotifier final : public Notifier {
public:
    explicit ScriptNotifier(QString interpreter = QStringLiteral("/usr/bin/osascript"));

    // Title and body are quoted, so that no text can end its string or add commands.
    static QString script(const QString& title, const QString& body);

    // Launches the interpreter and forgets it; one that cannot be launched is ignored.
    void notify(const QString& title, const QString& body) override;

private:
    QString m_interpreter;
};
