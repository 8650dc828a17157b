#pragma once

#include "App/Platform/CommandRunner.h"

#include <QList>
#include <QPointer>

#include <utility>

struct FakeCommandRunner final : CommandRunner {
    struct Command {
        QString path;
        QStringList arguments;
        QPointer<QObject> waiter;
        std::function<void(CommandEnd)> ended;
    };

    std::optional<QString> run(const QString& path, const QStringList& arguments, QObject* waiter,
        std::function<void(CommandEnd)> ended) override
    {
        if (!failure)
            commands.append({ path, arguments, waiter, std::move(ended) });
        return failure;
    }

    // Ends the oldest command.
    void end(const CommandEnd& how)
    {
        const auto command = commands.takeFirst();
        if (command.waiter)
            command.ended(how);
    }

    QList<Command> commands = {};
    std::optional<QString> failure = {}; // Why nothing starts.
};
