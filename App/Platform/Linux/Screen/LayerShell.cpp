#include "App/Platform/Linux/Screen/LayerShell.h"

#include "App/Platform/Linux/Screen/LayerShellModule.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace {

constexpr uint32_t latestVersion = 4;
constexpr uint32_t overlayLayer = 3;
constexpr uint32_t topEdge = 1;
constexpr uint32_t allEdges = 15;
constexpr int32_t overPanels = -1;
constexpr int32_t besidePanels = 0;
// KWin gives the keyboard, unasked, to whatever is clicked that has another name.
constexpr auto nameForNoKeyboard = "dock";
constexpr uint32_t exclusiveKeyboard = 1;

enum ShellRequest : uint32_t { getLayerSurface = 0 };
enum SurfaceRequest : uint32_t {
    setSizeRequest = 0,
    setAnchor = 1,
    setExclusiveZone = 2,
    setKeyboardInteractivity = 4,
    ackConfigure = 6,
    destroySurface = 7,
};

// The protocol as the library wants it described: names, arguments, and the interfaces of those
// arguments that are objects. What is not called is here for the numbers of what follows it.
const wl_interface* noObjects[4] {};

const wl_message surfaceRequests[] {
    { "set_size", "uu", noObjects },
    { "set_anchor", "u", noObjects },
    { "set_exclusive_zone", "i", noObjects },
    { "set_margin", "iiii", noObjects },
    { "set_keyboard_interactivity", "u", noObjects },
    { "get_popup", "o", noObjects },
    { "ack_configure", "u", noObjects },
    { "destroy", "", noObjects },
    { "set_layer", "2u", noObjects },
};
const wl_message surfaceEvents[] {
    { "configure", "uuu", noObjects },
    { "closed", "", noObjects },
};
const wl_interface surfaceInterface { "zwlr_layer_surface_v1", latestVersion,
    std::size(surfaceRequests), surfaceRequests, std::size(surfaceEvents), surfaceEvents };

const wl_interface* surfaceArguments[] { &surfaceInterface, &wl_surface_interface,
    &wl_output_interface, nullptr, nullptr };
const wl_message shellRequests[] {
    { "get_layer_surface", "no?ous", surfaceArguments },
    { "destroy", "3", noObjects },
};
const wl_interface shellInterface { LayerShellModule::interface, latestVersion,
    std::size(shellRequests), shellRequests, 0, nullptr };

}

LayerSurface::LayerSurface(const LayerShell& shell, wl_surface* surface, wl_output* output,
    Place place, const QSize& size, Reader reader)
    : m_reader(std::move(reader))
    , m_proxy(wl_proxy_marshal_flags(shell.proxy(), getLayerSurface, &surfaceInterface,
          wl_proxy_get_version(shell.proxy()), 0, nullptr, surface, output, overlayLayer,
          place == Place::top ? nameForNoKeyboard : "corvella"))
{
    using Function = void (*)();
    static Function listener[] { reinterpret_cast<Function>(&LayerSurface::configure),
        reinterpret_cast<Function>(&LayerSurface::close) };
    wl_proxy_add_listener(m_proxy, listener, this);
    request(setAnchor, place == Place::top ? topEdge : allEdges);
    request(setExclusiveZone, place == Place::free ? besidePanels : overPanels);
    setSize(size);
    wl_surface_commit(surface);
}

LayerSurface::~LayerSurface()
{
    wl_proxy_marshal_flags(
        m_proxy, destroySurface, nullptr, wl_proxy_get_version(m_proxy), WL_MARSHAL_FLAG_DESTROY);
}

template <typename... Arguments>
void LayerSurface::request(uint32_t opcode, Arguments... arguments)
{
    wl_proxy_marshal_flags(
        m_proxy, opcode, nullptr, wl_proxy_get_version(m_proxy), 0, arguments...);
}

void LayerSurface::setSize(const QSize& size)
{
    request(setSizeRequest, uint32_t(size.width()), uint32_t(size.height()));
}

void LayerSurface::takeKeyboard()
{
    request(setKeyboardInteractivity, exclusiveKeyboard);
}

// The reader may well destroy the surface, here and below.
void LayerSurface::configure(
    void* self, wl_proxy*, uint32_t serial, uint32_t width, uint32_t height)
{
    auto& surface = *static_cast<LayerSurface*>(self);
    surface.request(ackConfigure, serial);
    const auto configured = surface.m_reader.configured;
    configured({ int(width), int(height) });
}

void LayerSurface::close(void* self, wl_proxy*)
{
    const auto closed = static_cast<LayerSurface*>(self)->m_reader.closed;
    closed();
}

const wl_registry_listener LayerShell::registryListener {
    .global =
        [](void* self, wl_registry* registry, uint32_t name, const char* interface,
            uint32_t version) {
            if (std::string_view(interface) == LayerShellModule::interface)
                static_cast<LayerShell*>(self)->bind(registry, name, version);
        },
    .global_remove = [](void*, wl_registry*, uint32_t) {},
};

// On a queue of its own, as nothing else of what is on its way may be dealt with in here.
LayerShell::LayerShell(wl_display* display)
{
    auto* const queue = wl_display_create_queue(display);
    auto* const wrapper = static_cast<wl_display*>(wl_proxy_create_wrapper(display));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(wrapper), queue);
    auto* const registry = wl_display_get_registry(wrapper);
    wl_registry_add_listener(registry, &registryListener, this);
    wl_display_roundtrip_queue(display, queue);
    wl_registry_destroy(registry);
    wl_proxy_wrapper_destroy(wrapper);
    if (m_proxy)
        wl_proxy_set_queue(m_proxy, nullptr);
    wl_event_queue_destroy(queue);
}

void LayerShell::bind(wl_registry* registry, uint32_t name, uint32_t version)
{
    m_proxy = static_cast<wl_proxy*>(
        wl_registry_bind(registry, name, &shellInterface, std::min(version, latestVersion)));
}
