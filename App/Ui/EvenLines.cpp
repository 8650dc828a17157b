#include "App/Ui/EvenLines.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

EvenLines::EvenLines(QTextDocument* document, int lineHeight)
    : QPlainTextDocumentLayout(document)
    , m_lineHeight(lineHeight)
{
}

// The base lays a block out when it is first asked for its size, and anew after each change. What
// is left of a line's height goes above its words: whoever scrolls goes by their bottoms.
QRectF EvenLines::blockBoundingRect(const QTextBlock& block) const
{
    QRectF bounds = QPlainTextDocumentLayout::blockBoundingRect(block);
    if (!block.isValid() || !block.isVisible())
        return bounds;
    const auto& layout = *block.layout();
    for (int index = 0; index < layout.lineCount(); ++index) {
        auto line = layout.lineAt(index);
        const qreal top = (index + 1) * m_lineHeight - line.naturalTextRect().height();
        if (!qFuzzyCompare(1 + line.y(), 1 + top))
            line.setPosition({ line.x(), top });
    }
    bounds.setHeight(layout.lineCount() * m_lineHeight);
    return bounds;
}
