// Programs started and waited for by the system's own calls: a QProcess would end with Corvella and
// take its program along.
#pragma once

#include "App/Platform/CommandRunner.h"

class PosixCommandRunner final : public CommandRunner {
public:
    PosixCommandRunner();

    std::optional<QString> run(const QString& path, const QStringList& arguments, QObject* waiter,
        std::function<void(CommandEnd)> ended) override;
};
