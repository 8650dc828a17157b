// A window that shows every control in every state, row by row, each above its caption.
#pragma once

#include <QWidget>

#include <functional>

class Sheet final : public QWidget {
    Q_OBJECT

public:
    Sheet();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void startRow(const QString& name);
    // Places the control's box at the pen and moves the pen on.
    void add(QWidget* control, const QSize& box, const QString& caption);
    void addCaption(const QString& text, int x, int y);
    void addButtons();
    void addFields();
    void addSegments();
    void addSwitches();
    void addBars();
    void addScrollBars();

    QPoint m_pen { 128, -34 };
};
