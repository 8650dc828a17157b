// Lists a day out of one iCalendar file the way a program over libecal does: the file as a whole,
// and then each event's occurrences. Prints how many there are: ecal-list START END FILE, in
// seconds.
#include <libecal/libecal.h>

#include <cstdio>
#include <cstdlib>

namespace {

ICalTimezone* zoneOf(const char* name, void*, GCancellable*, GError**)
{
    return i_cal_timezone_get_builtin_timezone(name);
}

gboolean countOccurrence(ICalComponent*, ICalTime*, ICalTime*, void* count, GCancellable*, GError**)
{
    ++*static_cast<int*>(count);
    return TRUE;
}

ICalTime* timeAt(const char* seconds)
{
    return i_cal_time_new_from_timet_with_zone(
        std::atoll(seconds), FALSE, i_cal_timezone_get_utc_timezone());
}

int countOccurrences(ICalComponent* calendar, ICalTime* start, ICalTime* end)
{
    auto* local = e_cal_util_get_system_timezone();
    int count = 0;
    auto* event = i_cal_component_get_first_component(calendar, I_CAL_VEVENT_COMPONENT);
    while (event) {
        e_cal_recur_generate_instances_sync(
            event, start, end, countOccurrence, &count, zoneOf, nullptr, local, nullptr, nullptr);
        g_object_unref(event);
        event = i_cal_component_get_next_component(calendar, I_CAL_VEVENT_COMPONENT);
    }
    return count;
}

}

int main(int argc, char** argv)
{
    char* text = nullptr;
    if (argc != 4 || !g_file_get_contents(argv[3], &text, nullptr, nullptr))
        return 1;
    auto* calendar = i_cal_component_new_from_string(text);
    g_free(text);
    if (!calendar)
        return 1;
    std::printf("%d\n", countOccurrences(calendar, timeAt(argv[1]), timeAt(argv[2])));
    return 0;
}
