#include "App/Platform/Linux/Machine/ProcFile.h"

#include <QFile>

#include <fcntl.h>
#include <unistd.h>
#include <utility>

ProcFile::ProcFile(const QString& path)
    : m_path(QFile::encodeName(path))
{
}

ProcFile::~ProcFile()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

std::string_view ProcFile::read(std::span<char> buffer)
{
    const bool wasKept = m_descriptor >= 0;
    const auto text = tryToRead(buffer);
    // What was kept may have been taken away since, and something else be in its place.
    return text.empty() && wasKept ? tryToRead(buffer) : text;
}

std::string_view ProcFile::tryToRead(std::span<char> buffer)
{
    if (m_descriptor < 0)
        m_descriptor = ::open(m_path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (m_descriptor < 0)
        return {};
    // In one piece: a second call would find another moment's figures.
    const auto size = ::pread(m_descriptor, buffer.data(), buffer.size(), 0);
    if (size > 0)
        return { buffer.data(), static_cast<std::size_t>(size) };
    ::close(std::exchange(m_descriptor, -1));
    return {};
}
