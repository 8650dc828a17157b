// Lays out a document of plain text in lines of one height, whatever its fonts are like.
#pragma once

#include <QPlainTextDocumentLayout>

class EvenLines final : public QPlainTextDocumentLayout {
    Q_OBJECT

public:
    EvenLines(QTextDocument* document, int lineHeight);

    int lineHeight() const { return m_lineHeight; }
    QRectF blockBoundingRect(const QTextBlock& block) const override;

private:
    int m_lineHeight;
};
