#include "App/TabContent.h"

#include "App/Focus/FocusView.h"
#include "App/Focus/PomodoroModel.h"

std::unique_ptr<QWidget> makeTabContent(std::optional<Tab> tab)
{
    if (tab == Tab::focus)
        return std::make_unique<FocusView>(PomodoroModel::shared());
    return std::make_unique<QWidget>();
}
