// An overlay in a compositor's layer above windows and panels.
#pragma once

#include "App/Platform/Linux/Screen/LayerWindow.h"
#include "App/Platform/OverlayWindow.h"

#include <QRegion>
#include <QTimer>

#include <chrono>
#include <memory>

class LayerOverlayWindow final : public QObject, public OverlayWindow {
    Q_OBJECT

public:
    LayerOverlayWindow(const LayerShell& shell, std::unique_ptr<QWidget> content);
    ~LayerOverlayWindow() override;

    void orderFront() override;
    void setFrame(const QRect& frame) override;
    void setShape(const QRegion& shape) override;

private:
    void settle();
    void settleLater();

    std::unique_ptr<QWidget> m_content;
    LayerWindow m_window;
    QRect m_frame;
    bool m_isWanted = false;
    QTimer m_pause;
    std::chrono::milliseconds m_wait {};
};
