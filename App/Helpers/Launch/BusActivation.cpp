#include "App/Helpers/Launch/BusActivation.h"

#include "App/Helpers/Launch/Glib.h"

#include <gio/gio.h>

#include <algorithm>
#include <string_view>

namespace BusActivation {

namespace {

constexpr guint longestConnecting = 2; // Seconds.
constexpr int longestStart = 20'000; // Milliseconds.

struct Unreferenced {
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(GMainLoop* loop) const { g_main_loop_unref(loop); }
    void operator()(GVariant* value) const { g_variant_unref(value); }
};
template <typename T>
using Owned = std::unique_ptr<T, Unreferenced>;

// The loop of a connection that has begun runs until it has ended, one way or the other.
class Bus final {
public:
    // Null when none answers.
    Owned<GDBusConnection> connection()
    {
        const auto deadline = g_timeout_add_seconds(longestConnecting, &Bus::giveUp, this);
        g_bus_get(
            G_BUS_TYPE_SESSION, m_cancellable.get(),
            [](GObject*, GAsyncResult* result, gpointer self) {
                auto& bus = *static_cast<Bus*>(self);
                bus.m_connection.reset(g_bus_get_finish(result, nullptr));
                g_main_loop_quit(bus.m_loop.get());
            },
            this);
        g_main_loop_run(m_loop.get());
        if (!g_cancellable_is_cancelled(m_cancellable.get()))
            g_source_remove(deadline);
        return std::move(m_connection);
    }

private:
    static gboolean giveUp(gpointer self)
    {
        g_cancellable_cancel(static_cast<Bus*>(self)->m_cancellable.get());
        return G_SOURCE_REMOVE;
    }

    Owned<GMainLoop> m_loop { g_main_loop_new(nullptr, FALSE) };
    Owned<GCancellable> m_cancellable { g_cancellable_new() };
    Owned<GDBusConnection> m_connection;
};

// Without the ending.
std::string nameOf(const Application& application)
{
    return application.id.substr(0, application.id.rfind(".desktop"));
}

std::string pathOf(std::string name)
{
    std::ranges::replace(name, '.', '/');
    std::ranges::replace(name, '-', '_');
    return '/' + name;
}

GVariant* parameters(const std::string& address)
{
    GVariantBuilder about;
    g_variant_builder_init(&about, G_VARIANT_TYPE_VARDICT);
    if (address.empty())
        return g_variant_new("(a{sv})", &about);
    const char* const addresses[] = { address.c_str(), nullptr };
    return g_variant_new("(^asa{sv})", addresses, &about);
}

bool isNobodyThere(const std::string& error)
{
    static constexpr std::string_view said[] = {
        "org.freedesktop.DBus.Error.NameHasNoOwner",
        "org.freedesktop.DBus.Error.ServiceUnknown",
        "org.freedesktop.DBus.Error.UnknownInterface",
        "org.freedesktop.DBus.Error.UnknownMethod",
        "org.freedesktop.DBus.Error.UnknownObject",
    };
    return std::ranges::find(said, error) != std::end(said)
        || error.starts_with("org.freedesktop.DBus.Error.Spawn.");
}

Answer answer(Glib::Error error)
{
    if (!error)
        return {};
    const auto name = Glib::taken(g_dbus_error_get_remote_error(error.get()));
    g_dbus_error_strip_remote_error(error.get());
    return { .isReached = !isNobodyThere(name), .refusal = error->message };
}

}

Answer start(const Application& application, const std::string& address)
{
    const auto name = nameOf(application);
    if (!g_dbus_is_name(name.c_str()) || g_dbus_is_unique_name(name.c_str()))
        return { .isReached = false, .refusal = "its name is none for a message" };
    const auto connection = Bus().connection();
    if (!connection)
        return { .isReached = false, .refusal = "the session bus does not answer" };
    GError* error = nullptr;
    const Owned<GVariant> reply(g_dbus_connection_call_sync(connection.get(), name.c_str(),
        pathOf(name).c_str(), "org.freedesktop.Application", address.empty() ? "Activate" : "Open",
        parameters(address), nullptr, G_DBUS_CALL_FLAGS_NONE, longestStart, nullptr, &error));
    return answer(Glib::Error(error));
}

}
