// Breaks words into lines, at any place where a word alone is longer than one.
#pragma once

#include <QStringList>

class QFont;

namespace WrappedLines {

// At most so many lines of this width, in points; what does not fit ends in an ellipsis.
QStringList of(const QString& text, const QFont& font, int width, int most);

}
