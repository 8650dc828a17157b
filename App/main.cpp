#include "App/AppDelegate.h"
#include "App/Platform/Linux/Bus/BusProbe.h"
#include "App/Platform/Linux/Screen/LayerShellModule.h"
#include "App/Platform/Linux/Screen/WaylandProbe.h"
#include "App/Ui/MenuStyle.h"
#include "App/Wiring.h"

#include <QApplication>
#include <QThreadPool>

#include <chrono>
#include <cstdio>
#include <malloc.h>
#include <optional>
#include <string_view>
#include <unistd.h>

namespace {

constexpr auto platformVariable = "QT_QPA_PLATFORM";
constexpr auto themeVariable = "QT_QPA_PLATFORMTHEME";
constexpr auto glibVariable = "QT_NO_GLIB";
constexpr auto busVariable = "DBUS_SESSION_BUS_ADDRESS";
// Waited for once, before there is anything to hold up: a compositor is asked while it may still be
// starting the session itself.
constexpr auto longestProbe = std::chrono::seconds(1);
constexpr unsigned longestFarewell = 3; // Seconds.
constexpr int largeMemory = 128 * 1024; // Bytes

void setVariable(const char* name, const QByteArray& value)
{
    if (value.isNull())
        qunsetenv(name);
    else
        qputenv(name, value);
}

// Only in the layers of a compositor can a window of ours be above panels; where it has none, an
// X11 window can.
QByteArray platform()
{
    const auto compositor = WaylandProbe::socket();
    return WaylandProbe::offers(compositor, LayerShellModule::interface, longestProbe)
        ? "wayland;xcb"
        : "xcb;wayland";
}

// The XDG Base Directory Specification has them ignored.
void forgetRelativeFolders()
{
    for (const auto* name : { "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME" }) {
        if (!qgetenv(name).startsWith('/'))
            qunsetenv(name);
    }
}

// A bus that hangs is none to us: whoever asks it would be held up for ever.
QByteArray sessionBus(const QByteArray& address)
{
    return BusProbe::answers(address, longestProbe) ? address : "unix:path=/";
}

// What there is to say without starting, and the status to end with.
std::optional<int> answer(int argc, char** argv)
{
    const std::string_view first = argc > 1 ? argv[1] : "";
    if (first == "--version") {
        std::puts("corvella " CORVELLA_VERSION);
        return 0;
    }
    if (first == "--help") {
        std::puts(
            "corvella: starts Corvella in the status bar, or opens the popover of the one that "
            "runs.\nIt takes no arguments but --help and --version; see corvella(1).");
        return 0;
    }
    const auto isUnset = [](const char* name) { return qEnvironmentVariableIsEmpty(name); };
    if (isUnset(platformVariable) && isUnset("DISPLAY") && isUnset("WAYLAND_DISPLAY")) {
        std::fputs(
            "corvella: there is no display: DISPLAY and WAYLAND_DISPLAY are not set\n", stderr);
        return 1;
    }
    return std::nullopt;
}

}

int main(int argc, char** argv)
{
    if (const auto status = answer(argc, argv))
        return *status;
    forgetRelativeFolders();
    // Texts of many megabytes come and go; by itself the allocator would come to keep their room.
    mallopt(M_MMAP_THRESHOLD, largeMemory);
    mallopt(M_TRIM_THRESHOLD, largeMemory);
    const auto usersPlatform = qgetenv(platformVariable);
    const auto usersTheme = qgetenv(themeVariable);
    const auto usersGlib = qgetenv(glibVariable);
    const auto usersBus = qgetenv(busVariable);
    // The desktop's theme plugin would cost more than all of Corvella; what is needed of it comes
    // over the session bus.
    QGuiApplication::setDesktopSettingsAware(false);
    qunsetenv(themeVariable);
    if (usersPlatform.isEmpty())
        qputenv(platformVariable, platform());
    // Nothing here needs GLib's event loop, and every turn of Qt's own is cheaper.
    qputenv(glibVariable, "1");
    if (!usersBus.isEmpty())
        qputenv(busVariable, sessionBus(usersBus));
    QApplication::setStyle(new MenuStyle);
    QApplication app(argc, argv);
    // Programs that are started from here get the user's own choice.
    setVariable(platformVariable, usersPlatform);
    setVariable(themeVariable, usersTheme);
    setVariable(glibVariable, usersGlib);
    QApplication::setApplicationName(QStringLiteral("Corvella"));
    QApplication::setDesktopFileName(QStringLiteral("org.corvella.Corvella"));
    QApplication::setQuitOnLastWindowClosed(false);
    // Threads that have helped to paint the popover would wake up later only to end themselves.
    QThreadPool::globalInstance()->setExpiryTimeout(-1);

    if (!Wiring::isFirstInstance())
        return 0;
    setVariable(busVariable, usersBus); // Only now does Qt know it.
    Wiring::followAppearance();
    Wiring::appDelegate().applicationDidFinishLaunching();
    // Until here a signal ends it as it is: nothing is to be stored yet, and whatever it asked may
    // hang.
    Wiring::endOnSignals();
    const int status = QApplication::exec();
    // The settings are stored first; a library that waits for a service that hangs must not hold
    // up the end of the session after that.
    alarm(longestFarewell);
    return status;
}
