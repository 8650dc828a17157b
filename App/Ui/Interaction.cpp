#include "App/Ui/Interaction.h"

#include "App/Ui/ControlBox.h"

#include <QFocusEvent>
#include <QHoverEvent>

namespace {

constexpr QPoint nowhere(-1, -1);

}

Interaction::Interaction(QWidget* control, Ring ring)
    : QObject(control)
    , m_control(*control)
    , m_ring(ring)
{
    control->setAttribute(Qt::WA_Hover);
    // Hover of its own accord repaints on every entry of the margin.
    control->installEventFilter(this);
}

bool Interaction::isHovered() const
{
    return m_pointer != nowhere && m_control.isEnabled();
}

bool Interaction::eventFilter(QObject*, QEvent* event)
{
    switch (event->type()) {
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
        setPointer(static_cast<QHoverEvent*>(event)->position().toPoint());
        return true;
    case QEvent::HoverLeave:
    case QEvent::Hide:
        setPointer(nowhere);
        return event->type() == QEvent::HoverLeave;
    case QEvent::FocusIn:
        focused(static_cast<QFocusEvent*>(event)->reason());
        return false;
    case QEvent::FocusOut:
        setShowsFocus(false);
        return false;
    default:
        return false;
    }
}

void Interaction::setPointer(const QPoint& position)
{
    const QPoint inside = ControlBox::of(m_control).contains(position) ? position : nowhere;
    if (inside == m_pointer)
        return;
    const bool entered = (inside == nowhere) != (m_pointer == nowhere);
    m_pointer = inside;
    if (entered)
        m_control.update();
    Q_EMIT moved();
}

void Interaction::setShowsFocus(bool shows)
{
    if (m_showsFocus == shows)
        return;
    m_showsFocus = shows;
    m_control.update();
}

void Interaction::focused(Qt::FocusReason reason)
{
    // A window or menu in between does not change how the focus came here.
    if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) {
        m_byKeyboard = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason
            || reason == Qt::ShortcutFocusReason;
    }
    setShowsFocus(m_byKeyboard || m_ring == Ring::always);
}
