// Builds the views of the tabs over the shared models.
#pragma once

#include "App/Tab.h"

#include <memory>
#include <optional>

class QWidget;

// The view of a tab, or with no tab the settings pane.
std::unique_ptr<QWidget> makeTabContent(std::optional<Tab> tab);
