// What is told of a power source.
#pragma once

#include <QString>

struct PowerSource;

// Its capacities are known and make a ratio.
bool powerSourceIsUsable(const PowerSource& source);

// Both only of a usable source.
double powerSourceLevel(const PowerSource& source); // Percent.
QString powerSourceText(const PowerSource& source); // «87% · on battery · 3h 5m left»
