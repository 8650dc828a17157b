#include "App/QuickActions/Ollama.h"

#include <QFutureWatcher>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPromise>
#include <QThreadPool>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto modelsTimeout = 3s;
constexpr auto rewriteTimeout = 180s;
// Bytes. Ten thousand models take no more; decoded, a list can be thirty times as large.
constexpr qsizetype largestList = qsizetype { 4 } * 1024 * 1024;

QString instruction()
{
    return u"Rewrite the following text so it is clearer and more polished. Keep the meaning and "
           "roughly the same length. Reply with only the rewritten text.\n\n"_s;
}

QUrl address(const QString& path)
{
    auto url = Ollama::base();
    url.setPath(path);
    return url;
}

// Works on another thread and is done on the waiter's: a text of many megabytes takes longer to
// encode or to decode than a person who clicks should wait.
template <typename Work, typename Done>
void workBeside(QObject* waiter, Work work, Done done)
{
    using Outcome = decltype(work());
    // Belongs to the waiter and goes with it; what is done is never left to the other thread.
    auto* const watcher = new QFutureWatcher<Outcome>(waiter);
    QObject::connect(watcher, &QFutureWatcherBase::finished, watcher, [watcher, done] {
        watcher->deleteLater();
        done(watcher->future().takeResult());
    });
    const auto promise = std::make_shared<QPromise<Outcome>>();
    watcher->setFuture(promise->future());
    QThreadPool::globalInstance()->start([promise, work] {
        promise->start();
        promise->addResult(work());
        promise->finish();
    });
}

template <typename Value>
using Decoder = Result<Value, Ollama::Error> (*)(const QByteArray& reply);

template <typename Value>
void ask(HttpClient& client, const HttpRequest& request, Decoder<Value> decode, QObject* waiter,
    std::function<void(Result<Value, Ollama::Error>)> done)
{
    client.send(request, waiter, [decode, waiter, done](const HttpResult& result) {
        if (const auto* error = std::get_if<TransportError>(&result)) {
            done(Ollama::Error { u"HTTP"_s, 1, error->description, error->kind });
            return;
        }
        workBeside(
            waiter, [decode, reply = std::get<QByteArray>(result)] { return decode(reply); }, done);
    });
}

Ollama::Error jsonError(const QString& description)
{
    return { u"JSON"_s, 1, description };
}

Ollama::Error strangeReply()
{
    return jsonError(u"The reply is not what Ollama would send"_s);
}

std::optional<QJsonObject> object(const QByteArray& reply)
{
    const auto document = QJsonDocument::fromJson(reply);
    return document.isObject() ? std::optional(document.object()) : std::nullopt;
}

Result<QStringList, Ollama::Error> decodeTags(const QByteArray& reply)
{
    if (reply.size() > largestList)
        return strangeReply();
    const auto tags = object(reply);
    if (!tags || !(*tags)["models"_L1].isArray())
        return strangeReply();
    QStringList names;
    for (const auto& model : (*tags)["models"_L1].toArray()) {
        const auto name = model.toObject()["name"_L1];
        if (!name.isString())
            return strangeReply();
        names.append(name.toString());
    }
    return names;
}

bool isOptionalString(const QJsonValue& value)
{
    return value.isString() || value.isNull() || value.isUndefined();
}

Result<QString, Ollama::Error> decodeGeneration(const QByteArray& reply)
{
    const auto generation = object(reply);
    if (!generation)
        return strangeReply();
    const auto response = (*generation)["response"_L1];
    const auto error = (*generation)["error"_L1];
    if (!isOptionalString(response) || !isOptionalString(error))
        return strangeReply();
    if (error.isString())
        return Ollama::Error { u"Ollama"_s, 1, error.toString() };
    return response.toString().trimmed();
}

// Absent for half a surrogate pair: no JSON that every reader takes can hold it.
std::optional<QByteArray> encodeGeneration(const QString& text, const QString& model)
{
    if (!text.isValidUtf16() || !model.isValidUtf16())
        return {};
    const QJsonObject generation {
        { u"model"_s, model },
        { u"prompt"_s, instruction() + text },
        { u"stream"_s, false },
    };
    return QJsonDocument(generation).toJson(QJsonDocument::Compact);
}

}

const QUrl& Ollama::base()
{
    static const QUrl address = [] {
        const QUrl constant(u"http://localhost:11434"_s, QUrl::StrictMode);
        if (!constant.isValid())
            qFatal("The address of the model server is none");
        return constant;
    }();
    return address;
}

void Ollama::models(
    HttpClient& client, QObject* waiter, std::function<void(Result<QStringList, Error>)> done)
{
    const HttpRequest request { address(u"/api/tags"_s), modelsTimeout };
    ask<QStringList>(client, request, decodeTags, waiter, std::move(done));
}

void Ollama::rewrite(HttpClient& client, const QString& text, const QString& model, QObject* waiter,
    std::function<void(Result<QString, Error>)> done)
{
    const auto send = [&client, waiter, done](const std::optional<QByteArray>& body) {
        if (!body) {
            done(jsonError(u"The text is not valid Unicode"_s));
            return;
        }
        const HttpRequest request { address(u"/api/generate"_s), rewriteTimeout, "application/json",
            *body };
        ask<QString>(client, request, decodeGeneration, waiter, done);
    };
    workBeside(
        waiter, [text, model] { return encodeGeneration(text, model); }, send);
}
