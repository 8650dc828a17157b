// The clipboard of a Wayland compositor.
#pragma once

#include "App/Platform/Clipboard.h"
#include "App/Platform/Linux/Background/Patience.h"
#include "App/Platform/Linux/Clipboard/WaylandDataDevice.h"

class WaylandClipboard final : public Clipboard {
public:
    WaylandClipboard(wl_display* display, const Patience& patience);

    // Waits for the keyboard to come to a window of ours: only then is it told what there is. Not
    // through Qt, which would wait for the other program on the main thread, here and when pasting;
    // but for what is selected, where it waits for a second at most.
    void readText(QClipboard::Mode mode, QObject* waiter,
        std::function<void(const QString& text)> done) override;
    void setText(const QString& text) override;

private:
    void readNow(QObject* waiter, const std::function<void(const QString& text)>& done);

    wl_display* m_display;
    Patience m_patience;
    WaylandDataDevice m_device;
};
