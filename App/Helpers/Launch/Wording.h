// What is said to the user when something could not be opened.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Wording {

// Cut where it is long, with nothing in it that does more than to be read.
std::string quoted(std::string_view text);

// Names of others that may have been meant.
std::string notFound(std::string_view name, const std::vector<std::string>& similar);

std::string notStarted(std::string_view name, std::string_view reason);
std::string notOpened(std::string_view address, std::string_view reason);

}
