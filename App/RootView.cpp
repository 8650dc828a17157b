#include "App/RootView.h"

#include "App/TabBar.h"
#include "App/Ui/Divider.h"

#include <utility>

namespace {

constexpr QSize popoverSize(400, 500);

}

RootView::RootView(Tab tab, bool showSettings, MakeContent makeContent)
    : m_makeContent(std::move(makeContent))
    , m_tab(tab)
    , m_showSettings(showSettings)
    , m_tabBar(new TabBar(this))
    , m_divider(new Divider(this))
{
    setFixedSize(popoverSize);
    m_tabBar->setGeometry(0, 0, width(), TabBar::height);
    m_divider->setGeometry(0, TabBar::height, width(), 1);
    connect(m_tabBar, &TabBar::tabPressed, this, [this](Tab pressed) { choose(pressed, false); });
    connect(m_tabBar, &TabBar::settingsPressed, this, [this] { choose(m_tab, !m_showSettings); });
    showContent();
}

void RootView::choose(Tab tab, bool showSettings)
{
    if (tab == m_tab && showSettings == m_showSettings)
        return;
    m_tab = tab;
    m_showSettings = showSettings;
    showContent();
}

void RootView::showContent()
{
    m_tabBar->highlight(m_tab, m_showSettings);
    m_content = m_makeContent(m_showSettings ? std::nullopt : std::optional(m_tab));
    m_content->setParent(this);
    const int top = m_divider->geometry().bottom() + 1;
    m_content->setGeometry(0, top, width(), height() - top);
    m_content->show();
    if (isVisible())
        takeKeystrokes();
}

void RootView::showEvent(QShowEvent*)
{
    takeKeystrokes();
}

// They go to the content at once; later, to where they went before for as long as that is there.
void RootView::takeKeystrokes()
{
    if (!window()->focusWidget())
        m_content->setFocus();
}
