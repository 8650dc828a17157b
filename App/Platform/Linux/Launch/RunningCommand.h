// A program that was started: what it writes to standard error, and how it ends.
#pragma once

#include "App/Platform/CommandRunner.h"
#include "App/Platform/Linux/Background/BackgroundWork.h"

#include <QObject>
#include <QPointer>
#include <QSocketNotifier>

#include <sys/types.h>

class RunningCommand final : public QObject {
public:
    // Deletes itself when there is nothing left to do.
    explicit RunningCommand(QObject* parent);
    // What still writes can go on doing so.
    ~RunningCommand() override;

    // Takes the reading end of its standard error.
    void follow(pid_t process, int errors, QObject* waiter, std::function<void(CommandEnd)> ended);

private:
    void awaitEnd();
    void awaitEndBeside();
    void reap();
    void closeHandle();
    void end(bool succeeded);
    void readErrors();
    void readRest();
    void closeErrors();
    bool isWrittenTo() const;

    pid_t m_process = -1;
    int m_handle = -1; // Of the process, readable once it has ended.
    int m_errors = -1;
    QSocketNotifier m_gone { QSocketNotifier::Read };
    QSocketNotifier m_written { QSocketNotifier::Read };
    BackgroundWork m_wait;
    QByteArray m_kept;
    QPointer<QObject> m_waiter;
    std::function<void(CommandEnd)> m_ended;
    bool m_hasEnded = false;
};
