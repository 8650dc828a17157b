#include "App/Platform/Linux/Clipboard/WaylandDataDevice.h"

#include "App/Platform/Linux/Clipboard/WaylandOffer.h"
#include "App/Platform/Linux/Clipboard/WaylandSeat.h"
#include "App/Platform/Linux/Clipboard/WaylandSource.h"

#include <algorithm>
#include <utility>

namespace {

WaylandDataDevice& device(void* self)
{
    return *static_cast<WaylandDataDevice*>(self);
}

// The compositor goes on to send offers to a device that it does not know to be gone.
void release(wl_data_device* device)
{
    if (wl_data_device_get_version(device) >= WL_DATA_DEVICE_RELEASE_SINCE_VERSION)
        wl_data_device_release(device);
    else
        wl_data_device_destroy(device);
}

}

const wl_registry_listener WaylandDataDevice::registryListener {
    .global = [](void* self, wl_registry*, uint32_t name, const char* interface,
                  uint32_t version) { device(self).bind(name, interface, version); },
    .global_remove = [](void*, wl_registry*, uint32_t) {},
};

const wl_data_device_listener WaylandDataDevice::deviceListener {
    .data_offer =
        [](void* self, wl_data_device*, wl_data_offer* offer) {
            device(self).m_offers[offer] = std::make_unique<WaylandOffer>(offer);
        },
    .enter =
        [](void* self, wl_data_device*, uint32_t, wl_surface*, wl_fixed_t, wl_fixed_t,
            wl_data_offer* offer) {
            device(self).m_dragged = offer;
            device(self).dropOthers();
        },
    .leave =
        [](void* self, wl_data_device*) {
            device(self).m_dragged = nullptr;
            device(self).dropOthers();
        },
    .motion = [](void*, wl_data_device*, uint32_t, wl_fixed_t, wl_fixed_t) {},
    // The offer stays, as Qt may still read from its own one: without this it would be withdrawn.
    .drop = [](void*, wl_data_device*) {},
    .selection =
        [](void* self, wl_data_device*, wl_data_offer* offer) {
            device(self).m_selection = offer;
            device(self).dropOthers();
        },
};

const wl_callback_listener WaylandDataDevice::toldListener {
    .done =
        [](void* self, wl_callback*, uint32_t) {
            device(self).endWaiting();
            Q_EMIT device(self).told();
        },
};

WaylandDataDevice::WaylandDataDevice(wl_display* display)
    : m_display(display)
    , m_registry(wl_display_get_registry(display))
{
    wl_registry_add_listener(m_registry, &registryListener, this);
}

WaylandDataDevice::~WaylandDataDevice()
{
    endWaiting();
    m_source.reset();
    m_offers.clear();
    if (m_device)
        release(m_device);
    if (m_manager)
        wl_data_device_manager_destroy(m_manager);
    m_seat.reset();
    wl_registry_destroy(m_registry);
}

bool WaylandDataDevice::isTold() const
{
    return m_seat && m_seat->hasKeyboard() && !m_wait;
}

WaylandOffer* WaylandDataDevice::selection() const
{
    const auto found = m_offers.find(m_selection);
    return found == m_offers.end() ? nullptr : found->second.get();
}

void WaylandDataDevice::setText(const QByteArray& text)
{
    if (!m_device)
        return;
    auto source = std::make_unique<WaylandSource>(m_manager, text);
    connect(source.get(), &WaylandSource::cancelled, this,
        [this] { m_source.release()->deleteLater(); });
    wl_data_device_set_selection(m_device, source->source(), m_seat->serial());
    m_source = std::move(source);
}

void WaylandDataDevice::bind(uint32_t name, const QByteArray& interface, uint32_t version)
{
    // The oldest versions that have all that is needed, and so the fewest events.
    const auto bound = [&](const wl_interface& wanted, uint32_t most) {
        return wl_registry_bind(m_registry, name, &wanted, std::min(version, most));
    };
    if (interface == wl_seat_interface.name && !m_seat) {
        m_seat = std::make_unique<WaylandSeat>(static_cast<wl_seat*>(bound(wl_seat_interface, 1)));
        connect(m_seat.get(), &WaylandSeat::keyboardCame, this, &WaylandDataDevice::waitToBeTold);
    } else if (interface == wl_data_device_manager_interface.name && !m_manager) {
        m_manager
            = static_cast<wl_data_device_manager*>(bound(wl_data_device_manager_interface, 3));
    }
    if (m_seat && m_manager && !m_device)
        makeDevice();
}

void WaylandDataDevice::makeDevice()
{
    m_device = wl_data_device_manager_get_data_device(m_manager, m_seat->seat());
    wl_data_device_add_listener(m_device, &deviceListener, this);
}

void WaylandDataDevice::waitToBeTold()
{
    endWaiting();
    m_wait = wl_display_sync(m_display);
    wl_callback_add_listener(m_wait, &toldListener, this);
}

void WaylandDataDevice::endWaiting()
{
    if (m_wait)
        wl_callback_destroy(std::exchange(m_wait, nullptr));
}

void WaylandDataDevice::dropOthers()
{
    std::erase_if(m_offers, [this](const auto& offer) {
        return offer.first != m_selection && offer.first != m_dragged;
    });
}
