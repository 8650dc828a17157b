#include "App/Wiring.h"

#include "App/AppDelegate.h"
#include "App/Focus/PomodoroModel.h"
#include "App/Meetings/CalendarModel.h"
#include "App/Notch/NotchController.h"
#include "App/Notch/NotchView.h"
#include "App/Notch/OverlayPanel.h"
#include "App/Platform/Linux/Audio/BoundedAudioInput.h"
#include "App/Platform/Linux/Audio/HelperSoundPlayer.h"
#include "App/Platform/Linux/Audio/LoadedAudioInput.h"
#include "App/Platform/Linux/Bus/SystemBus.h"
#include "App/Platform/Linux/Calendar/DesktopEventStore.h"
#include "App/Platform/Linux/Calendar/EdsCalendars.h"
#include "App/Platform/Linux/Calendar/HelperEventExpander.h"
#include "App/Platform/Linux/Calendar/IcsFolders.h"
#include "App/Platform/Linux/Clipboard/ClipboardModule.h"
#include "App/Platform/Linux/Clipboard/QtClipboard.h"
#include "App/Platform/Linux/Clipboard/X11Clipboard.h"
#include "App/Platform/Linux/Defaults/JsonUserDefaults.h"
#include "App/Platform/Linux/Http/HelperHttpClient.h"
#include "App/Platform/Linux/Launch/HelperAddressOpener.h"
#include "App/Platform/Linux/Launch/HelperWorkspace.h"
#include "App/Platform/Linux/Launch/PosixCommandRunner.h"
#include "App/Platform/Linux/Machine/LinuxCounters.h"
#include "App/Platform/Linux/Machine/LinuxProcessInfo.h"
#include "App/Platform/Linux/Machine/SysfsPowerSources.h"
#include "App/Platform/Linux/Machine/UPowerSources.h"
#include "App/Platform/Linux/Screen/LayerShellModule.h"
#include "App/Platform/Linux/Screen/QtScreens.h"
#include "App/Platform/Linux/Screen/WaylandCompositor.h"
#include "App/Platform/Linux/Screen/X11Appearance.h"
#include "App/Platform/Linux/Screen/X11Compositor.h"
#include "App/Platform/Linux/Screen/X11Windows.h"
#include "App/Platform/Linux/Session/AutostartLoginItem.h"
#include "App/Platform/Linux/Session/DBusNotifier.h"
#include "App/Platform/Linux/Session/EndSignals.h"
#include "App/Platform/Linux/Session/PortalAppearance.h"
#include "App/Platform/Linux/Session/ScriptNotifier.h"
#include "App/Platform/Linux/Session/SingleInstance.h"
#include "App/Platform/Linux/Time/QtTicker.h"
#include "App/Platform/Linux/Time/SteadyClock.h"
#include "App/Platform/Linux/Time/SystemClock.h"
#include "App/Platform/Linux/Tray/TrayStatusItem.h"
#include "App/Platform/OverlayWindow.h"
#include "App/Platform/PopoverWindow.h"
#include "App/Popover.h"
#include "App/RootView.h"
#include "App/Shortcuts/ShortcutStore.h"
#include "App/StatusIcon.h"
#include "App/System/SystemMonitor.h"
#include "App/TabContent.h"
#include "App/Ui/Theme.h"

#include <QGuiApplication>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

// Whatever is made here lives as long as the program and is never destroyed, except the user
// defaults: they have a last word for the disk.
namespace {

QString helper(const QString& name)
{
    return QCoreApplication::applicationDirPath() + u"/../libexec/corvella/"_s + name;
}

SystemBus& systemBus()
{
    static auto& bus = *new SystemBus;
    return bus;
}

Clock& wallClock()
{
    static auto& clock = *new SystemClock(systemBus());
    return clock;
}

SingleInstance& singleInstance()
{
    static auto& instance = *new SingleInstance;
    return instance;
}

bool isOnWayland()
{
    return QGuiApplication::platformName().startsWith("wayland"_L1);
}

std::unique_ptr<Clipboard> makeClipboard()
{
    if (QGuiApplication::platformName() == "xcb"_L1)
        return std::make_unique<X11Clipboard>();
    if (isOnWayland()) {
        if (auto clipboard = ClipboardModule::load(helper(u"wayland-clipboard"_s)))
            return clipboard;
    }
    return std::make_unique<QtClipboard>();
}

std::unique_ptr<Compositor> makeCompositor()
{
    if (isOnWayland())
        return std::make_unique<WaylandCompositor>();
    return std::make_unique<X11Compositor>();
}

const Compositor& compositor()
{
    static const auto& compositor = *makeCompositor().release();
    return compositor;
}

std::unique_ptr<QWidget> makePopover()
{
    return std::make_unique<Popover>(
        compositor(), std::make_unique<RootView>(Tab::focus, false, makeTabContent));
}

std::unique_ptr<DesktopWindows> makeWindows()
{
    if (isOnWayland()) {
        if (auto windows = LayerShellModule::load(helper(u"layer-shell"_s)))
            return windows;
    }
    return std::make_unique<X11Windows>(compositor());
}

DesktopWindows& desktopWindows()
{
    static auto& windows = *makeWindows().release();
    return windows;
}

std::unique_ptr<OverlayWindow> makeOverlay(std::unique_ptr<QWidget> content)
{
    return desktopWindows().makeOverlay(std::move(content));
}

std::unique_ptr<NotchPanel> makeNotchPanel(
    NotchState& state, std::function<void(bool inside)> onHover)
{
    auto view = std::make_unique<NotchView>(
        state, PomodoroModel::shared(), CalendarModel::shared(), std::move(onHover));
    return std::make_unique<OverlayPanel>(std::move(view), makeOverlay);
}

std::unique_ptr<NotchController> makeNotch()
{
    static auto& screens = *new QtScreens;
    return std::make_unique<NotchController>(UserDefaults::shared(), screens, makeNotchPanel);
}

}

