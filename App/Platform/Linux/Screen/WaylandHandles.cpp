#include "App/Platform/Linux/Screen/WaylandHandles.h"

#include <QGuiApplication>
#include <QScreen>

#include <qpa/qplatformnativeinterface.h>

namespace {

void* ofIntegration(const QByteArray& name)
{
    return QGuiApplication::platformNativeInterface()->nativeResourceForIntegration(name);
}

}

wl_display* WaylandHandles::display()
{
    return static_cast<wl_display*>(ofIntegration("wl_display"));
}

wl_compositor* WaylandHandles::compositor()
{
    return static_cast<wl_compositor*>(ofIntegration("compositor"));
}

wl_output* WaylandHandles::output(QScreen& screen)
{
    // Qt has such a screen while there is no output, and cannot be asked about it.
    if (screen.name().isEmpty() || screen.geometry().isEmpty())
        return nullptr;
    return static_cast<wl_output*>(
        QGuiApplication::platformNativeInterface()->nativeResourceForScreen("output", &screen));
}

wl_surface* WaylandHandles::surface(QWindow& window)
{
    return static_cast<wl_surface*>(
        QGuiApplication::platformNativeInterface()->nativeResourceForWindow("surface", &window));
}

void WaylandHandles::chooseHardware()
{
    ofIntegration("egldisplay");
}
