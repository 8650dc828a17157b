#include "App/Notch/OverlayPanel.h"

#include "App/Notch/NotchView.h"
#include "App/Platform/OverlayWindow.h"

#include <utility>

namespace {

constexpr int growthMs = 200;

// As CSS defines ease-in-out.
QEasingCurve easeInOut()
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment({ 0.42, 0 }, { 0.58, 1 }, { 1, 1 });
    return curve;
}

}

OverlayPanel::OverlayPanel(std::unique_ptr<NotchView> view, const MakeWindow& makeWindow)
    : m_view(*view)
    , m_window(makeWindow(std::move(view)))
{
    m_growth.setDuration(growthMs);
    m_growth.setEasingCurve(easeInOut());
    m_growth.setStartValue(0.0);
    m_growth.setEndValue(1.0);
    QObject::connect(&m_growth, &QVariantAnimation::valueChanged, &m_growth,
        [this](const QVariant& progress) { grow(progress.toDouble()); });
    QObject::connect(&m_growth, &QVariantAnimation::finished, &m_growth, [this] { rest(); });
    rest();
}

OverlayPanel::~OverlayPanel() = default;

void OverlayPanel::orderFront()
{
    m_window->orderFront();
}

// While it grows or shrinks the window has the larger size: what is seen of it moves inside.
void OverlayPanel::setFrame(const QRect& frame, bool animated)
{
    const bool isSameScreen
        = frame.top() == m_frame.top() && frame.center().x() == m_frame.center().x();
    if (animated && frame == m_frame)
        return; // It is there, or on its way.
    m_growth.stop();
    const auto before = std::exchange(m_frame, frame);
    m_start = m_view.tab();
    if (!animated || !isSameScreen) {
        rest();
        return;
    }
    m_window->setFrame(before.united(frame));
    setTab(m_start);
    m_growth.start();
}

// progress: from 0 to 1.
void OverlayPanel::grow(qreal progress)
{
    const QSizeF way = m_frame.size() - m_start;
    setTab((QSizeF(m_start) + way * progress).toSize());
}

void OverlayPanel::rest()
{
    m_window->setFrame(m_frame);
    setTab(m_frame.size());
}

void OverlayPanel::setTab(const QSize& size)
{
    m_view.setTab(size);
    m_window->setShape(m_view.shape());
}
