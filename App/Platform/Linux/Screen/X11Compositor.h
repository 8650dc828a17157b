// Follows the compositing manager of an X11 screen.
#pragma once

#include "App/Platform/Compositor.h"

#include <QAbstractNativeEventFilter>

#include <xcb/xcb.h>

class X11Compositor final : public Compositor, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    X11Compositor();

    bool isRunning() const override { return m_running; }

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

    uint8_t m_ownerChanged = 0; // The type of the event that tells of a new owner.
    bool m_running = false;
};
