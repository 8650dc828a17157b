// Opens what an address stands for.
#pragma once

#include "App/Helpers/Launch/Refusal.h"

struct Surroundings;

namespace OpenUrl {

// Its scheme in small letters; empty for what is no address.
std::string scheme(const std::string& address);

// By the program that the user has chosen for the scheme.
Refusal byScheme(const std::string& address, const Surroundings& around);

// The same; but an application or program in a file is started itself, and other files are opened
// by what is chosen for their kind.
Refusal open(const std::string& address, const Surroundings& around);

}
