#pragma once

#include "App/Platform/UserDefaults.h"

#include <QHash>

struct FakeUserDefaults final : UserDefaults {
    explicit FakeUserDefaults(const QHash<QString, Value>& stored = {})
        : values(stored)
    {
    }

    std::optional<Value> value(const QString& key) const override
    {
        const auto found = values.constFind(key);
        return found == values.constEnd() ? std::nullopt : std::optional(*found);
    }

    void setValue(const QString& key, const Value& value) override
    {
        values.insert(key, value);
        ++writes;
        Q_EMIT changed();
    }

    QHash<QString, Value> values;
    int writes = 0;
};
