// Reads what the kernel tells of watched files and folders.
#pragma once

#include <climits>
#include <sys/inotify.h>
#include <unistd.h>

// Visits all events that there are by now, each as const inotify_event&; the descriptor must not
// block.
template <typename Visit>
void eachInotifyEvent(int descriptor, Visit visit)
{
    alignas(inotify_event) char buffer[16 * (sizeof(inotify_event) + NAME_MAX + 1)];
    ssize_t size = 0;
    while ((size = ::read(descriptor, buffer, sizeof buffer)) > 0) {
        for (ssize_t at = 0; at < size;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
            visit(*event);
            at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
    }
}
