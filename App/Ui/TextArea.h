// Plain text of several lines, to be edited or only read and selected. Takes texts of any size.
#pragma once

#include "App/Ui/DocumentText.h"

#include <QClipboard>
#include <QPlainTextEdit>

class Interaction;
class ScrollBar;

class TextArea final : public QPlainTextEdit {
    Q_OBJECT

public:
    enum class Kind {
        editor,
        result, // To be read only, on a ground of its own.
    };

    // The name is not shown; it is what assistive technology says.
    explicit TextArea(Kind kind, const QString& name, QWidget* parent = nullptr);

    QRect box() const; // In the area's own coordinates.
    QString text() const { return m_text.text(); }

    void setText(const QString& text); // Silent; shows its beginning.
    void insert(const QString& text); // An edit, in place of the selection.
    void placeBox(const QRect& box); // In the parent's coordinates.

Q_SIGNALS:
    void edited(); // By the user.
    // What was copied, or what is selected, is to be inserted; Qt would wait for its owner.
    void pasteWanted(QClipboard::Mode mode);

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    QMimeData* createMimeDataFromSelection() const override;
    bool canInsertFromMimeData(const QMimeData* source) const override;
    void insertFromMimeData(const QMimeData* source) override;

private:
    void adoptColors();
    void paintSurface();
    void paintSelection(QPainter& painter);

    const Kind m_kind;
    Interaction* m_interaction;
    DocumentText m_text;
    ScrollBar* m_bar;
};
