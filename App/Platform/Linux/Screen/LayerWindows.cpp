#include "App/Platform/Linux/Screen/LayerWindows.h"

#include "App/Platform/Linux/Launch/ChildProcess.h"
#include "App/Platform/Linux/Screen/LayerOverlayWindow.h"
#include "App/Platform/Linux/Screen/LayerPopoverWindow.h"
#include "App/Platform/Linux/Screen/LayerShellModule.h"
#include "App/Platform/Linux/Screen/WaylandHandles.h"

#include <QLoggingCategory>

#include <type_traits>
#include <utility>

LayerWindows::LayerWindows(wl_display* display)
    : m_shell(display)
{
}

std::unique_ptr<OverlayWindow> LayerWindows::makeOverlay(std::unique_ptr<QWidget> content)
{
    return std::make_unique<LayerOverlayWindow>(m_shell, std::move(content));
}

std::unique_ptr<PopoverWindow> LayerWindows::makePopover(BuildContent buildContent)
{
    return std::make_unique<LayerPopoverWindow>(m_shell, std::move(buildContent));
}

using namespace Qt::StringLiterals;

namespace {

// Qt's first window would load the libraries of graphics cards, ten megabytes, for pictures of text
// that are painted without. So Qt is asked now, while it knows none of the name it is to use, and
// what it says of that is nothing to worry about. Programs that are started later inherit nothing.
void paintWithoutGraphicsCard()
{
    constexpr auto variable = "QT_WAYLAND_CLIENT_BUFFER_INTEGRATION";
    if (qEnvironmentVariableIsSet(variable))
        return;
    qputenv(variable, "none");
    QLoggingCategory::setFilterRules(u"qt.qpa.wayland.warning=false"_s);
    WaylandHandles::chooseHardware();
    QLoggingCategory::setFilterRules(QString());
    qunsetenv(variable);
}

}

extern "C" Q_DECL_EXPORT DesktopWindows* corvellaLayerShell()
{
    auto* const display = WaylandHandles::display();
    if (!display)
        return nullptr;
    paintWithoutGraphicsCard();
    auto windows = std::make_unique<LayerWindows>(display);
    if (!windows->areThere())
        return nullptr;
    // For Qt to leave it to others what a surface is; it asks whenever it comes to one.
    qputenv(ChildProcess::privateVariable, "1");
    return windows.release();
}

static_assert(std::is_same_v<decltype(&corvellaLayerShell), LayerShellFactory>);
