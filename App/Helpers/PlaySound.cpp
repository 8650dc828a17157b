// Plays one alert sound by name: a program of its own, so that the sound server's library stays
// out of the resident one and a server that hangs can hold up nothing but this.
#include "App/Helpers/SampleCache.h"

#include <csignal>
#include <unistd.h>

// A sound that comes later than this is worse than none.
static constexpr unsigned longestRun = 3;

static void endInTime()
{
    sigset_t alarms;
    sigemptyset(&alarms);
    sigaddset(&alarms, SIGALRM);
    sigprocmask(SIG_UNBLOCK, &alarms, nullptr);
    signal(SIGALRM, SIG_DFL);
    alarm(longestRun);
}

int main(int argc, char** argv)
{
    endInTime();
    const auto samples = argc == 2 ? AlertSounds::named(argv[1]) : std::nullopt;
    if (!samples)
        return 1;
    SampleCache cache;
    if (!cache.isConnected())
        return 1;
    // The version sees to it that a changed sound is not taken from an older program's store.
    const auto name = std::string("corvella-1-") + argv[1];
    const bool played = cache.play(name) || (cache.store(name, *samples) && cache.play(name));
    return played ? 0 : 1;
}
