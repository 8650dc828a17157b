#include "App/Platform/Linux/Calendar/Text/LineReader.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool continuesCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

// A search for either of both would take many times as long as these two.
std::size_t untilLineEnd(std::string_view bytes)
{
    const auto line = bytes.substr(0, bytes.find('\n'));
    return std::min(line.find('\r'), line.size());
}

// Neither half a character nor half an escape.
void trimToCharacter(std::string& line)
{
    constexpr std::size_t longestCharacter = 4;
    const auto least = line.size() - std::min(line.size(), longestCharacter - 1);
    auto lead = line.size();
    while (lead > least && continuesCharacter(line[lead - 1]))
        --lead;
    if (lead > 0 && (static_cast<unsigned char>(line[lead - 1]) & 0xC0U) == 0xC0U)
        line.erase(lead - 1);
    const auto escapes = line.size() - (line.find_last_not_of('\\') + 1);
    if (escapes % 2 == 1)
        line.pop_back();
}

}

LineReader::LineReader(Take take)
    : m_take(std::move(take))
{
}

void LineReader::feed(std::string_view bytes)
{
    while (!bytes.empty()) {
        if (m_followsReturn) {
            m_followsReturn = false;
            const bool isPair = bytes.front() == '\n';
            if (!std::exchange(m_knowsLineEnd, true))
                m_returnEndsLine = !isPair;
            if (m_returnEndsLine || isPair)
                endRawLine();
            if (isPair) {
                bytes.remove_prefix(1);
                continue;
            }
        }
        const auto size = untilLineEnd(bytes);
        add(bytes.substr(0, size));
        if (size == bytes.size())
            return;
        m_followsReturn = bytes[size] == '\r';
        if (!m_followsReturn) {
            m_knowsLineEnd = true;
            endRawLine();
        }
        bytes.remove_prefix(size + 1);
    }
}

void LineReader::finish()
{
    m_followsReturn = false;
    flush();
    m_isAtStart = true;
}

void LineReader::add(std::string_view bytes)
{
    if (bytes.empty())
        return;
    if (std::exchange(m_isAtStart, false)) {
        if (bytes.front() == ' ' || bytes.front() == '\t')
            bytes.remove_prefix(1);
        else
            flush();
    }
    append(bytes);
}

void LineReader::endRawLine()
{
    // An empty raw line ends what went before it.
    if (m_isAtStart)
        flush();
    m_isAtStart = true;
}

void LineReader::flush()
{
    if (m_isCut)
        trimToCharacter(m_line);
    std::erase(m_line, '\0');
    std::string_view line = m_line;
    if (line.starts_with(byteOrderMark))
        line.remove_prefix(byteOrderMark.size());
    if (!line.empty())
        m_take(line, m_isCut);
    m_line.clear();
    m_isCut = false;
}

void LineReader::append(std::string_view bytes)
{
    const auto room = longestLine - m_line.size();
    m_isCut = m_isCut || bytes.size() > room;
    m_line.append(bytes.substr(0, room));
}
