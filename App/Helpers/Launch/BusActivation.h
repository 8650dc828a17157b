// Starts applications by a message on the session bus.
#pragma once

#include "App/Helpers/Launch/Application.h"
#include "App/Helpers/Launch/Refusal.h"

namespace BusActivation {

struct Answer {
    bool isReached = true; // Else nobody is there who starts it, and another way may be tried.
    Refusal refusal = {};
};

// Waits for the answer, for as long as a large program takes. An empty address opens nothing.
Answer start(const Application& application, const std::string& address);

}
