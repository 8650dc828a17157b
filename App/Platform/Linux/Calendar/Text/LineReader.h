// Puts folded lines together again, whatever ends them and however the text comes in pieces.
#pragma once

#include <functional>
#include <string>
#include <string_view>

class LineReader final {
public:
    static constexpr std::size_t longestLine = 64 * 1024; // Bytes

    // isCut says that the line was longer and ends at a character's end.
    using Take = std::function<void(std::string_view line, bool isCut)>;

    explicit LineReader(Take take);

    void feed(std::string_view bytes);
    // The last line may lack its end.
    void finish();

private:
    void add(std::string_view bytes);
    void endRawLine();
    void flush();
    void append(std::string_view bytes);

    Take m_take;
    std::string m_line;
    bool m_isCut = false;
    bool m_isAtStart = true; // Of a raw line, which a space makes a continuation.
    bool m_followsReturn = false;
    // Some ancient programs end lines so; elsewhere a return is but a stray character.
    bool m_returnEndsLine = false;
    bool m_knowsLineEnd = false;
};
