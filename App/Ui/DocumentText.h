// The text of a document, of any size: put in piece by piece over several turns of the event loop,
// and told to the character. A paragraph that would take long to lay out stands in several blocks.
#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>

class QTextCursor;
class QTextDocument;

class DocumentText final : public QObject {
    Q_OBJECT

public:
    explicit DocumentText(QTextDocument& document);

    // As it was set; after an edit with a line feed at each end of a line.
    QString text() const;
    QString selectedText(const QTextCursor& cursor) const;

    void setText(const QString& text); // Not an edit, and cannot be undone.
    void insert(QTextCursor cursor, const QString& text); // In place of what the cursor selects.
    // For what Qt tells of as of an edit, but leaves the text as it is.
    void withoutEdit(const std::function<void()>& change);

Q_SIGNALS:
    void edited();

private:
    // What is enough for now, whichever comes first.
    struct Portion {
        qsizetype characters;
        qsizetype blocks;
    };

    QString joined(QString words, int position) const;
    void fill();
    qsizetype insertPieces(QTextCursor& cursor, QStringView text, const Portion& portion);
    void expectLongParagraphs();
    void markBlocks(int first, int last); // Between these positions.
    void contentsChange(int position, int removed, int added);

    QTextDocument& m_document;
    QTimer m_turn; // Runs while some of the source is not yet in the document.
    QString m_source; // As it was set.
    qsizetype m_filled = 0; // How much of it is in the document.
    bool m_isLeftAlone = false; // Whatever changes is no edit.
    bool m_isEdited = false;
    bool m_hasLongParagraphs = false;
};
