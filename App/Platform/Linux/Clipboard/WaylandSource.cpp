#include "App/Platform/Linux/Clipboard/WaylandSource.h"

#include "App/Platform/Linux/Background/BackgroundWork.h"
#include "App/Platform/Linux/Clipboard/ClipboardText.h"
#include "App/Platform/Linux/Clipboard/PipeText.h"

#include <utility>

using namespace std::chrono_literals;

namespace {

// A reader may well stop in the middle, as a pager does. It holds up nobody but itself.
const Patience pagersPatience(10min, 60min);

}

const wl_data_source_listener WaylandSource::listener {
    .target = [](void*, wl_data_source*, const char*) {},
    .send = [](void* self, wl_data_source*, const char*,
                int pipe) { static_cast<const WaylandSource*>(self)->send(pipe); },
    .cancelled
    = [](void* self, wl_data_source*) { Q_EMIT static_cast<WaylandSource*>(self)->cancelled(); },
    .dnd_drop_performed = [](void*, wl_data_source*) {},
    .dnd_finished = [](void*, wl_data_source*) {},
    .action = [](void*, wl_data_source*, uint32_t) {},
};

WaylandSource::WaylandSource(wl_data_device_manager* manager, QByteArray text)
    : m_source(wl_data_device_manager_create_data_source(manager))
    , m_text(std::move(text))
{
    wl_data_source_add_listener(m_source, &listener, this);
    for (const auto& format : ClipboardText::formats) {
        if (format.encoding != ClipboardText::Encoding::latin1)
            wl_data_source_offer(m_source, format.name);
    }
}

WaylandSource::~WaylandSource()
{
    wl_data_source_destroy(m_source);
}

void WaylandSource::send(int pipe) const
{
    const auto end = std::make_shared<PipeEnd>(pipe);
    // Goes on when there is a new text, and when this one's work is heard of no more.
    BackgroundWork work;
    work.start([end, text = m_text]() -> BackgroundWork::Finish {
        PipeText::write(*end, text, pagersPatience);
        return [] {};
    });
}
