// The rule for the status item's title.
#pragma once

#include "App/Focus/Phase.h"
#include "App/Platform/StatusItem.h"

// A circle while nothing is under way, else the time left, with a cup before it in breaks.
StatusTitle statusTitle(bool isActive, Phase phase, const QString& timeString);
