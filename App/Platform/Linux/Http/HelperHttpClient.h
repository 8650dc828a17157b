// Sends each request by a helper program of its own.
#pragma once

#include "App/Platform/HttpClient.h"

class HelperHttpClient final : public HttpClient {
public:
    explicit HelperHttpClient(QString helper);

    void send(
        const HttpRequest& request, QObject* waiter, std::function<void(HttpResult)> done) override;

private:
    QString m_helper;
};
