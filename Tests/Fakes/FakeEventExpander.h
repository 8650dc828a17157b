#pragma once

#include "App/Platform/Linux/Calendar/EventExpander.h"

#include <QPointer>

#include <utility>

// Takes each summary for an event at the start of the request, and each path for one as well.
struct FakeEventExpander final : EventExpander {
    void expand(const Request& request, QObject* context,
        const std::function<void(const std::optional<Result>&)>& answer) override
    {
        requests.append(request);
        pending.append({ request, context, answer });
        if (!isSlow)
            QMetaObject::invokeMethod(
                context, [this] { answerNext(); }, Qt::QueuedConnection);
    }

    void answerNext()
    {
        const auto [request, context, answer] = pending.takeFirst();
        if (context)
            answer(fails ? std::nullopt : std::optional(result(request)));
    }

    Result result(const Request& request) const
    {
        Result result;
        if (isPartial) {
            result.isComplete = false;
            return result;
        }
        const auto add = [&](const QString& title) {
            result.events.append({ .identifier = request.source + u'/' + title,
                .title = title,
                .start = request.start,
                .end = request.end });
        };
        for (const auto& path : request.paths)
            add(path);
        for (const auto& line : request.text.split('\n')) {
            if (line.startsWith("SUMMARY:"))
                add(QString::fromUtf8(line.mid(8).trimmed()));
        }
        for (const auto& zone : unknownZones) {
            if (!request.text.contains("TZID:" + zone.toUtf8()))
                result.unknownZones.append(zone);
        }
        return result;
    }

    struct Pending {
        Request request;
        QPointer<QObject> context;
        std::function<void(const std::optional<Result>&)> answer;
    };

    bool fails = false;
    bool isSlow = false;
    bool isPartial = false; // And finds nothing.
    QStringList unknownZones = {};
    QList<Request> requests = {};
    QList<Pending> pending = {};
};
