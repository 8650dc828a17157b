#include "App/QuickActions/TextTools.h"

#include "App/QuickActions/SentenceTokens.h"
#include "App/QuickActions/WordTokens.h"

QStringList TextTools::sentences(const QString& text)
{
    QStringList sentences;
    for (const auto token : sentenceTokens(text)) {
        const auto trimmed = token.trimmed();
        if (!trimmed.isEmpty())
            sentences.append(trimmed.toString());
    }
    return sentences;
}

QStringList TextTools::words(const QString& text)
{
    QStringList words;
    WordTokens tokens;
    tokens.setText(text);
    while (const auto word = tokens.next())
        words.append(word->toString());
    return words;
}
