// Lets the caret of an editor blink while it is used, and rest when nobody has typed for a while:
// one that nobody moves wakes nothing up any more.
#pragma once

#include <QTimer>

class QWidget;

class CaretRest final : public QObject {
public:
    explicit CaretRest(QWidget* editor);

    bool eventFilter(QObject* editor, QEvent* event) override;

private:
    QTimer m_timer; // Runs while the caret blinks.
};
