// Walks over the words of a text, leaving out punctuation and white space.
#pragma once

#include <QStringView>

#include <optional>

struct UBreakIterator;

class WordTokens final {
public:
    WordTokens();
    ~WordTokens();
    Q_DISABLE_COPY_MOVE(WordTokens)

    void setText(QStringView text); // Not copied.
    std::optional<QStringView> next(); // Absent after the last one.

private:
    UBreakIterator* m_breaks;
    QStringView m_text;
};
