#include "App/Platform/Linux/Clipboard/PipeText.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr qsizetype blockSize = qsizetype { 64 } * 1024; // As much as a pipe holds.

void neverBlock(const PipeEnd& end)
{
    ::fcntl(end, F_SETFL, ::fcntl(end, F_GETFL) | O_NONBLOCK);
}

bool isPassing()
{
    return errno == EINTR || errno == EAGAIN;
}

}

PipeEnd::~PipeEnd()
{
    ::close(m_descriptor);
}

PipeText::Pipe PipeText::open()
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return {};
    return { std::make_shared<PipeEnd>(ends[0]), std::make_shared<PipeEnd>(ends[1]) };
}

QByteArray PipeText::read(const PipeEnd& end, qsizetype most, Patience patience)
{
    neverBlock(end);
    patience.begin();
    QByteArray bytes;
    QByteArray block(blockSize, Qt::Uninitialized);
    while (!patience.isOver() && patience.await(end)) {
        const auto count = ::read(end, block.data(), static_cast<size_t>(blockSize));
        if (count == 0)
            return bytes;
        if (count < 0 && !isPassing())
            return {};
        bytes.append(block.constData(), std::max<ssize_t>(count, 0));
        if (bytes.size() > most)
            return {};
        patience.renew();
    }
    return {};
}

bool PipeText::write(const PipeEnd& end, const QByteArray& bytes, Patience patience)
{
    neverBlock(end);
    patience.begin();
    qsizetype done = 0;
    while (done < bytes.size() && !patience.isOver() && patience.await(end, POLLOUT)) {
        const auto count
            = ::write(end, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (count < 0 && !isPassing())
            return false;
        done += std::max<ssize_t>(count, 0);
        patience.renew();
    }
    return done == bytes.size();
}
