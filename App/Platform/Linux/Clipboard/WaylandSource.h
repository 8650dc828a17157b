// A text of ours that other programs may take.
#pragma once

#include <QByteArray>
#include <QObject>

#include <wayland-client-protocol.h>

class WaylandSource final : public QObject {
    Q_OBJECT

public:
    WaylandSource(wl_data_device_manager* manager, QByteArray text); // In UTF-8.
    ~WaylandSource() override;

    wl_data_source* source() const { return m_source; }

Q_SIGNALS:
    void cancelled(); // The clipboard holds something else.

private:
    static const wl_data_source_listener listener;

    void send(int pipe) const;

    wl_data_source* m_source;
    QByteArray m_text;
};
