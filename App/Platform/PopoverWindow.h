// The window that hangs from the status item and closes on a click anywhere else.
#pragma once

#include <QObject>
#include <QRect>

class PopoverWindow : public QObject {
    Q_OBJECT

public:
    virtual bool isShown() const = 0;

    // Shows the popover at anchor, the item's place in global coordinates, inside the edges of
    // the anchor's screen, with the keyboard. A null anchor: near the corner for status items.
    virtual void show(const QRect& anchor) = 0;
    virtual void close() = 0;
};
