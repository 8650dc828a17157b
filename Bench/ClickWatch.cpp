// Clicks at a place of the screen as a pointer would and prints the milliseconds until what the
// click brought up is painted. Looks at a band across the screen, so what comes must cross it.
//   click-watch X Y BAND_TOP
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <poll.h>
#include <utility>
#include <vector>
#include <xcb/damage.h>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

namespace {

using Clock = std::chrono::steady_clock;
using Pixels = std::vector<uint8_t>;

constexpr uint16_t bandHeight = 16;
constexpr int quietMilliseconds = 350;
constexpr int longestMilliseconds = 2000;

template <typename Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

struct Sight {
    Clock::time_point time;
    Pixels pixels;
};

class ClickWatch final {
public:
    explicit ClickWatch(int16_t top);

    void moveTo(int16_t x, int16_t y);
    Clock::time_point click();
    Pixels look();
    // Waits for a first sight for longer than it takes a later one not to come.
    std::vector<Sight> lookUntilQuiet(int firstMilliseconds);

private:
    bool damageWithin(int milliseconds);
    void fake(uint8_t type, uint8_t detail, int16_t x = 0, int16_t y = 0);

    xcb_connection_t* m_x = xcb_connect(nullptr, nullptr);
    xcb_screen_t* m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_x)).data;
    xcb_damage_damage_t m_damage = xcb_generate_id(m_x);
    uint8_t m_damageEvent = 0;
    int16_t m_top;
};

ClickWatch::ClickWatch(int16_t top)
    : m_top(top)
{
    m_damageEvent = xcb_get_extension_data(m_x, &xcb_damage_id)->first_event;
    const auto version = xcb_damage_query_version(m_x, 1, 1);
    std::free(xcb_damage_query_version_reply(m_x, version, nullptr));
    xcb_damage_create(m_x, m_damage, m_screen->root, XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    xcb_flush(m_x);
}

void ClickWatch::fake(uint8_t type, uint8_t detail, int16_t x, int16_t y)
{
    xcb_test_fake_input(m_x, type, detail, XCB_CURRENT_TIME, m_screen->root, x, y, 0);
    xcb_flush(m_x);
}

void ClickWatch::moveTo(int16_t x, int16_t y)
{
    fake(XCB_MOTION_NOTIFY, 0, x, y);
}

// The time of the release, which is what makes a click of a press.
Clock::time_point ClickWatch::click()
{
    fake(XCB_BUTTON_PRESS, XCB_BUTTON_INDEX_1);
    const auto now = Clock::now();
    fake(XCB_BUTTON_RELEASE, XCB_BUTTON_INDEX_1);
    return now;
}

Pixels ClickWatch::look()
{
    const auto cookie = xcb_get_image(m_x, XCB_IMAGE_FORMAT_Z_PIXMAP, m_screen->root, 0, m_top,
        m_screen->width_in_pixels, bandHeight, ~0U);
    const Owned<xcb_get_image_reply_t> image(xcb_get_image_reply(m_x, cookie, nullptr), &std::free);
    if (!image)
        return {};
    const auto* data = xcb_get_image_data(image.get());
    return { data, data + xcb_get_image_data_length(image.get()) };
}

bool ClickWatch::damageWithin(int milliseconds)
{
    const auto end = Clock::now() + std::chrono::milliseconds(milliseconds);
    for (;;) {
        bool damaged = false;
        while (const Owned<xcb_generic_event_t> event { xcb_poll_for_event(m_x), &std::free })
            damaged = damaged || (event->response_type & 0x7f) == m_damageEvent + XCB_DAMAGE_NOTIFY;
        if (damaged)
            return true;
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
        if (left.count() <= 0)
            return false;
        pollfd wait { xcb_get_file_descriptor(m_x), POLLIN, 0 };
        poll(&wait, 1, static_cast<int>(left.count()));
    }
}

std::vector<Sight> ClickWatch::lookUntilQuiet(int firstMilliseconds)
{
    std::vector<Sight> sights;
    const auto end = Clock::now() + std::chrono::seconds(3);
    while (Clock::now() < end
        && damageWithin(sights.empty() ? firstMilliseconds : quietMilliseconds)) {
        const auto now = Clock::now();
        auto pixels = look();
        if (sights.empty() || sights.back().pixels != pixels)
            sights.push_back({ now, std::move(pixels) });
    }
    return sights;
}

}

int main(int argc, char** argv)
{
    if (argc != 4)
        return 2;
    const auto number = [argv](int index) { return static_cast<int16_t>(std::atoi(argv[index])); };
    ClickWatch watch(number(3));
    watch.moveTo(number(1), number(2));
    watch.lookUntilQuiet(quietMilliseconds);
    const auto before = watch.look();
    const auto clicked = watch.click();
    const auto sights = watch.lookUntilQuiet(longestMilliseconds);
    if (sights.empty() || sights.back().pixels == before)
        return 1;
    const std::chrono::duration<double, std::milli> taken = sights.back().time - clicked;
    std::printf("%.2f\n", taken.count());
    return 0;
}
