// What another program offers, on the clipboard or to be dropped.
#pragma once

#include "App/Platform/Linux/Clipboard/ClipboardText.h"

#include <QByteArrayList>

#include <optional>
#include <wayland-client-protocol.h>

class WaylandOffer final {
public:
    explicit WaylandOffer(wl_data_offer* offer);
    ~WaylandOffer();
    Q_DISABLE_COPY_MOVE(WaylandOffer)

    // The best of the formats that are text.
    std::optional<ClipboardText::Format> textFormat() const;
    // The other program writes into the pipe whenever it comes to it.
    void receive(const ClipboardText::Format& format, int pipe);

private:
    static const wl_data_offer_listener listener;

    wl_data_offer* m_offer;
    QByteArrayList m_types;
};
