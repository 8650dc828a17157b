#include "App/Ui/CaretRest.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QEvent>

#include <chrono>

namespace {

constexpr int blinkingMs = 1000;
constexpr auto restAfter = std::chrono::seconds(10);

bool isUse(QEvent::Type type)
{
    switch (type) {
    case QEvent::FocusIn:
    case QEvent::InputMethod:
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
        return true;
    default:
        return false;
    }
}

}

CaretRest::CaretRest(QWidget* editor)
    : QObject(editor)
    , m_timer(this)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(restAfter);
    connect(&m_timer, &QTimer::timeout, this, [] { QApplication::setCursorFlashTime(0); });
    editor->installEventFilter(this);
    // Who clicks into what scrolls clicks on its viewport.
    if (const auto* const area = qobject_cast<QAbstractScrollArea*>(editor))
        area->viewport()->installEventFilter(this);
}

bool CaretRest::eventFilter(QObject*, QEvent* event)
{
    if (isUse(event->type())) {
        QApplication::setCursorFlashTime(blinkingMs);
        m_timer.start();
    } else if (event->type() == QEvent::FocusOut) {
        m_timer.stop();
    }
    return false;
}
