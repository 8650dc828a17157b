// Opens an address with the program that the user has chosen for it: a program of its own, so that
// GIO stays out of the resident one, and what holds it up can hold up nothing but this.
#include "App/Helpers/SettingsPrograms.h"

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include <csignal>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <unistd.h>

namespace {

struct Freed {
    void operator()(GAppInfo* app) const { g_object_unref(app); }
    void operator()(GMainLoop* loop) const { g_main_loop_unref(loop); }
    void operator()(GError* error) const { g_error_free(error); }
};
using App = std::unique_ptr<GAppInfo, Freed>;
using Loop = std::unique_ptr<GMainLoop, Freed>;
using Error = std::unique_ptr<GError, Freed>;

// A service that has not answered by then is not going to.
constexpr unsigned longestRun = 30;
constexpr std::string_view settingsScheme = "x-apple.systempreferences:";

// What is started inherits the mask.
void takeSignals()
{
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    signal(SIGALRM, SIG_DFL);
    alarm(longestRun);
}

// A program may be started by a message, which is lost unless we wait for the answer.
class Launch final {
public:
    Error ofDefault(const char* address)
    {
        g_app_info_launch_default_for_uri_async(
            address, nullptr, nullptr,
            [](GObject*, GAsyncResult* result, gpointer self) {
                GError* error = nullptr;
                g_app_info_launch_default_for_uri_finish(result, &error);
                static_cast<Launch*>(self)->end(error);
            },
            this);
        return run();
    }

    Error of(GAppInfo& app)
    {
        g_app_info_launch_uris_async(
            &app, nullptr, nullptr, nullptr,
            [](GObject* source, GAsyncResult* result, gpointer self) {
                GError* error = nullptr;
                g_app_info_launch_uris_finish(G_APP_INFO(source), result, &error);
                static_cast<Launch*>(self)->end(error);
            },
            this);
        return run();
    }

private:
    Error run()
    {
        g_main_loop_run(m_loop.get());
        return std::move(m_error);
    }

    void end(GError* error)
    {
        m_error.reset(error);
        g_main_loop_quit(m_loop.get());
    }

    Loop m_loop { g_main_loop_new(nullptr, FALSE) };
    Error m_error;
};

bool hasCategory(GAppInfo* app, std::string_view category)
{
    const auto* const text = g_desktop_app_info_get_categories(G_DESKTOP_APP_INFO(app));
    return text && (';' + std::string(text) + ';').find(category) != std::string::npos;
}

bool isBefore(GAppInfo* one, GAppInfo* other)
{
    return std::string_view(g_app_info_get_id(one)) < g_app_info_get_id(other);
}

// The first by name: GIO's order differs from one time to the next.
App anySettings()
{
    App found;
    auto* const all = g_app_info_get_all();
    for (auto* each = all; each; each = each->next) {
        auto* const app = G_APP_INFO(each->data);
        const bool fits = g_app_info_should_show(app) && hasCategory(app, ";Settings;");
        if (fits && (!found || isBefore(app, found.get())))
            found.reset(G_APP_INFO(g_object_ref(app)));
    }
    g_list_free_full(all, g_object_unref);
    return found;
}

App settings()
{
    const auto* const desktops = g_getenv("XDG_CURRENT_DESKTOP");
    for (const auto& entry : SettingsPrograms::candidates(desktops ? desktops : "")) {
        // Null where it is not installed. Some refuse to run on another desktop than theirs.
        auto* const app = g_desktop_app_info_new(entry.c_str());
        App found(app ? G_APP_INFO(app) : nullptr);
        if (found && g_desktop_app_info_get_show_in(app, nullptr))
            return found;
    }
    return anySettings();
}

// Files and programs are nothing that a calendar may open.
bool isAllowed(const char* address)
{
    for (const std::string_view scheme :
        { std::string_view("http:"), std::string_view("https:") }) {
        if (g_ascii_strncasecmp(address, scheme.data(), scheme.size()) == 0)
            return true;
    }
    return std::string_view(address).starts_with(settingsScheme);
}

Error open(const char* address)
{
    Launch launch;
    auto error = launch.ofDefault(address);
    if (!error || !std::string_view(address).starts_with(settingsScheme))
        return error;
    const auto app = settings();
    return app ? launch.of(*app) : std::move(error);
}

}

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("Usage: open ADDRESS\n", stderr);
        return 1;
    }
    if (!isAllowed(argv[1])) {
        std::fprintf(stderr, "%s: neither a web address nor that of the settings\n", argv[1]);
        return 1;
    }
    takeSignals();
    const auto error = open(argv[1]);
    if (error)
        std::fprintf(stderr, "%s: %s\n", argv[1], error->message);
    return error ? 1 : 0;
}
