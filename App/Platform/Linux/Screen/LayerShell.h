// The compositor's layers: wlr-layer-shell, versions 1 to 4, as far as it is needed here.
#pragma once

#include <QSize>

#include <functional>
#include <wayland-client-protocol.h>

class LayerShell;

// A surface in the layer above windows and panels.
class LayerSurface final {
public:
    enum class Place {
        top, // In the middle of the upper edge, over whatever is there.
        everywhere, // Over all of the output.
        free, // Over what panels leave free.
    };

    // To be told, not before this function returns, of the size that the compositor gives and of
    // the surface's end, after which there is nothing to be seen of it.
    struct Reader {
        std::function<void(const QSize& size)> configured;
        std::function<void()> closed;
    };

    // Nothing may be attached to the surface before it is configured.
    LayerSurface(const LayerShell& shell, wl_surface* surface, wl_output* output, Place place,
        const QSize& size, Reader reader);
    ~LayerSurface();
    LayerSurface(const LayerSurface&) = delete;
    LayerSurface& operator=(const LayerSurface&) = delete;

    // Both with the next commit of the surface.
    void setSize(const QSize& size);
    void takeKeyboard();

private:
    static void configure(void* self, wl_proxy*, uint32_t serial, uint32_t width, uint32_t height);
    static void close(void* self, wl_proxy*);
    template <typename... Arguments>
    void request(uint32_t opcode, Arguments... arguments);

    Reader m_reader;
    wl_proxy* m_proxy;
};

class LayerShell final {
public:
    explicit LayerShell(wl_display* display);

    bool isThere() const { return m_proxy; }
    wl_proxy* proxy() const { return m_proxy; }

private:
    static const wl_registry_listener registryListener;

    void bind(wl_registry* registry, uint32_t name, uint32_t version);

    wl_proxy* m_proxy = nullptr;
};
