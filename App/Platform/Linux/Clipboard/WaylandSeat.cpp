#include "App/Platform/Linux/Clipboard/WaylandSeat.h"

#include <unistd.h>
#include <utility>

namespace {

WaylandSeat& itself(void* data)
{
    return *static_cast<WaylandSeat*>(data);
}

// Follows one kind of device as it comes and goes.
template <typename Device, typename Listener>
void follow(bool isThere, Device*& device, Device* (*find)(wl_seat*), void (*lose)(Device*),
    int (*listen)(Device*, const Listener*, void*), const Listener& listener, WaylandSeat& seat)
{
    if (isThere && !device) {
        device = find(seat.seat());
        listen(device, &listener, &seat);
    } else if (!isThere && device) {
        lose(std::exchange(device, nullptr));
    }
}

}

const wl_seat_listener WaylandSeat::seatListener {
    .capabilities = [](void* self, wl_seat*,
                        uint32_t capabilities) { itself(self).learnCapabilities(capabilities); },
    .name = [](void*, wl_seat*, const char*) {},
};

const wl_keyboard_listener WaylandSeat::keyboardListener {
    .keymap = [](void*, wl_keyboard*, uint32_t, int descriptor, uint32_t) { ::close(descriptor); },
    .enter = [](void* self, wl_keyboard*, uint32_t serial, wl_surface*,
                 wl_array*) { itself(self).enter(serial); },
    .leave
    = [](void* self, wl_keyboard*, uint32_t, wl_surface*) { itself(self).m_hasKeyboard = false; },
    .key = [](void* self, wl_keyboard*, uint32_t serial, uint32_t, uint32_t,
               uint32_t) { itself(self).m_serial = serial; },
    .modifiers = [](void*, wl_keyboard*, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t) {},
    .repeat_info = [](void*, wl_keyboard*, int32_t, int32_t) {},
};

const wl_pointer_listener WaylandSeat::pointerListener {
    .enter = [](void*, wl_pointer*, uint32_t, wl_surface*, wl_fixed_t, wl_fixed_t) {},
    .leave = [](void*, wl_pointer*, uint32_t, wl_surface*) {},
    .motion = [](void*, wl_pointer*, uint32_t, wl_fixed_t, wl_fixed_t) {},
    .button = [](void* self, wl_pointer*, uint32_t serial, uint32_t, uint32_t,
                  uint32_t) { itself(self).m_serial = serial; },
    .axis = [](void*, wl_pointer*, uint32_t, uint32_t, wl_fixed_t) {},
    .frame = [](void*, wl_pointer*) {},
    .axis_source = [](void*, wl_pointer*, uint32_t) {},
    .axis_stop = [](void*, wl_pointer*, uint32_t, uint32_t) {},
    .axis_discrete = [](void*, wl_pointer*, uint32_t, int32_t) {},
    .axis_value120 = [](void*, wl_pointer*, uint32_t, int32_t) {},
};

const wl_touch_listener WaylandSeat::touchListener {
    .down = [](void* self, wl_touch*, uint32_t serial, uint32_t, wl_surface*, int32_t, wl_fixed_t,
                wl_fixed_t) { itself(self).m_serial = serial; },
    .up = [](void* self, wl_touch*, uint32_t serial, uint32_t,
              int32_t) { itself(self).m_serial = serial; },
    .motion = [](void*, wl_touch*, uint32_t, int32_t, wl_fixed_t, wl_fixed_t) {},
    .frame = [](void*, wl_touch*) {},
    .cancel = [](void*, wl_touch*) {},
    .shape = [](void*, wl_touch*, int32_t, wl_fixed_t, wl_fixed_t) {},
    .orientation = [](void*, wl_touch*, int32_t, wl_fixed_t) {},
};

WaylandSeat::WaylandSeat(wl_seat* seat)
    : m_seat(seat)
{
    wl_seat_add_listener(m_seat, &seatListener, this);
}

WaylandSeat::~WaylandSeat()
{
    learnCapabilities(0);
    wl_seat_destroy(m_seat);
}

void WaylandSeat::learnCapabilities(uint32_t capabilities)
{
    const auto has = [capabilities](uint32_t device) { return (capabilities & device) != 0; };
    follow(has(WL_SEAT_CAPABILITY_KEYBOARD), m_keyboard, wl_seat_get_keyboard, wl_keyboard_destroy,
        wl_keyboard_add_listener, keyboardListener, *this);
    follow(has(WL_SEAT_CAPABILITY_POINTER), m_pointer, wl_seat_get_pointer, wl_pointer_destroy,
        wl_pointer_add_listener, pointerListener, *this);
    follow(has(WL_SEAT_CAPABILITY_TOUCH), m_touch, wl_seat_get_touch, wl_touch_destroy,
        wl_touch_add_listener, touchListener, *this);
    m_hasKeyboard = m_hasKeyboard && m_keyboard;
}

void WaylandSeat::enter(uint32_t serial)
{
    m_serial = serial;
    m_hasKeyboard = true;
    Q_EMIT keyboardCame();
}
