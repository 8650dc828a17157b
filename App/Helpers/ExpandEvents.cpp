// Reads a request on its standard input and writes the events of a day on its standard output. A
// program of its own, so that no calendar, whoever wrote it, can hold up or harm the resident one.
#include "App/Platform/Linux/Calendar/ExpanderPipe.h"
#include "App/Platform/Linux/Calendar/Text/CalendarExpander.h"

#include <algorithm>
#include <cerrno>
#include <linux/close_range.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

// Ends by itself before it is ended, and answers with what it has by then. On a busy machine much
// time passes for little work, so that only the work is kept short.
constexpr TimeBudget reading { 1.2s, 7s };
constexpr TimeBudget expanding { 1.5s, 8s };
constexpr rlim_t mostSeconds = 2; // Of processor time.
constexpr rlim_t mostMemory = rlim_t { 128 } * 1024 * 1024; // Bytes

bool limit(__rlimit_resource resource, rlim_t most)
{
    const rlimit both { most, most };
    return setrlimit(resource, &both) == 0;
}

// The address sanitizer sets terabytes of addresses aside and cannot live with that limit.
bool limitMemory()
{
#ifdef __SANITIZE_ADDRESS__
    return true;
#else
    return limit(RLIMIT_AS, mostMemory);
#endif
}

bool limitItself()
{
    close_range(STDERR_FILENO + 1, ~0U, 0);
    return limit(RLIMIT_CPU, mostSeconds) && limit(RLIMIT_CORE, 0) && limitMemory();
}

// Fewer only at the end.
QByteArray readInput(qsizetype most)
{
    QByteArray bytes(most, Qt::Uninitialized);
    qsizetype filled = 0;
    while (filled < most) {
        const auto count
            = read(STDIN_FILENO, bytes.data() + filled, static_cast<std::size_t>(most - filled));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        filled += count;
    }
    bytes.truncate(filled);
    return bytes;
}

std::optional<EventExpander::Request> readRequest()
{
    const auto size = ExpanderPipe::headSize(readInput(ExpanderPipe::headSizeBytes));
    return size ? ExpanderPipe::request(readInput(*size)) : std::nullopt;
}

bool writeOutput(const QByteArray& bytes)
{
    for (qsizetype done = 0; done < bytes.size();) {
        const auto count = write(
            STDOUT_FILENO, bytes.constData() + done, static_cast<std::size_t>(bytes.size() - done));
        if (count < 0 && errno != EINTR)
            return false;
        done += std::max<ssize_t>(count, 0);
    }
    return true;
}

}

int main()
{
    const auto request = limitItself() ? readRequest() : std::nullopt;
    if (!request)
        return 1;
    constexpr qsizetype piece = 64 * 1024;
    CalendarExpander expander(*request, { reading, expanding });
    for (auto text = readInput(piece); !text.isEmpty(); text = readInput(piece))
        expander.addText({ text.constData(), static_cast<std::size_t>(text.size()) });
    return writeOutput(ExpanderPipe::answer(expander.finish())) ? 0 : 1;
}
