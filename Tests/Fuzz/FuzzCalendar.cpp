// Expands any text as a calendar, whole and in pieces: both must give the same events, each of
// which overlaps the day that is asked for.
#include "App/Platform/Linux/Calendar/ExpanderPipe.h"
#include "App/Platform/Linux/Calendar/Text/CalendarExpander.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace {

constexpr TimeBudget unlimited { TimeBudget::Seconds(1e9), TimeBudget::Seconds(1e9) };
// The day of daylight saving, in Berlin.
constexpr double start = 1774738800;
constexpr double end = 1774821600;

EventExpander::Request request()
{
    EventExpander::Request request;
    request.start = Moment(std::chrono::duration<double>(start));
    request.end = Moment(std::chrono::duration<double>(end));
    request.source = QStringLiteral("source");
    return request;
}

EventExpander::Result expand(std::string_view text, std::size_t piece)
{
    const auto asked = request();
    CalendarExpander expander(asked, { unlimited, unlimited });
    for (; !text.empty(); text.remove_prefix(std::min(piece, text.size())))
        expander.addText(text.substr(0, piece));
    return expander.finish();
}

bool overlaps(const CalendarEvent& event)
{
    const auto day = request();
    const bool isInstant = event.start == event.end;
    return event.start < day.end && event.start <= event.end
        && (isInstant ? event.start >= day.start : event.end > day.start);
}

void require(bool isTrue)
{
    if (!isTrue)
        std::abort();
}

}

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/)
{
    return setenv("TZ", "Europe/Berlin", 1);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto whole = expand(text, std::max<std::size_t>(size, 1));
    const auto pieces = expand(text, 7);
    require(whole.events == pieces.events && whole.unknownZones == pieces.unknownZones);
    require(std::ranges::all_of(whole.events, overlaps));
    const auto received = ExpanderPipe::result(ExpanderPipe::answer(whole));
    require(received && received->events == whole.events);
    // An answer of anything at all is none, or one.
    ExpanderPipe::result(QByteArray(text.data(), static_cast<qsizetype>(size)));
    ExpanderPipe::request(QByteArray(text.data(), static_cast<qsizetype>(size)));
    return 0;
}
