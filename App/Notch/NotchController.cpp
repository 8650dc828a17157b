#include "App/Notch/NotchController.h"

#include "App/Notch/NotchPanel.h"
#include "App/Platform/Screens.h"
#include "App/Platform/UserDefaults.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

const auto showNotchKey = u"showNotch"_s;

}

bool NotchController::isWanted(const UserDefaults& defaults)
{
    return defaults.boolean(showNotchKey).value_or(true);
}

void NotchController::setWanted(UserDefaults& defaults, bool isWanted)
{
    defaults.setBoolean(showNotchKey, isWanted);
}

NotchController::NotchController(UserDefaults& defaults, Screens& screens, MakePanel makePanel)
    : m_defaults(defaults)
    , m_screens(screens)
    , m_makePanel(std::move(makePanel))
{
    update();
    connect(&m_defaults, &UserDefaults::changed, this, &NotchController::update);
    connect(&m_screens, &Screens::changed, this, [this] { position(false); });
}

NotchController::~NotchController() = default;

bool NotchController::wanted() const
{
    return isWanted(m_defaults);
}

void NotchController::update()
{
    if (wanted()) {
        if (!m_panel)
            build();
        m_panel->orderFront();
    } else {
        m_panel.reset();
        if (m_state.expanded())
            m_state.setExpanded(false);
    }
}

void NotchController::build()
{
    m_panel = m_makePanel(m_state, [this](bool inside) {
        m_state.setExpanded(inside);
        position(true);
    });
    position(false);
}

void NotchController::position(bool animated)
{
    const auto screen = m_screens.main();
    if (!m_panel || !screen)
        return;
    const auto size = m_state.expanded() ? expandedSize : collapsed;
    const int left = screen->left() + (screen->width() - size.width()) / 2;
    m_panel->setFrame({ { left, screen->top() }, size }, animated);
}