UserDefaults& UserDefaults::shared()
{
    const auto folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    static JsonUserDefaults defaults(folder + u"/corvella/defaults.json"_s);
    return defaults;
}

AddressOpener& AddressOpener::shared()
{
    static auto& opener = *new HelperAddressOpener(helper(u"open"_s));
    return opener;
}

AudioInput& AudioInput::shared()
{
    const auto module = [](const QString& name, std::shared_ptr<AudioInput> otherwise) {
        return std::make_shared<LoadedAudioInput>(helper(name), std::move(otherwise));
    };
    static auto& input
        = *new BoundedAudioInput(module(u"pulse-input"_s, module(u"alsa-input"_s, nullptr)));
    return input;
}

CalendarModel& CalendarModel::shared()
{
    static auto& expander = *new HelperEventExpander(helper(u"expand-events"_s));
    static auto& desktop = *new EdsCalendars(expander);
    static auto& folders = *new IcsFolders(expander);
    static auto& store
        = *new DesktopEventStore({ &desktop, &folders }, UserDefaults::shared(), wallClock());
    static auto& timer = *new QtTicker;
    static auto& midnight = *new QtTicker;
    static auto& model = *new CalendarModel(store, wallClock(), timer, midnight);
    return model;
}

Clipboard& Clipboard::shared()
{
    static auto& clipboard = *makeClipboard().release();
    return clipboard;
}

CommandRunner& CommandRunner::shared()
{
    static auto& runner = *new PosixCommandRunner;
    return runner;
}

HttpClient& HttpClient::shared()
{
    static auto& client = *new HelperHttpClient(helper(u"send-request"_s));
    return client;
}

LoginItem& LoginItem::shared()
{
    static auto& item = *new AutostartLoginItem(QCoreApplication::applicationFilePath());
    return item;
}

PomodoroModel& PomodoroModel::shared()
{
    static auto& ticker = *new QtTicker;
    static auto& sounds = *new HelperSoundPlayer(helper(u"play-sound"_s));
    static auto& script = *new ScriptNotifier;
    static auto& notifier = *new DBusNotifier(script);
    static auto& model
        = *new PomodoroModel(UserDefaults::shared(), wallClock(), ticker, sounds, notifier);
    return model;
}

ProcessInfo& ProcessInfo::shared()
{
    static auto& info = *new LinuxProcessInfo(systemBus());
    return info;
}

ShortcutStore& ShortcutStore::shared()
{
    static auto& store = *new ShortcutStore(UserDefaults::shared(), Workspace::shared(),
        CommandRunner::shared(), { helper(u"open"_s), helper(u"shortcuts"_s) });
    return store;
}

SystemMonitor& SystemMonitor::shared()
{
    static auto& counters = *new LinuxCounters;
    static auto& batteries = *new SysfsPowerSources;
    static auto& powerSources = *new UPowerSources(systemBus(), batteries);
    static auto& clock = *new SteadyClock;
    static auto& ticker = *new QtTicker;
    static auto& model = *new SystemMonitor(counters, powerSources, clock, ticker);
    return model;
}

Workspace& Workspace::shared()
{
    static auto& workspace = *new HelperWorkspace(helper(u"open"_s));
    return workspace;
}

bool Wiring::isFirstInstance()
{
    return singleInstance().claim();
}

void Wiring::endOnSignals()
{
    static auto& signals = *new EndSignals;
    QObject::connect(&signals, &EndSignals::received, qApp, [] { QCoreApplication::exit(); });
}

void Wiring::followAppearance()
{
    static auto& session = *new PortalAppearance;
    static auto& appearance = *new X11Appearance(session);
    const auto adopt = [] {
        Theme::apply({ appearance.isDark(), appearance.accent(), appearance.fontFamily(),
            appearance.iconTheme() });
    };
    adopt();
    QObject::connect(&appearance, &Appearance::changed, adopt);
}

AppDelegate& Wiring::appDelegate()
{
    static auto& statusItem
        = *new TrayStatusItem(StatusPainter { StatusIcon::badge, StatusIcon::pill });
    static auto& popover = *desktopWindows().makePopover(makePopover).release();
    static auto& delegate = *new AppDelegate(
        statusItem, popover, PomodoroModel::shared(), CalendarModel::shared(), makeNotch);
    QObject::connect(
        &singleInstance(), &SingleInstance::activated, &delegate, &AppDelegate::showPopover);
    return delegate;
}
