// Runs other programs beside this one.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class QObject;

struct CommandEnd {
    bool succeeded = false; // With status 0, and not by a signal.
    QByteArray errors = {}; // What it wrote to standard error: the first 64 KiB.
};

class CommandRunner {
public:
    virtual ~CommandRunner() = default;
    static CommandRunner& shared(); // Defined in App/Wiring.cpp.

    // Starts the program at path, without a shell and with the arguments as they are; its standard
    // output goes nowhere. It runs on when the waiter or Corvella goes. Calls ended in a later turn
    // of the event loop, unless the waiter is gone by then or the program was never started: what
    // stood in the way is returned, in words for the user.
    virtual std::optional<QString> run(const QString& path, const QStringList& arguments,
        QObject* waiter, std::function<void(CommandEnd)> ended)
        = 0;
};
