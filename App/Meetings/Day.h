// When a day begins and ends by the clocks of a place.
#pragma once

#include "App/Platform/Clock.h"

struct Day {
    Moment start;
    Moment end; // The start of the next day.
};

// The day that holds the moment; by UTC where the zone is unknown.
Day dayOf(Moment moment, const QTimeZone& zone);
