// A clipboard and a model server that answer when a test wants them to.
#pragma once

#include "Tests/Fakes/FakeClipboard.h"
#include "Tests/Fakes/FakeHttpClient.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QThreadPool>

struct ActionsSetup {
    // What the server says is understood on another thread.
    static void settle()
    {
        QCoreApplication::processEvents();
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }

    static QByteArray tags(const QStringList& names)
    {
        QJsonArray models;
        for (const auto& name : names)
            models.append(QJsonObject { { QStringLiteral("name"), name } });
        return QJsonDocument(QJsonObject { { QStringLiteral("models"), models } }).toJson();
    }

    void copyElsewhere(const QString& text)
    {
        clipboard.text = text;
        clipboard.answer();
        settle();
    }

    // The oldest question that is still open.
    void answerModels(const HttpResult& result) { answer("/api/tags", result); }
    void answerRewrite(const HttpResult& result) { answer("/api/generate", result); }
    void answer(const char* path, const HttpResult& result)
    {
        settle();
        client.answer(QString::fromLatin1(path), result);
        settle();
    }

    static HttpResult failure(TransportError::Kind kind)
    {
        return TransportError { kind, QStringLiteral("It failed") };
    }
    static HttpResult stopped() { return failure(TransportError::Kind::cannotConnectToHost); }

    FakeClipboard clipboard;
    FakeHttpClient client;
};
