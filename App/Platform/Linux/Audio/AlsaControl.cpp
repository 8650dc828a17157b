#include "App/Platform/Linux/Audio/AlsaControl.h"

#include "App/Platform/AudioInput.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace {

using Id = std::unique_ptr<snd_ctl_elem_id_t, decltype(&snd_ctl_elem_id_free)>;

Id makeId()
{
    snd_ctl_elem_id_t* id = nullptr;
    snd_ctl_elem_id_malloc(&id);
    return { id, snd_ctl_elem_id_free };
}

// The library would write to standard error otherwise.
void keepSilent(const char*, int, const char*, int, const char*, ...) { }

// 0 is no match, the greater the better.
int likeness(std::string_view name, std::string_view wanted)
{
    if (name == wanted)
        return 2;
    return name.ends_with(std::string(" ").append(wanted)) ? 1 : 0;
}

bool hasValue(const snd_ctl_elem_info_t* info)
{
    const auto type = snd_ctl_elem_info_get_type(info);
    return (type == SND_CTL_ELEM_TYPE_BOOLEAN || type == SND_CTL_ELEM_TYPE_INTEGER)
        && snd_ctl_elem_info_get_count(info) > 0 && !snd_ctl_elem_info_is_inactive(info);
}

// The first of those that are most alike.
Id findId(const snd_ctl_elem_list_t* list, std::string_view wanted)
{
    auto best = makeId();
    int most = 0;
    for (unsigned i = 0; i < snd_ctl_elem_list_get_used(list); ++i) {
        const int like = likeness(snd_ctl_elem_list_get_name(list, i), wanted);
        if (like <= most || snd_ctl_elem_list_get_interface(list, i) != SND_CTL_ELEM_IFACE_MIXER)
            continue;
        most = like;
        snd_ctl_elem_list_get_id(list, i, best.get());
    }
    if (most == 0)
        best.reset();
    return best;
}

Id findId(snd_ctl_t* card, std::string_view wanted)
{
    snd_ctl_elem_list_t* list = nullptr;
    snd_ctl_elem_list_alloca(&list);
    if (snd_ctl_elem_list(card, list) < 0
        || snd_ctl_elem_list_alloc_space(list, snd_ctl_elem_list_get_count(list)) < 0)
        return { nullptr, snd_ctl_elem_id_free };
    snd_ctl_elem_list(card, list);
    auto id = findId(list, wanted);
    snd_ctl_elem_list_free_space(list);
    return id;
}

}

AlsaCard openDefaultCard()
{
    snd_lib_error_set_handler(keepSilent);
    snd_ctl_t* card = nullptr;
    const bool isOpen = snd_ctl_open(&card, "default", SND_CTL_NONBLOCK) >= 0;
    snd_config_update_free_global(); // Some hundred kilobytes that are read anew next time.
    return AlsaCard(isOpen ? card : nullptr);
}

std::optional<AlsaControl> AlsaControl::find(snd_ctl_t* card, std::string_view name)
{
    const auto id = findId(card, name);
    if (!id)
        return {};
    snd_ctl_elem_info_t* info = nullptr;
    snd_ctl_elem_info_alloca(&info);
    snd_ctl_elem_info_set_id(info, id.get());
    if (snd_ctl_elem_info(card, info) < 0 || !hasValue(info))
        return {};
    return AlsaControl(card, info);
}

AlsaControl::AlsaControl(snd_ctl_t* card, const snd_ctl_elem_info_t* info)
    : m_card(card)
    , m_isSwitch(snd_ctl_elem_info_get_type(info) == SND_CTL_ELEM_TYPE_BOOLEAN)
    , m_isWritable(snd_ctl_elem_info_is_writable(info) != 0)
    , m_channels(snd_ctl_elem_info_get_count(info))
{
    const auto id = makeId();
    snd_ctl_elem_info_get_id(info, id.get());
    snd_ctl_elem_value_t* value = nullptr;
    snd_ctl_elem_value_malloc(&value);
    snd_ctl_elem_value_set_id(value, id.get());
    m_value.reset(value);
    if (!m_isSwitch) {
        m_least = snd_ctl_elem_info_get_min(info);
        m_most = snd_ctl_elem_info_get_max(info);
    }
}

bool AlsaControl::hasElement(int element) const
{
    // Two channels have no volume but their own. More than two have one together as well: whoever
    // knows of the first two only must not leave the others listening.
    return element == mainElement
        ? m_channels != 2
        : m_channels > 1 && element > 0 && static_cast<unsigned>(element) <= m_channels;
}

std::optional<float> AlsaControl::read(int element) const
{
    if (!refresh() || m_most <= m_least)
        return {};
    const auto [first, last] = channels(element);
    long greatest = m_least;
    for (unsigned i = first; i < last; ++i)
        greatest = std::max(greatest, at(i));
    return static_cast<float>(std::min(greatest, m_most) - m_least)
        / static_cast<float>(m_most - m_least);
}

bool AlsaControl::write(int element, float value)
{
    if (!m_isWritable || !refresh())
        return false;
    const auto range = static_cast<float>(m_most - m_least);
    const auto [first, last] = channels(element);
    for (unsigned i = first; i < last; ++i)
        set(i, m_least + std::lround(std::clamp(value, 0.0F, 1.0F) * range));
    return snd_ctl_elem_write(m_card, m_value.get()) >= 0;
}

bool AlsaControl::refresh() const
{
    return snd_ctl_elem_read(m_card, m_value.get()) >= 0;
}

long AlsaControl::at(unsigned channel) const
{
    return m_isSwitch ? snd_ctl_elem_value_get_boolean(m_value.get(), channel)
                      : snd_ctl_elem_value_get_integer(m_value.get(), channel);
}

void AlsaControl::set(unsigned channel, long value)
{
    if (m_isSwitch)
        snd_ctl_elem_value_set_boolean(m_value.get(), channel, value);
    else
        snd_ctl_elem_value_set_integer(m_value.get(), channel, value);
}

std::pair<unsigned, unsigned> AlsaControl::channels(int element) const
{
    const auto number = static_cast<unsigned>(element);
    return element == mainElement ? std::pair(0U, m_channels) : std::pair(number - 1, number);
}
