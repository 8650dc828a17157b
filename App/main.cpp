#include "App/AppDelegate.h"
#include "App/Wiring.h"

#include <QApplication>
#include <QThreadPool>

#include <unistd.h>

static constexpr unsigned longestFarewell = 3; // Seconds.

int main(int argc, char** argv)
{
    // The desktop's theme plugin would cost more than all of Corvella; what is needed of it comes
    // over the session bus.
    QGuiApplication::setDesktopSettingsAware(false);
    qunsetenv("QT_QPA_PLATFORMTHEME");
    // Item and popover are X11 windows, also in a session where Qt would rather speak Wayland.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "xcb");
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Corvella"));
    QApplication::setDesktopFileName(QStringLiteral("org.corvella.Corvella"));
    QApplication::setQuitOnLastWindowClosed(false);
    // Threads that have helped to paint the popover would wake up later only to end themselves.
    QThreadPool::globalInstance()->setExpiryTimeout(-1);

    if (!Wiring::isFirstInstance())
        return 0;
    Wiring::endOnSignals();
    Wiring::followAppearance();
    Wiring::appDelegate().applicationDidFinishLaunching();
    const int status = QApplication::exec();
    // The settings are stored first; a library that waits for a service that hangs must not hold
    // up the end of the session after that.
    alarm(longestFarewell);
    return status;
}
