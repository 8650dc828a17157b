// What the clipboard of a Wayland compositor holds, as it tells its user's programs.
#pragma once

#include <QObject>

#include <map>
#include <memory>
#include <wayland-client-protocol.h>

class WaylandOffer;
class WaylandSeat;
class WaylandSource;

class WaylandDataDevice final : public QObject {
    Q_OBJECT

public:
    // All events come by the display's own queue, which Qt serves on the main thread.
    explicit WaylandDataDevice(wl_display* display);
    ~WaylandDataDevice() override;

    // Only whoever has the keyboard is told, and compositors differ in which of both comes first.
    bool isTold() const;
    WaylandOffer* selection() const; // Null where the clipboard is empty, or nobody has told.

    void setText(const QByteArray& text); // In UTF-8.

Q_SIGNALS:
    void told();

private:
    static const wl_registry_listener registryListener;
    static const wl_data_device_listener deviceListener;
    static const wl_callback_listener toldListener;

    void bind(uint32_t name, const QByteArray& interface, uint32_t version);
    void makeDevice();
    void waitToBeTold();
    void endWaiting();
    void dropOthers();

    wl_display* m_display;
    wl_registry* m_registry;
    wl_callback* m_wait = nullptr; // For all that the compositor sends with the keyboard.
    std::unique_ptr<WaylandSeat> m_seat;
    wl_data_device_manager* m_manager = nullptr;
    wl_data_device* m_device = nullptr;
    std::map<wl_data_offer*, std::unique_ptr<WaylandOffer>> m_offers;
    wl_data_offer* m_selection = nullptr;
    wl_data_offer* m_dragged = nullptr;
    std::unique_ptr<WaylandSource> m_source;
};
