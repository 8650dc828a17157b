// The widget in a window over everything else, in which it grows and shrinks.
#pragma once

#include "App/Notch/NotchController.h"
#include "App/Notch/NotchPanel.h"

#include <QVariantAnimation>

#include <functional>
#include <memory>

class NotchView;
class OverlayWindow;
class QWidget;

class OverlayPanel final : public NotchPanel {
public:
    using MakeWindow = std::function<std::unique_ptr<OverlayWindow>(std::unique_ptr<QWidget>)>;

    OverlayPanel(std::unique_ptr<NotchView> view, const MakeWindow& makeWindow);
    ~OverlayPanel() override;

    void orderFront() override;
    void setFrame(const QRect& frame, bool animated) override;

private:
    void grow(qreal progress);
    void rest();
    void setTab(const QSize& size);

    NotchView& m_view; // The window's own.
    std::unique_ptr<OverlayWindow> m_window;
    QRect m_frame { {}, NotchController::collapsed }; // Also where there is no screen.
    QSize m_start; // Of the tab when it began to grow or shrink.
    QVariantAnimation m_growth;
};
