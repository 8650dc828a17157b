// Prints what 10,000 launcher buttons take beside twelve of them, and beside Qt's own parts: the
// JSON alone, and a list view of icons.
#include "App/Platform/CommandRunner.h"
#include "App/Platform/UserDefaults.h"
#include "App/Platform/Workspace.h"
#include "App/Shortcuts/ShortcutStore.h"
#include "App/Shortcuts/ShortcutsView.h"
#include "App/Ui/Theme.h"
#include "Bench/LeastTime.h"

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QListView>
#include <QPixmap>
#include <QScrollArea>
#include <QScrollBar>
#include <QStandardItemModel>

#include <cstdio>
#include <cstdlib>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int rounds = 5;
constexpr int few = 12;
constexpr int many = 10'000;

struct Memory final : UserDefaults {
    std::optional<Value> value(const QString&) const override { return stored; }
    void setValue(const QString&, const Value& value) override { stored = value; }

    Value stored;
};

struct Nothing final : Workspace, CommandRunner {
    void open(const QUrl&) override { }
    std::optional<QString> run(
        const QString&, const QStringList&, QObject*, std::function<void(CommandEnd)>) override
    {
        return std::nullopt;
    }
};

QList<ShortcutItem> buttons(int count)
{
    QList<ShortcutItem> items;
    for (int i = 0; i < count; ++i) {
        items << ShortcutItem { .name = u"Button %1"_s.arg(i),
            .kind = ShortcutKind::url,
            .target = u"https://example.com/some/page/%1"_s.arg(i),
            .symbol = u"calendar"_s };
    }
    return items;
}

void paint(QWidget& widget)
{
    QPixmap pixels(widget.size());
    widget.render(&pixels);
    QCoreApplication::processEvents();
}

struct Figures {
    double read;
    double show;
    double scroll;
    double save;
};

Figures ofLauncher(int count)
{
    Memory defaults;
    Nothing nothing;
    const auto items = buttons(count);
    defaults.stored = ShortcutItem::encoded(items);
    const auto newStore = [&] {
        return std::make_unique<ShortcutStore>(defaults, nothing, nothing, ShortcutTools {});
    };
    Figures figures {};
    figures.read = leastMilliseconds(rounds, newStore);
    const auto store = newStore();
    const auto newView = [&] {
        auto view = std::make_unique<ShortcutsView>(*store);
        view->resize(400, 439);
        view->show();
        paint(*view);
        return view;
    };
    figures.show = leastMilliseconds(rounds, newView);
    const auto view = newView();
    auto& bar = *view->findChild<QScrollArea*>()->verticalScrollBar();
    figures.scroll = leastMilliseconds(rounds, [&] {
        bar.setValue(bar.value() + bar.pageStep());
        paint(*view);
    });
    figures.save = leastMilliseconds(rounds, [&] {
        store->setItems(withoutItem(items, items.first().id));
        QCoreApplication::processEvents();
    });
    return figures;
}

double showingListView()
{
    QStandardItemModel model;
    for (int i = 0; i < many; ++i)
        model.appendRow(new QStandardItem(u"Button %1"_s.arg(i)));
    return leastMilliseconds(rounds, [&] {
        QListView view;
        view.setViewMode(QListView::IconMode);
        view.setGridSize({ 126, 74 });
        view.setUniformItemSizes(true);
        view.setModel(&model);
        view.resize(400, 439);
        view.show();
        paint(view);
    });
}

double readingJson()
{
    const auto json = ShortcutItem::encoded(buttons(many));
    return leastMilliseconds(rounds, [&] {
        if (QJsonDocument::fromJson(json).array().size() != many)
            std::exit(2);
    });
}

}

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    Theme::apply({});
    const auto twelve = ofLauncher(few);
    const auto all = ofLauncher(many);
    std::puts("| ms of | 12 buttons | Qt alone, 10,000 | Corvella, 10,000 | of Qt alone |");
    std::puts("|---|---:|---:|---:|---:|");
    const double json = readingJson();
    std::printf(
        "| reading | %.2f | %.1f | %.1f | %.2f |\n", twelve.read, json, all.read, all.read / json);
    const double list = showingListView();
    std::printf(
        "| showing | %.2f | %.1f | %.1f | %.2f |\n", twelve.show, list, all.show, all.show / list);
    std::printf("| the next page | %.2f | | %.1f | |\n", twelve.scroll, all.scroll);
    std::printf("| saving | %.2f | | %.1f | |\n", twelve.save, all.save);
}
