// Expands events by a helper program, one request after the other.
#pragma once

#include "App/Platform/Linux/Calendar/EventExpander.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <chrono>
#include <deque>
#include <memory>

class QProcess;

class HelperEventExpander final : public QObject, public EventExpander {
    Q_OBJECT

public:
    using Answer = std::function<void(const std::optional<Result>&)>;

    // Of all time: a helper that takes longer is ended. It limits by itself how much it works.
    explicit HelperEventExpander(
        QString helper, std::chrono::milliseconds longestRun = std::chrono::seconds(10));
    ~HelperEventExpander() override;

    // A newer request of the same source and context takes the place of one that still waits.
    void expand(const Request& request, QObject* context, const Answer& answer) override;

private:
    struct Job {
        Request request;
        QPointer<QObject> context;
        Answer answer;
    };

    void startNext();
    void start();
    void read();
    void finish(bool isWhole);
    void endProcess();

    QString m_helper;
    std::deque<Job> m_waiting;
    Job m_current;
    std::unique_ptr<QProcess> m_process;
    QByteArray m_output;
    QTimer m_deadline;
};
