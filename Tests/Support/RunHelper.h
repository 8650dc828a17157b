// Runs a helper program to its end.
#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

#include <utility>

struct HelperEnd {
    int status = -1; // Also when it did not end by itself, or not in time.
    QByteArray said = {}; // On standard error.
};

inline HelperEnd runHelper(const QString& helper, const QStringList& arguments,
    const QList<std::pair<QString, QString>>& environment = {})
{
    auto variables = QProcessEnvironment::systemEnvironment();
    for (const auto& [name, value] : environment)
        variables.insert(name, value);
    QProcess process;
    process.setProcessEnvironment(variables);
    process.start(helper, arguments);
    const bool hasEnded = process.waitForFinished();
    const auto said = process.readAllStandardError();
    return { hasEnded && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
        said };
}
