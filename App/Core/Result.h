// A value, or what stood in its way.
#pragma once

#include <variant>

template <typename Value, typename Error>
using Result = std::variant<Value, Error>;
