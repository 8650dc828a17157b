// A sound card for ALSA that is nothing but a file, given as "state" in the configuration. Each
// line is a control: "NAME" switch|volume rw|r LEAST MOST VALUE..., with a value for each channel.
#include <alsa/asoundlib.h>

#include <alsa/control_external.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iomanip>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct Control {
    std::string name;
    std::string type;
    std::string access;
    long least = 0;
    long most = 0;
    std::vector<long> values;
};

struct PlayedCard {
    std::string path;
    std::vector<Control> controls;
    snd_ctl_ext_t device {};

    void read()
    {
        controls.clear();
        std::ifstream file(path);
        for (std::string line; std::getline(file, line);) {
            std::istringstream words(line);
            Control control;
            words >> std::quoted(control.name) >> control.type >> control.access >> control.least
                >> control.most;
            for (long value; words >> value;)
                control.values.push_back(value);
            controls.push_back(control);
        }
    }

    void write() const
    {
        std::ofstream file(path);
        for (const auto& control : controls) {
            file << std::quoted(control.name) << ' ' << control.type << ' ' << control.access << ' '
                 << control.least << ' ' << control.most;
            for (const long value : control.values)
                file << ' ' << value;
            file << '\n';
        }
    }
};

PlayedCard& cardOf(const snd_ctl_ext_t* device)
{
    return *static_cast<PlayedCard*>(device->private_data);
}

void close(snd_ctl_ext_t* device)
{
    delete &cardOf(device);
}

int count(snd_ctl_ext_t* device)
{
    return static_cast<int>(cardOf(device).controls.size());
}

int list(snd_ctl_ext_t* device, unsigned number, snd_ctl_elem_id_t* id)
{
    snd_ctl_elem_id_set_interface(id, SND_CTL_ELEM_IFACE_MIXER);
    snd_ctl_elem_id_set_name(id, cardOf(device).controls[number].name.c_str());
    return 0;
}

snd_ctl_ext_key_t find(snd_ctl_ext_t* device, const snd_ctl_elem_id_t* id)
{
    const auto& controls = cardOf(device).controls;
    for (std::size_t i = 0; i < controls.size(); ++i) {
        if (controls[i].name == snd_ctl_elem_id_get_name(id))
            return i;
    }
    return SND_CTL_EXT_KEY_NOT_FOUND;
}

int attribute(
    snd_ctl_ext_t* device, snd_ctl_ext_key_t key, int* type, unsigned* access, unsigned* channels)
{
    const auto& control = cardOf(device).controls[key];
    *type = control.type == "switch" ? SND_CTL_ELEM_TYPE_BOOLEAN : SND_CTL_ELEM_TYPE_INTEGER;
    *access = control.access == "rw" ? SND_CTL_EXT_ACCESS_READWRITE : SND_CTL_EXT_ACCESS_READ;
    *channels = static_cast<unsigned>(control.values.size());
    return 0;
}

int range(snd_ctl_ext_t* device, snd_ctl_ext_key_t key, long* least, long* most, long* step)
{
    const auto& control = cardOf(device).controls[key];
    *least = control.least;
    *most = control.most;
    *step = 0;
    return 0;
}

int read(snd_ctl_ext_t* device, snd_ctl_ext_key_t key, long* values)
{
    const auto& control = cardOf(device).controls[key];
    std::copy(control.values.begin(), control.values.end(), values);
    return 0;
}

int write(snd_ctl_ext_t* device, snd_ctl_ext_key_t key, long* values)
{
    auto& control = cardOf(device).controls[key];
    std::copy_n(values, control.values.size(), control.values.begin());
    cardOf(device).write();
    return 1;
}

std::string stateIn(snd_config_t* configuration)
{
    snd_config_t* found = nullptr;
    const char* path = "";
    if (snd_config_search(configuration, "state", &found) >= 0)
        snd_config_get_string(found, &path);
    return path;
}

constexpr snd_ctl_ext_callback_t callbacks = [] {
    snd_ctl_ext_callback_t table {};
    table.close = close;
    table.elem_count = count;
    table.elem_list = list;
    table.find_elem = find;
    table.get_attribute = attribute;
    table.get_integer_info = range;
    table.read_integer = read;
    table.write_integer = write;
    return table;
}();

}

extern "C" {

SND_CTL_PLUGIN_DEFINE_FUNC(played);
SND_CTL_PLUGIN_DEFINE_FUNC(played)
{
    static_cast<void>(root);
    auto card = std::make_unique<PlayedCard>();
    card->path = stateIn(conf);
    card->read();
    auto& device = card->device;
    device.version = SND_CTL_EXT_VERSION;
    device.callback = &callbacks;
    device.private_data = card.get();
    device.poll_fd = -1;
    std::strcpy(device.name, "Played");
    const int failure = snd_ctl_ext_create(&device, name, mode);
    if (failure < 0)
        return failure;
    *handlep = card.release()->device.handle;
    return 0;
}

SND_CTL_PLUGIN_SYMBOL(played)
}
