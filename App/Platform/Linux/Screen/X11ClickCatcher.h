// An invisible window over the whole desktop that takes every click outside a rectangle.
#pragma once

#include <QAbstractNativeEventFilter>
#include <QRect>

#include <functional>
#include <xcb/xcb.h>

class X11ClickCatcher final : public QAbstractNativeEventFilter {
public:
    explicit X11ClickCatcher(std::function<void()> clicked);
    ~X11ClickCatcher() override;

    // hole: in native pixels of the root window; clicks inside it reach what lies there.
    void show(const QRect& hole);
    void hide();

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

    std::function<void()> m_clicked;
    xcb_window_t m_window = XCB_WINDOW_NONE;
};
