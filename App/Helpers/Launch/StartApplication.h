// Starts an application in the way that its entry asks for.
#pragma once

#include "App/Helpers/Launch/Application.h"
#include "App/Helpers/Launch/Refusal.h"

struct Surroundings;

// An empty address opens nothing.
Refusal startApplication(
    const Application& application, const std::string& address, const Surroundings& around);
