#include "App/Helpers/SampleCache.h"

#include <pulse/pulseaudio.h>

SampleCache::SampleCache()
    : m_loop(pa_mainloop_new())
{
    m_context = pa_context_new(pa_mainloop_get_api(m_loop), "Corvella");
    if (pa_context_connect(m_context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0)
        return;
    while (PA_CONTEXT_IS_GOOD(pa_context_get_state(m_context)) && !isConnected() && turn()) { }
}

SampleCache::~SampleCache()
{
    pa_context_disconnect(m_context);
    pa_context_unref(m_context);
    pa_mainloop_free(m_loop);
}

bool SampleCache::isConnected() const
{
    return pa_context_get_state(m_context) == PA_CONTEXT_READY;
}

bool SampleCache::turn()
{
    return pa_mainloop_iterate(m_loop, 1, nullptr) >= 0;
}

bool SampleCache::play(const std::string& name)
{
    bool started = false;
    auto* properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_MEDIA_ROLE, "event");
    const auto heard = [](pa_context*, std::uint32_t index, void* result) {
        *static_cast<bool*>(result) = index != PA_INVALID_INDEX;
    };
    auto* operation = pa_context_play_sample_with_proplist(
        m_context, name.c_str(), nullptr, PA_VOLUME_INVALID, properties, heard, &started);
    pa_proplist_free(properties);
    if (!operation)
        return false;
    while (pa_operation_get_state(operation) == PA_OPERATION_RUNNING && turn()) { }
    pa_operation_unref(operation);
    return started;
}

bool SampleCache::store(const std::string& name, const AlertSounds::Samples& samples)
{
    const pa_sample_spec format { PA_SAMPLE_S16NE, AlertSounds::sampleRate, 1 };
    const auto size = samples.size() * sizeof samples.front();
    auto* stream = pa_stream_new(m_context, name.c_str(), &format, nullptr);
    if (!stream)
        return false;
    pa_stream_connect_upload(stream, size);
    while (pa_stream_get_state(stream) == PA_STREAM_CREATING && turn()) { }
    const bool written = pa_stream_get_state(stream) == PA_STREAM_READY
        && pa_stream_write(stream, samples.data(), size, nullptr, 0, PA_SEEK_RELATIVE) == 0
        && pa_stream_finish_upload(stream) == 0;
    while (written && pa_stream_get_state(stream) == PA_STREAM_READY && turn()) { }
    const bool stored = written && pa_stream_get_state(stream) == PA_STREAM_TERMINATED;
    pa_stream_unref(stream);
    return stored;
}
