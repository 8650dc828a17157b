// Walks over the characters of a text as a reader sees them: its extended grapheme clusters.
#pragma once

#include <QStringView>

struct UBreakIterator;

class Characters final {
public:
    explicit Characters(QStringView text); // Not copied.
    ~Characters();
    Q_DISABLE_COPY_MOVE(Characters)

    QStringView next(); // Empty after the last one.

private:
    QStringView m_text;
    UBreakIterator* m_breaks;
};

qsizetype characterCount(QStringView text);
