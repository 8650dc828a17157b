#include "App/Platform/UserDefaults.h"

template <typename T>
std::optional<T> UserDefaults::typed(const QString& key) const
{
    const auto stored = value(key);
    if (!stored || !std::holds_alternative<T>(*stored))
        return std::nullopt;
    return std::get<T>(*stored);
}

std::optional<qint64> UserDefaults::integer(const QString& key) const
{
    return typed<qint64>(key);
}

std::optional<double> UserDefaults::real(const QString& key) const
{
    if (const auto whole = integer(key))
        return static_cast<double>(*whole);
    return typed<double>(key);
}

std::optional<bool> UserDefaults::boolean(const QString& key) const
{
    return typed<bool>(key);
}

std::optional<QString> UserDefaults::text(const QString& key) const
{
    return typed<QString>(key);
}

std::optional<QByteArray> UserDefaults::data(const QString& key) const
{
    return typed<QByteArray>(key);
}
