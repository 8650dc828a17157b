// An overlay as an X11 window that no window manager touches.
#pragma once

#include "App/Platform/Linux/Screen/X11Foreground.h"
#include "App/Platform/OverlayWindow.h"

#include <QObject>

#include <cstdint>
#include <memory>

class Compositor;
class QWidget;

class X11OverlayWindow final : public QObject, public OverlayWindow {
    Q_OBJECT

public:
    // The content's size hint is the largest size that it will have.
    X11OverlayWindow(const Compositor& compositor, std::unique_ptr<QWidget> content);
    ~X11OverlayWindow() override;

    void orderFront() override;
    void setFrame(const QRect& frame) override;
    void setShape(const QRegion& shape) override;

private:
    QRect withRoom(const QRect& frame) const;
    void place(const QRect& frame);
    void applyShape();
    void apply(const QRegion& seen, const QRegion& touched);
    void cut(uint8_t kind, const QRegion& shape);

    const Compositor& m_compositor;
    std::unique_ptr<QWidget> m_content;
    X11Foreground m_foreground { *m_content };
    QRegion m_shape;
};
