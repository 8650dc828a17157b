// The launcher's buttons in columns.
#pragma once

#include "App/Shortcuts/ShortcutItem.h"
#include "App/Ui/AdaptiveGrid.h"
#include "App/Ui/LazyCells.h"

class ShortcutGrid final : public LazyCells {
    Q_OBJECT

public:
    // The tiles keep this distance from all edges but the upper one.
    explicit ShortcutGrid(int padding);

    qsizetype indexOf(const QUuid& id) const; // -1 without such an item.

    void setItems(const QList<ShortcutItem>& items);
    void setEdited(bool edited);

Q_SIGNALS:
    void tapped(const ShortcutItem& item);

private:
    AdaptiveGrid grid() const;
    void arrange();
    void tap(const QWidget* tile);
    QWidget* makeCell() override;
    void fillCell(QWidget& cell, qsizetype index) override;
    QRect placeOf(qsizetype index) const override;
    bool hasControl(qsizetype) const override { return true; }
    QWidget* controlOf(QWidget& cell) const override { return &cell; }
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

    int m_padding;
    bool m_edited = false;
    QList<ShortcutItem> m_items;
};
