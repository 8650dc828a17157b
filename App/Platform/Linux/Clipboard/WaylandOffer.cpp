#include "App/Platform/Linux/Clipboard/WaylandOffer.h"

#include <algorithm>

namespace {

// Far more than any program offers.
constexpr qsizetype mostTypes = 1000;

}

const wl_data_offer_listener WaylandOffer::listener {
    .offer =
        [](void* self, wl_data_offer*, const char* type) {
            auto& types = static_cast<WaylandOffer*>(self)->m_types;
            if (types.size() < mostTypes)
                types << type;
        },
    .source_actions = [](void*, wl_data_offer*, uint32_t) {},
    .action = [](void*, wl_data_offer*, uint32_t) {},
};

WaylandOffer::WaylandOffer(wl_data_offer* offer)
    : m_offer(offer)
{
    wl_data_offer_add_listener(m_offer, &listener, this);
}

WaylandOffer::~WaylandOffer()
{
    wl_data_offer_destroy(m_offer);
}

std::optional<ClipboardText::Format> WaylandOffer::textFormat() const
{
    const auto found = std::ranges::find_if(ClipboardText::formats,
        [this](const auto& format) { return m_types.contains(format.name); });
    return found == ClipboardText::formats.end() ? std::nullopt : std::optional(*found);
}

void WaylandOffer::receive(const ClipboardText::Format& format, int pipe)
{
    wl_data_offer_receive(m_offer, format.name, pipe);
}
