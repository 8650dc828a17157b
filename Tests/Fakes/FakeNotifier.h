#pragma once

#include "App/Platform/Notifier.h"

#include <QList>

#include <utility>

struct FakeNotifier final : Notifier {
    void notify(const QString& title, const QString& body) override
    {
        notifications << std::pair(title, body);
    }

    QList<std::pair<QString, QString>> notifications;
};
