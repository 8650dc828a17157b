// The three phases of the focus cycle.
#pragma once

#include <QString>

#include <optional>

enum class Phase { focus, shortBreak, longBreak };

// The phase's title, and the text it is known by.
QString rawValue(Phase phase);
std::optional<Phase> phaseFromRawValue(const QString& text);
