// One switch or volume of a sound card, by its name.
#pragma once

#include <alsa/asoundlib.h>

#include <memory>
#include <optional>
#include <string_view>
#include <utility>

struct AlsaCardCloser {
    void operator()(snd_ctl_t* card) const { snd_ctl_close(card); }
};
using AlsaCard = std::unique_ptr<snd_ctl_t, AlsaCardCloser>;

// Null when there is none.
AlsaCard openDefaultCard();

class AlsaControl final {
public:
    // "Capture Switch" itself, or else the first that is named after one input, as in "Mic Capture
    // Switch". The card must outlive it.
    static std::optional<AlsaControl> find(snd_ctl_t* card, std::string_view name);

    bool isWritable() const { return m_isWritable; }
    // 0 is all channels together; those from 1 on are single ones, where there are several.
    bool hasElement(int element) const;
    // From 0 to 1; the greatest of all channels together. A switch is at either end.
    std::optional<float> read(int element) const;
    bool write(int element, float value);

private:
    struct ValueDeleter {
        void operator()(snd_ctl_elem_value_t* value) const { snd_ctl_elem_value_free(value); }
    };

    AlsaControl(snd_ctl_t* card, const snd_ctl_elem_info_t* info);
    bool refresh() const;
    long at(unsigned channel) const;
    void set(unsigned channel, long value);
    std::pair<unsigned, unsigned> channels(int element) const; // From the first to before the last.

    snd_ctl_t* m_card;
    std::unique_ptr<snd_ctl_elem_value_t, ValueDeleter> m_value;
    bool m_isSwitch;
    bool m_isWritable;
    unsigned m_channels;
    long m_least = 0;
    long m_most = 1;
};
