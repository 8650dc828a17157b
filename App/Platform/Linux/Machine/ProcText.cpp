#include "App/Platform/Linux/Machine/ProcText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace {

// None at the end, and for a line without its end: that one may stop amid a number.
std::optional<std::string_view> takeLine(std::string_view& text)
{
    const auto size = text.find('\n');
    if (size == std::string_view::npos)
        return {};
    const auto line = text.substr(0, size);
    text.remove_prefix(size + 1);
    return line;
}

// Empty at the end of the line.
std::string_view takeWord(std::string_view& line)
{
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    const auto word = line.substr(0, line.find(' '));
    line.remove_prefix(word.size());
    return word;
}

std::optional<std::uint64_t> number(std::string_view word)
{
    std::uint64_t value = 0;
    const auto* const end = word.data() + word.size();
    const auto result = std::from_chars(word.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end)
        return {};
    return value;
}

std::optional<std::uint64_t> bytes(std::string_view amount)
{
    constexpr std::uint64_t unit = 1024;
    const auto count = number(takeWord(amount));
    if (!count || takeWord(amount) != "kB")
        return {};
    if (*count > std::numeric_limits<std::uint64_t>::max() / unit)
        return {};
    return *count * unit;
}

}

std::optional<ProcText::ProcessorTimes> ProcText::processorTimes(std::string_view stat)
{
    auto line = takeLine(stat);
    if (!line || takeWord(*line) != "cpu")
        return {};
    std::array<std::uint64_t, 8> fields {};
    std::size_t count = 0;
    for (auto word = takeWord(*line); !word.empty(); word = takeWord(*line)) {
        const auto field = number(word);
        if (!field)
            return {};
        // Time that guests took stands behind these eight, and is in the user's already.
        if (count < fields.size())
            fields[count] = *field;
        ++count;
    }
    if (count < 4)
        return {};
    const auto [user, nice, system, idle, waiting, interrupts, softInterrupts, stolen] = fields;
    return ProcessorTimes { user, nice, system + interrupts + softInterrupts + stolen,
        idle + waiting };
}

std::optional<MemoryUse> ProcText::memoryUse(
    std::string_view memInfo, std::uint64_t spareCacheBytes)
{
    std::optional<std::uint64_t> total;
    std::optional<std::uint64_t> available;
    while (!total || !available) {
        auto line = takeLine(memInfo);
        if (!line)
            return {};
        const auto name = takeWord(*line);
        if (name == "MemTotal:")
            total = bytes(*line);
        else if (name == "MemAvailable:")
            available = bytes(*line);
    }
    if (*total == 0)
        return {};
    const auto used = *total - std::min(*total, *available);
    return MemoryUse { used - std::min(used, spareCacheBytes), *total };
}

std::uint64_t ProcText::spareCacheBytes(std::string_view arcStats)
{
    std::optional<std::uint64_t> size;
    std::optional<std::uint64_t> least;
    while (!size || !least) {
        auto line = takeLine(arcStats);
        if (!line)
            return 0;
        const auto name = takeWord(*line);
        takeWord(*line); // The value's type.
        if (name == "size")
            size = number(takeWord(*line));
        else if (name == "c_min")
            least = number(takeWord(*line));
    }
    return *size - std::min(*size, *least);
}
