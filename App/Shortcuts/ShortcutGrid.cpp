#include "App/Shortcuts/ShortcutGrid.h"

#include "App/Shortcuts/ShortcutTile.h"
#include "App/Ui/ControlBox.h"

#include <QKeyEvent>
#include <QStyle>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int leastColumn = 100;
constexpr int spacing = 8;

}

ShortcutGrid::ShortcutGrid(int padding)
    : m_padding(padding)
{
    setAccessibleName(u"Shortcuts"_s);
}

qsizetype ShortcutGrid::indexOf(const QUuid& id) const
{
    const auto found = std::ranges::find(m_items, id, &ShortcutItem::id);
    return found == m_items.cend() ? -1 : found - m_items.cbegin();
}

void ShortcutGrid::setItems(const QList<ShortcutItem>& items)
{
    if (m_items == items)
        return;
    m_items = items;
    QStringList keys;
    keys.reserve(items.size());
    for (const auto& item : items)
        keys << item.id.toString(QUuid::Id128);
    setKeys(keys);
    arrange();
}

void ShortcutGrid::setEdited(bool edited)
{
    m_edited = edited;
    for (auto* const tile : cells()) {
        if (tile)
            static_cast<ShortcutTile*>(tile)->setEdited(edited);
    }
}

AdaptiveGrid ShortcutGrid::grid() const
{
    return { width() - 2 * m_padding, leastColumn, spacing, ShortcutTile::height };
}

void ShortcutGrid::arrange()
{
    setFixedHeight(grid().height(int(m_items.size())) + ControlBox::margin + m_padding);
}

QWidget* ShortcutGrid::makeCell()
{
    auto* const tile = new ShortcutTile(this);
    connect(tile, &ShortcutTile::clicked, this, [=, this] { tap(tile); });
    return tile;
}

void ShortcutGrid::tap(const QWidget* tile)
{
    const auto index = cells().indexOf(tile);
    if (index >= 0)
        Q_EMIT tapped(ShortcutItem(m_items[index])); // The list may change under it.
}

void ShortcutGrid::fillCell(QWidget& cell, qsizetype index)
{
    auto& tile = static_cast<ShortcutTile&>(cell);
    tile.setName(m_items[index].name);
    tile.setSymbol(m_items[index].symbol);
    tile.setEdited(m_edited);
}

// From the upper edge there is room for a focus ring.
QRect ShortcutGrid::placeOf(qsizetype index) const
{
    const auto box = grid().cell(int(index)).translated(m_padding, ControlBox::margin);
    constexpr int margin = ControlBox::margin;
    return QStyle::visualRect(layoutDirection(), rect(), box)
        .adjusted(-margin, -margin, margin, margin);
}

void ShortcutGrid::keyPressEvent(QKeyEvent* event)
{
    const auto from = current();
    const int along = layoutDirection() == Qt::RightToLeft ? -1 : 1;
    const auto moveTo = [&](qsizetype index) {
        if (index >= 0 && index < count())
            focusCell(index, Qt::TabFocusReason);
    };
    switch (from < 0 ? int(Qt::Key_unknown) : event->key()) {
    case Qt::Key_Left:
        return moveTo(from - along);
    case Qt::Key_Right:
        return moveTo(from + along);
    case Qt::Key_Up:
        return moveTo(from - grid().columns());
    case Qt::Key_Down:
        return moveTo(from + grid().columns());
    case Qt::Key_Home:
        return moveTo(0);
    case Qt::Key_End:
        return moveTo(count() - 1);
    default:
        LazyCells::keyPressEvent(event);
    }
}

void ShortcutGrid::resizeEvent(QResizeEvent* event)
{
    LazyCells::resizeEvent(event);
    arrange();
}
