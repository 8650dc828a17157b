// What the user types and points with.
#pragma once

#include <QObject>

#include <wayland-client-protocol.h>

class WaylandSeat final : public QObject {
    Q_OBJECT

public:
    explicit WaylandSeat(wl_seat* seat);
    ~WaylandSeat() override;

    wl_seat* seat() const { return m_seat; }
    bool hasKeyboard() const { return m_hasKeyboard; } // In a window of ours.
    // Of the latest key or button: the user's permission to copy.
    uint32_t serial() const { return m_serial; }

Q_SIGNALS:
    void keyboardCame();

private:
    static const wl_seat_listener seatListener;
    static const wl_keyboard_listener keyboardListener;
    static const wl_pointer_listener pointerListener;
    static const wl_touch_listener touchListener;

    void learnCapabilities(uint32_t capabilities);
    void enter(uint32_t serial);

    wl_seat* m_seat;
    wl_keyboard* m_keyboard = nullptr;
    wl_pointer* m_pointer = nullptr;
    wl_touch* m_touch = nullptr;
    uint32_t m_serial = 0;
    bool m_hasKeyboard = false;
};
