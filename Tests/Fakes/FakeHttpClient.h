#pragma once

#include "App/Platform/HttpClient.h"

#include <QPointer>

#include <utility>

struct FakeHttpClient final : HttpClient {
    struct Exchange {
        HttpRequest request;
        QPointer<QObject> waiter;
        std::function<void(HttpResult)> done;
    };

    void send(
        const HttpRequest& request, QObject* waiter, std::function<void(HttpResult)> done) override
    {
        exchanges.append({ request, waiter, std::move(done) });
    }

    // Ends the oldest exchange to this path.
    void answer(const QString& path, const HttpResult& result)
    {
        for (int index = 0; index < exchanges.size(); ++index) {
            if (exchanges[index].request.url.path() != path)
                continue;
            const auto exchange = exchanges.takeAt(index);
            if (exchange.waiter)
                exchange.done(result);
            return;
        }
        qFatal("Nothing was asked for there");
    }

    QList<Exchange> exchanges = {};
};
