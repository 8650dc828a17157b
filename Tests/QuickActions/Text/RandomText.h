// Texts of the pieces that matter to segmentation, spacing and case, the same in every run.
#pragma once

#include <QString>
#include <QStringList>

#include <random>

class RandomText final {
public:
    explicit RandomText(unsigned seed)
        : m_random(seed)
    {
    }
    QString next();
    // As a C++ literal would have it.
    static QString shown(const QString& text);

private:
    QString piece();

    std::mt19937 m_random;
};

inline QString RandomText::piece()
{
    static const QStringList pieces = QStringLiteral(
        "a|b|i|I|A|Z|ok|the|_|0|7|42|3.14|1,000|a.B|,b|;C|:d|!e|?F|i,|i'm|don't|e.g.|AT&T|a@b.c|x:y"
        "|.|,|;|:|!|?|...|\"|'|(|)|-|*|&|/|\u201C|\u201D|\u2018|\u2019|\u2026|\u2014|\u2022|\u00AB"
        "|\u00B7|\u2027|\u00A9|\u00AD|\u00DF|\u0149|\u01C6|\uFB01|\u0130|\u0131|\u0390|\u1FB3|"
        "\u03C3"
        "|\u03C2|\u00E9|e\u0301|n\u0303|\u0301|\u0308|\u0345|\u200B|\u200C|\u200D|\u2060|\uFEFF"
        "|\u0436|\u0418|\u0419\u0306|\u05D0|\u05D0\"\u05D0|\u0628|\u0600|\u0966|\u0663|\U0001D7D8"
        "|\U0001D51E|\u24D0|\u2177|\u65E5\u672C|\u8A9E|\u304B\u306A|\u30AB|\u309B|\u3099|\uFF9E|"
        "\uFF41"
        "|\u3002|\uFF01|\uFF3F|\uAC00|\uAC01|\u1100|\u1161|\u11A8|\u0915|\u094D|\u0937|\u093F|"
        "\u0E01"
        "|\u0E33|\u0E44\u0E17\u0E22|\U0001F44D|\U0001F3FD|\U0001F468|\u2764\uFE0F|1\uFE0F\u20E3|"
        "\u260E"
        "|\U0001F1E9|\U0001F1EA|\u202F|\u00A0|\u2009|\u3000|\u0085|\u2028|\u2029|\v|\f|\r|\r\n|\n|"
        "\n\n\n"
        "|\t| |  | |  |\n | \n| ,| .")
                                          .split(u'|');
    const auto number = m_random();
    switch (number % 40) {
    case 0: // Anything at all.
        return QString(QChar(static_cast<char16_t>(m_random())));
    case 1:
        return QString(QChar(u'\0'));
    case 2:
        return QString(QChar(u'|'));
    case 3:
        return QString(QChar(static_cast<char16_t>(0xD800 + m_random() % 0x800)));
    default:
        return pieces[static_cast<qsizetype>(m_random() % static_cast<unsigned>(pieces.size()))];
    }
}

inline QString RandomText::next()
{
    QString text;
    for (auto left = m_random() % 24; left > 0; --left)
        text += piece();
    return text;
}

inline QString RandomText::shown(const QString& text)
{
    QString shown;
    for (const auto unit : text) {
        if (unit >= u' ' && unit <= u'~')
            shown += unit;
        else
            shown += QStringLiteral("\\x%1").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
    }
    return shown;
}
