// The client of a language-model server on this machine that speaks Ollama's HTTP interface. Each
// call is one exchange; nothing is kept, retried or logged.
#pragma once

#include "App/Core/Result.h"
#include "App/Platform/HttpClient.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace Ollama {

struct Error {
    QString domain; // "Ollama" for what the server itself says, "HTTP" or "JSON".
    int code = 1;
    QString description; // For the user.
    std::optional<TransportError::Kind> transport = {}; // In the domain "HTTP" only.
};

// The address of the server, without a path.
const QUrl& base();

// The names of the installed models, in the server's order; after 3 seconds it is given up. As with
// the client, nothing is heard of it when the waiter is gone.
void models(
    HttpClient& client, QObject* waiter, std::function<void(Result<QStringList, Error>)> done);
// The text in better words, trimmed; after 180 seconds it is given up.
void rewrite(HttpClient& client, const QString& text, const QString& model, QObject* waiter,
    std::function<void(Result<QString, Error>)> done);

}
