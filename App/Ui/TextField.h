// One line of text to be typed.
#pragma once

#include <QClipboard>
#include <QLineEdit>

class Interaction;

class TextField final : public QLineEdit {
    Q_OBJECT

public:
    // The placeholder is also its name for assistive technology.
    explicit TextField(const QString& placeholder, QWidget* parent = nullptr);

    QRect box() const; // In the field's own coordinates.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    void setPlaceholder(const QString& placeholder);

    void placeBox(const QRect& box); // In the parent's coordinates.
    void insertPasted(const QString& text); // In place of the selection; nothing when empty.

Q_SIGNALS:
    // What was copied, or what is selected, is to be inserted; Qt would wait for its owner.
    void pasteWanted(QClipboard::Mode mode);

protected:
    void paintEvent(QPaintEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void paintSurface(QPainter& painter);
    void paintPlaceholder(QPainter& painter);

    Interaction* m_interaction;
    bool m_isComposing = false; // An input method shows what it has not committed yet.
};
