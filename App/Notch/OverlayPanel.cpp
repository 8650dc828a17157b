#include "App/Notch/OverlayPanel.h"

#include "App/Notch/NotchView.h"
#include "App/Platform/OverlayWindow.h"

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
    QObject::connect(&m_growth, &QVariantAnimation::valueChanged, &m_growth,
        [this](const QVariant& size) { setTab(size.toSize()); });
    QObject::connect(&m_growth, &QVariantAnimation::finished, &m_growth, [this] {
        m_window->setFrame(m_frame);
        setTab(m_frame.size());
    });
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
    const QRect before
        = m_growth.state() == QVariantAnimation::Running ? m_frame.united(frame) : m_frame;
    m_growth.stop();
    m_frame = frame;
    if (!animated || !isSameScreen) {
        m_window->setFrame(frame);
        setTab(frame.size());
        return;
    }
    m_window->setFrame(before.united(frame));
    setTab(m_view.tab());
    m_growth.setStartValue(m_view.tab());
    m_growth.setEndValue(frame.size());
    m_growth.start();
}

void OverlayPanel::setTab(const QSize& size)
{
    m_view.setTab(size);
    m_window->setShape(m_view.shape());
}
