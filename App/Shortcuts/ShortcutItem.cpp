#include "App/Shortcuts/ShortcutItem.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr auto idKey = "id"_L1;
constexpr auto nameKey = "name"_L1;
constexpr auto kindKey = "kind"_L1;
constexpr auto targetKey = "target"_L1;
constexpr auto symbolKey = "symbol"_L1;

QString canonical(const QUuid& id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

std::optional<QUuid> uuid(const QString& text)
{
    const auto id = QUuid::fromString(text);
    // Qt also reads other forms, and takes what it cannot read for the null one.
    return canonical(id) == text.toUpper() ? std::optional(id) : std::nullopt;
}

std::optional<ShortcutKind> kindNamed(const QString& text)
{
    const auto* const found = std::ranges::find(shortcutKinds, text, &rawValue);
    return found == shortcutKinds.end() ? std::nullopt : std::optional(*found);
}

QJsonObject encodedItem(const ShortcutItem& item)
{
    return {
        { idKey, canonical(item.id) },
        { nameKey, item.name },
        { kindKey, rawValue(item.kind) },
        { targetKey, item.target },
        { symbolKey, item.symbol },
    };
}

std::optional<ShortcutItem> decodedItem(const QJsonObject& object)
{
    const auto name = object[nameKey];
    const auto target = object[targetKey];
    const auto symbol = object[symbolKey];
    if (!name.isString() || !target.isString() || !symbol.isString())
        return std::nullopt;
    const auto id = uuid(object[idKey].toString());
    const auto kind = kindNamed(object[kindKey].toString());
    if (!id || !kind)
        return std::nullopt;
    return ShortcutItem { *id, name.toString(), *kind, target.toString(), symbol.toString() };
}

}

QString rawValue(ShortcutKind kind)
{
    switch (kind) {
    case ShortcutKind::app:
        return u"App"_s;
    case ShortcutKind::url:
        return u"URL"_s;
    case ShortcutKind::shortcut:
        return u"Shortcut"_s;
    }
    Q_UNREACHABLE();
}

QByteArray ShortcutItem::encoded(const QList<ShortcutItem>& items)
{
    QJsonArray array;
    for (const auto& item : items)
        array.append(encodedItem(item));
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

std::optional<QList<ShortcutItem>> ShortcutItem::decoded(const QByteArray& json)
{
    const auto document = QJsonDocument::fromJson(json);
    if (!document.isArray())
        return std::nullopt;
    QList<ShortcutItem> items;
    const auto array = document.array();
    items.reserve(array.size());
    for (const auto& value : array) {
        const auto item = decodedItem(value.toObject());
        if (!item)
            return std::nullopt;
        items << *item;
    }
    return items;
}

QList<ShortcutItem> withItem(QList<ShortcutItem> items, const ShortcutItem& item)
{
    const auto found = std::ranges::find(items, item.id, &ShortcutItem::id);
    if (found == items.end())
        items << item;
    else
        *found = item;
    return items;
}

QList<ShortcutItem> withoutItem(QList<ShortcutItem> items, const QUuid& id)
{
    items.removeIf([&](const ShortcutItem& item) { return item.id == id; });
    return items;
}
