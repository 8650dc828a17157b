#include "App/Helpers/Launch/FindApplication.h"

#include "App/Helpers/Launch/ApplicationNames.h"
#include "App/Helpers/Launch/Roles.h"

std::optional<Application> findApplication(
    std::string_view name, const Applications& applications, const Surroundings& around)
{
    if (const auto* const found = ApplicationNames::exact(applications, name, true))
        return *found;
    if (auto found = Roles::player(name, applications, around))
        return found;
    if (const auto* const found = ApplicationNames::exact(applications, name, false))
        return *found;
    for (const bool shown : { true, false }) {
        if (const auto* const found = ApplicationNames::prefixed(applications, name, shown))
            return *found;
    }
    return {};
}
