// Keeps a window that no window manager touches above those that one stacks anew.
#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QTimer>

class QWidget;

class X11Foreground final : public QObject, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    explicit X11Foreground(const QWidget& window);

    // Once whoever restacks its windows now has done so.
    void raiseSoon();

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    void raise() const;

    const QWidget& m_window;
    QTimer m_pause;
};
