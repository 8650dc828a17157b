// The user's launcher over fakes.
#pragma once

#include "App/Shortcuts/ShortcutStore.h"
#include "Tests/Fakes/FakeCommandRunner.h"
#include "Tests/Fakes/FakeUserDefaults.h"
#include "Tests/Fakes/FakeWorkspace.h"

#include <QStringList>

struct ShortcutsSetup {
    static inline const QString itemsKey = QStringLiteral("shortcutItems");

    ShortcutsSetup() = default;

    explicit ShortcutsSetup(const QByteArray& stored)
        : defaults({ { itemsKey, stored } })
    {
    }

    explicit ShortcutsSetup(const QList<ShortcutItem>& items)
        : ShortcutsSetup(ShortcutItem::encoded(items))
    {
    }

    static ShortcutItem app(const QString& target)
    {
        return { .name = target,
            .kind = ShortcutKind::app,
            .target = target,
            .symbol = QStringLiteral("star") };
    }
    static ShortcutItem url(const QString& target)
    {
        auto item = app(target);
        item.kind = ShortcutKind::url;
        return item;
    }
    static ShortcutItem shortcut(const QString& target)
    {
        auto item = app(target);
        item.kind = ShortcutKind::shortcut;
        return item;
    }

    // What another process, or a person with an editor, writes into the file.
    void storeElsewhere(const QByteArray& json) { defaults.setData(itemsKey, json); }

    std::optional<QList<ShortcutItem>> stored() const
    {
        return ShortcutItem::decoded(defaults.data(itemsKey).value_or(QByteArray()));
    }

    QStringList names() const
    {
        QStringList all;
        for (const auto& item : store.items())
            all << item.name;
        return all;
    }

    FakeUserDefaults defaults;
    FakeWorkspace workspace;
    FakeCommandRunner runner;
    ShortcutStore store { defaults, workspace, runner,
        { QStringLiteral("/tools/open"), QStringLiteral("/tools/shortcuts") } };
};
