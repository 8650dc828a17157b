#pragma once

#include "App/Platform/Clipboard.h"

#include <QPointer>

#include <utility>

struct FakeClipboard final : Clipboard {
    struct Reading {
        QClipboard::Mode mode;
        QPointer<QObject> waiter;
        std::function<void(const QString&)> done;
    };

    void readText(
        QClipboard::Mode mode, QObject* waiter, std::function<void(const QString&)> done) override
    {
        readings.append({ mode, waiter, std::move(done) });
    }
    void setText(const QString& newText) override { text = newText; }

    // Hands the text to all who wait.
    void answer()
    {
        for (const auto& reading : std::exchange(readings, {})) {
            if (reading.waiter)
                reading.done(text);
        }
    }

    QString text = {};
    QList<Reading> readings = {};
};
