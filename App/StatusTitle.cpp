#include "App/StatusTitle.h"

using namespace Qt::StringLiterals;

StatusTitle statusTitle(bool isActive, Phase phase, const QString& timeString)
{
    if (!isActive)
        return { u"\u25CF"_s, {} };
    // The selector after the cup asks for a plain glyph, like the digits, not a colour picture.
    const auto prefix = phase == Phase::focus ? QString() : u"\u2615\uFE0E "_s;
    return { prefix + timeString,
        { .size = 13, .weight = QFont::Medium, .monospacedDigits = true } };
}
