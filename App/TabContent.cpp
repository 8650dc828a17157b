#include "App/TabContent.h"

#include "App/Focus/FocusView.h"
#include "App/Focus/PomodoroModel.h"
#include "App/Platform/ProcessInfo.h"
#include "App/System/SystemMonitor.h"
#include "App/System/SystemView.h"

std::unique_ptr<QWidget> makeTabContent(std::optional<Tab> tab)
{
    if (tab == Tab::focus)
        return std::make_unique<FocusView>(PomodoroModel::shared());
    if (tab == Tab::system)
        return std::make_unique<SystemView>(SystemMonitor::shared(), ProcessInfo::shared());
    return std::make_unique<QWidget>();
}
