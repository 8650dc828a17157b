#include "App/TabContent.h"

#include "App/Focus/FocusView.h"
#include "App/Focus/PomodoroModel.h"
#include "App/Meetings/CalendarModel.h"
#include "App/Meetings/MeetingsView.h"
#include "App/Notch/SettingsView.h"
#include "App/Platform/AddressOpener.h"
#include "App/Platform/AudioInput.h"
#include "App/Platform/Clipboard.h"
#include "App/Platform/HttpClient.h"
#include "App/Platform/LoginItem.h"
#include "App/Platform/ProcessInfo.h"
#include "App/Platform/UserDefaults.h"
#include "App/QuickActions/QuickActionsView.h"
#include "App/Shortcuts/ShortcutStore.h"
#include "App/Shortcuts/ShortcutsView.h"
#include "App/System/SystemMonitor.h"
#include "App/System/SystemView.h"

#include <QCoreApplication>

std::unique_ptr<QWidget> makeTabContent(std::optional<Tab> tab)
{
    if (tab == Tab::focus)
        return std::make_unique<FocusView>(PomodoroModel::shared(), Clipboard::shared());
    if (tab == Tab::actions)
        return std::make_unique<QuickActionsView>(Clipboard::shared(), HttpClient::shared());
    if (tab == Tab::meetings) {
        return std::make_unique<MeetingsView>(CalendarModel::shared(), AudioInput::shared(),
            UserDefaults::shared(), AddressOpener::shared());
    }
    if (tab == Tab::system)
        return std::make_unique<SystemView>(SystemMonitor::shared(), ProcessInfo::shared());
    if (tab == Tab::shortcuts)
        return std::make_unique<ShortcutsView>(ShortcutStore::shared(), Clipboard::shared());
    return std::make_unique<SettingsView>(
        UserDefaults::shared(), LoginItem::shared(), QCoreApplication::quit);
}
