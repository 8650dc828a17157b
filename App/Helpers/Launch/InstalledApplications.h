// The applications that are installed for the user.
#pragma once

#include "App/Helpers/Launch/Application.h"

#include <optional>

namespace InstalledApplications {

// In the order of their ids. Those that are deleted, or whose program is missing, are not there.
Applications all();

// Absent as above, and where there is no entry of an application.
std::optional<Application> fromEntry(const std::string& file, const std::string& id);

}
