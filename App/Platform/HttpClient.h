// Sends requests to HTTP servers of this machine, and to no other.
#pragma once

#include "App/Core/Result.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>

class QObject;

struct HttpRequest {
    QUrl url;
    std::chrono::milliseconds timeout; // From sending it to the last byte of the reply.
    QByteArray contentType = {}; // With one it is a POST of the body, else a GET.
    QByteArray body = {};
};

struct TransportError {
    enum class Kind {
        cannotConnectToHost,
        cannotFindHost,
        networkConnectionLost,
        timedOut,
        other,
    };

    Kind kind = Kind::other;
    QString description = {}; // For the user.
};

// The body of whatever reply came, also of one that speaks of an error.
using HttpResult = Result<QByteArray, TransportError>;

class HttpClient {
public:
    virtual ~HttpClient() = default;
    static HttpClient& shared(); // Defined in App/Wiring.cpp.

    // Hands over the result in a later turn of the event loop. The request is cancelled when its
    // waiter goes, and done is never called then.
    virtual void send(
        const HttpRequest& request, QObject* waiter, std::function<void(HttpResult)> done)
        = 0;
};
