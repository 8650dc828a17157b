// A server of language models that listens on this machine for as long as the test holds it.
#pragma once

#include "Tests/Support/Daemon.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>
#include <QUrl>

#include <utility>

class ModelServer final {
public:
    // Texts in Latin 1, and how often each.
    using Parts = QList<std::pair<QByteArray, int>>;

    explicit ModelServer(const QString& address = QStringLiteral("127.0.0.1"), int port = 0)
        : m_daemon(QStringLiteral("/usr/bin/python3"),
            { QStringLiteral(CORVELLA_MODEL_SERVER), QString::number(port), address })
    {
        waitFor("port");
        m_port = told("port").toInt();
    }

    // Behaves as at first and has heard nothing.
    void beginAnew()
    {
        set({});
        m_news.clear();
    }

    bool isRunning() const { return m_daemon.isRunning(); }
    int port() const { return m_port; }

    QUrl url(const QString& path) const
    {
        return QUrl(QStringLiteral("http://localhost:%1%2").arg(port()).arg(path));
    }

    // Fields of the Behaviour in the script.
    void set(const QJsonObject& fields)
    {
        m_news.removeIf([](const QJsonObject& news) { return news.contains(u"set"); });
        m_daemon.tell(QJsonDocument(fields).toJson(QJsonDocument::Compact));
        waitFor("set");
    }

    void send(const Parts& parts, const char* then = "close", double interval = 0)
    {
        QJsonArray list;
        for (const auto& [text, times] : parts)
            list.append(QJsonArray { QString::fromLatin1(text), times });
        set({ { QStringLiteral("parts"), list }, { QStringLiteral("then"), QLatin1String(then) },
            { QStringLiteral("interval"), interval } });
    }

    void redirect(const QString& path, int status, const QString& location)
    {
        set({ { QStringLiteral("redirections"),
            QJsonObject { { path, QJsonArray { status, location } } } } });
    }

    // So far.
    QList<QJsonObject> requests()
    {
        read();
        QList<QJsonObject> requests;
        for (const auto& news : std::as_const(m_news)) {
            if (news.contains(u"path"))
                requests.append(news);
        }
        return requests;
    }

    // Clients that went before their reply was whole.
    bool wasHungUpOn()
    {
        read();
        return !told("hungUp").isUndefined();
    }

private:
    void read()
    {
        m_output += m_daemon.output();
        while (m_output.contains('\n')) {
            const auto end = m_output.indexOf('\n');
            m_news.append(QJsonDocument::fromJson(m_output.first(end)).object());
            m_output.remove(0, end + 1);
        }
    }

    QJsonValue told(const char* field) const
    {
        for (const auto& news : m_news) {
            if (news.contains(QLatin1String(field)))
                return news[QLatin1String(field)];
        }
        return QJsonValue::Undefined;
    }

    void waitFor(const char* field)
    {
        const auto isThere = [&] {
            read();
            return !told(field).isUndefined();
        };
        QVERIFY2(QTest::qWaitFor(isThere), m_output.constData());
    }

    Daemon m_daemon;
    int m_port = 0;
    QByteArray m_output;
    QList<QJsonObject> m_news;
};
