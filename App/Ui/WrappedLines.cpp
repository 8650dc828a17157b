#include "App/Ui/WrappedLines.h"

#include <QFontMetrics>
#include <QTextLayout>

namespace {

// More than that is in no line of any font.
constexpr int longestLine = 500;

}

QStringList WrappedLines::of(const QString& text, const QFont& font, int width, int most)
{
    QString words = text.left(qsizetype(most + 1) * longestLine);
    words.replace(u'\n', QChar::LineSeparator);
    QTextLayout layout(words, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);

    QStringList lines;
    layout.beginLayout();
    for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        if (lines.size() == most - 1) {
            auto rest = words.mid(line.textStart());
            const auto end = rest.indexOf(QChar::LineSeparator);
            if (end >= 0)
                rest.replace(end, rest.size() - end, QChar(u'…'));
            lines << QFontMetrics(font).elidedText(rest, Qt::ElideRight, width);
            break;
        }
        lines << words.mid(line.textStart(), line.textLength()).trimmed();
    }
    layout.endLayout();
    return lines;
}
