// A window above panels and full-screen windows, on every desktop, that never takes the keyboard.
#pragma once

#include <QRect>
#include <QRegion>

// There as long as this is.
class OverlayWindow {
public:
    virtual ~OverlayWindow() = default;

    virtual void orderFront() = 0; // Shows it when it was not.
    // In global coordinates; its upper edge is that of a screen and its middle the screen's.
    virtual void setFrame(const QRect& frame) = 0;
    // The part of it that is there for the eye and the pointer, from its top left corner.
    virtual void setShape(const QRegion& shape) = 0;
};
