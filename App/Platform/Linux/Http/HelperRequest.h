// One request that a helper program sends.
#pragma once

#include "App/Platform/HttpClient.h"

#include <QObject>
#include <QProcess>
#include <QTimer>

class HelperRequest final : public QObject {
    Q_OBJECT

public:
    // Belongs to the waiter, and ends by itself once it is done.
    HelperRequest(QObject* waiter, std::function<void(HttpResult)> done);
    ~HelperRequest() override;

    void start(const QString& helper, const HttpRequest& request);

private:
    void read();
    void ended(int status, QProcess::ExitStatus exit);
    void finish(const HttpResult& result);

    std::function<void(HttpResult)> m_done;
    QProcess m_process;
    QTimer m_deadline;
    QByteArray m_body;
};
