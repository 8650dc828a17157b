// A button of the launcher: what it is called and what it opens.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUuid>

#include <array>
#include <optional>

enum class ShortcutKind {
    app,
    url,
    shortcut,
};

inline constexpr std::array shortcutKinds {
    ShortcutKind::app,
    ShortcutKind::url,
    ShortcutKind::shortcut,
};

// As it is shown and stored: "App", "URL" or "Shortcut".
QString rawValue(ShortcutKind kind);

struct ShortcutItem {
    QUuid id = QUuid::createUuid();
    QString name = {}; // The button's caption.
    ShortcutKind kind = ShortcutKind::app;
    QString target = {}; // An application's name or path, a web address, or a shortcut's name.
    QString symbol = {};

    bool operator==(const ShortcutItem&) const = default;

    // A JSON array of objects with exactly the keys id, name, kind, target and symbol.
    static QByteArray encoded(const QList<ShortcutItem>& items);
    // Absent unless all of it is such an array; keys beside those five are passed over.
    static std::optional<QList<ShortcutItem>> decoded(const QByteArray& json);
};

// In place of the one with its id, or last.
QList<ShortcutItem> withItem(QList<ShortcutItem> items, const ShortcutItem& item);
QList<ShortcutItem> withoutItem(QList<ShortcutItem> items, const QUuid& id);
