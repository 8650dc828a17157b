// Builds the program out of its models and its Linux services.
#pragma once

class AppDelegate;

namespace Wiring {

// False when Corvella runs already; that one has then been asked to show its popover.
bool isFirstInstance();

// Ends in order, with everything stored, when the session or a terminal asks for the end.
void endOnSignals();

// The colours and the font follow the desktop from now on.
void followAppearance();

AppDelegate& appDelegate();

}
