#include "App/Core/Fixed.h"

#include <array>
#include <charconv>
#include <limits>

QString fixed(double value, int decimals)
{
    // The longest number, a sign and a point; the decimals asked for come on top.
    constexpr std::size_t longest = std::numeric_limits<double>::max_exponent10 + 3;
    constexpr std::size_t mostDecimals = 32;
    std::array<char, longest + mostDecimals> text;
    const auto [end, error] = std::to_chars(
        text.data(), text.data() + text.size(), value, std::chars_format::fixed, decimals);
    Q_ASSERT(error == std::errc());
    return QString::fromLatin1(text.data(), end - text.data());
}
