// The row of tabs at the head of the popover, with the settings toggle at its end.
#pragma once

#include "App/Tab.h"

#include <QList>
#include <QWidget>

class TabButton;

class TabBar final : public QWidget {
    Q_OBJECT

public:
    static constexpr int height = 60;

    explicit TabBar(QWidget* parent);

    // Highlights one tab, or the settings toggle instead.
    void highlight(Tab tab, bool settings);

Q_SIGNALS:
    void tabPressed(Tab tab);
    void settingsPressed();

private:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

    QList<TabButton*> m_tabs; // In the order of allTabs.
    TabButton* m_gear;
};
