// The popover's content: the tab bar and, below it, the chosen tab's view or the settings pane.
#pragma once

#include "App/Tab.h"

#include <QWidget>

#include <functional>
#include <memory>

class Divider;
class TabBar;

class RootView final : public QWidget {
    Q_OBJECT

public:
    // Builds the view of a tab, or with no tab the settings pane.
    using MakeContent = std::function<std::unique_ptr<QWidget>(std::optional<Tab>)>;

    RootView(Tab tab, bool showSettings, MakeContent makeContent);

    Tab tab() const { return m_tab; }
    bool showsSettings() const { return m_showSettings; }

private:
    void showEvent(QShowEvent* event) override;
    void choose(Tab tab, bool showSettings);
    void showContent();
    void takeKeystrokes();

    MakeContent m_makeContent;
    Tab m_tab;
    bool m_showSettings;
    TabBar* m_tabBar;
    Divider* m_divider;
    std::unique_ptr<QWidget> m_content;
};
