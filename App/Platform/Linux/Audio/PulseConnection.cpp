#include "App/Platform/Linux/Audio/PulseConnection.h"

using std::chrono::duration_cast;
using std::chrono::microseconds;
using std::chrono::steady_clock;

static void noteSource(pa_context*, const pa_source_info* info, int, void* noted)
{
    if (info) {
        *static_cast<std::optional<PulseConnection::Source>*>(noted) = { info->index,
            info->monitor_of_sink != PA_INVALID_INDEX, info->mute != 0, info->volume };
    }
}

static void noteSuccess(pa_context*, int success, void* noted)
{
    *static_cast<bool*>(noted) = success != 0;
}

PulseConnection::PulseConnection(Deadline deadline)
    : m_deadline(deadline)
    , m_loop(pa_mainloop_new())
    , m_context(pa_context_new(pa_mainloop_get_api(m_loop), "Corvella"))
{
    if (pa_context_connect(m_context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0)
        return;
    while (PA_CONTEXT_IS_GOOD(pa_context_get_state(m_context)) && !isConnected() && turn()) { }
}

PulseConnection::~PulseConnection()
{
    pa_context_disconnect(m_context);
    pa_context_unref(m_context);
    pa_mainloop_free(m_loop);
}

bool PulseConnection::isConnected() const
{
    return pa_context_get_state(m_context) == PA_CONTEXT_READY;
}

std::optional<PulseConnection::Source> PulseConnection::defaultSource()
{
    std::optional<Source> source;
    const bool isAnswered = complete(
        pa_context_get_source_info_by_name(m_context, "@DEFAULT_SOURCE@", noteSource, &source));
    return isAnswered ? source : std::nullopt;
}

bool PulseConnection::setMuted(quint32 source, bool muted)
{
    bool success = false;
    return complete(
               pa_context_set_source_mute_by_index(m_context, source, muted, noteSuccess, &success))
        && success;
}

bool PulseConnection::setVolume(quint32 source, const pa_cvolume& volume)
{
    bool success = false;
    return complete(pa_context_set_source_volume_by_index(
               m_context, source, &volume, noteSuccess, &success))
        && success;
}

bool PulseConnection::turn()
{
    const auto left = duration_cast<microseconds>(m_deadline - steady_clock::now()).count();
    return left > 0 && pa_mainloop_prepare(m_loop, static_cast<int>(left)) >= 0
        && pa_mainloop_poll(m_loop) >= 0 && pa_mainloop_dispatch(m_loop) >= 0;
}

bool PulseConnection::complete(pa_operation* operation)
{
    if (!operation)
        return false;
    while (pa_operation_get_state(operation) == PA_OPERATION_RUNNING && turn()) { }
    const bool isDone = pa_operation_get_state(operation) == PA_OPERATION_DONE;
    pa_operation_cancel(operation); // An answer after this would have nowhere to go.
    pa_operation_unref(operation);
    return isDone;
}
