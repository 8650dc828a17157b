// A button of the launcher: its symbol over its name.
#pragma once

#include <QAbstractButton>

class Interaction;

class ShortcutTile final : public QAbstractButton {
    Q_OBJECT

public:
    static constexpr int height = 66; // Of the visible box, in points.

    explicit ShortcutTile(QWidget* parent);

    QRect box() const; // In the tile's own coordinates.
    QString symbol() const { return m_symbol; }
    bool isEdited() const { return m_edited; }

    void setName(const QString& name);
    void setSymbol(const QString& name);
    void setEdited(bool edited); // Whether a tap edits it instead of running it.

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QColor fillColor() const;
    QRect nameLine() const;

    Interaction* m_interaction;
    QString m_symbol;
    bool m_edited = false;
};
