// The widget on the screen.
#pragma once

#include <QRect>

// There as long as this is; it never takes the keyboard.
class NotchPanel {
public:
    virtual ~NotchPanel() = default;

    virtual void orderFront() = 0;
    virtual void setFrame(const QRect& frame, bool animated) = 0; // In global coordinates.
};
