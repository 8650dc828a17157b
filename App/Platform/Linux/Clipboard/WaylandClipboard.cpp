#include "App/Platform/Linux/Clipboard/WaylandClipboard.h"

#include "App/Platform/Linux/Background/BackgroundText.h"
#include "App/Platform/Linux/Clipboard/ClipboardModule.h"
#include "App/Platform/Linux/Clipboard/PipeText.h"
#include "App/Platform/Linux/Clipboard/QtClipboard.h"
#include "App/Platform/Linux/Clipboard/WaylandOffer.h"

#include <QGuiApplication>
#include <QTimer>

#include <qpa/qplatformnativeinterface.h>
#include <type_traits>
#include <wayland-client-core.h>

namespace {

std::function<QString()> nothing()
{
    return [] { return QString(); };
}

// From then on the other program is expected to write.
std::function<QString()> readingOf(WaylandOffer& offer, const Patience& patience)
{
    const auto format = offer.textFormat();
    const auto pipe = PipeText::open();
    if (!format || !pipe.from)
        return nothing();
    offer.receive(*format, *pipe.to);
    return [from = pipe.from, encoding = format->encoding, patience] {
        const auto bytes = PipeText::read(*from, ClipboardText::maximumSize, patience);
        return ClipboardText::decoded(bytes, encoding);
    };
}

}

WaylandClipboard::WaylandClipboard(wl_display* display, const Patience& patience)
    : m_display(display)
    , m_patience(patience)
    , m_device(display)
{
    wl_display_flush(m_display);
}

void WaylandClipboard::readText(
    QClipboard::Mode mode, QObject* waiter, std::function<void(const QString& text)> done)
{
    if (mode == QClipboard::Selection) {
        QtClipboard().readText(mode, waiter, std::move(done));
        return;
    }
    if (m_device.isTold()) {
        readNow(waiter, done);
        return;
    }
    auto* timer = new QTimer(waiter);
    const auto read = [this, timer, waiter, done = std::move(done)] {
        m_device.disconnect(timer);
        timer->stop();
        timer->deleteLater();
        readNow(waiter, done);
    };
    QObject::connect(timer, &QTimer::timeout, timer, read);
    QObject::connect(&m_device, &WaylandDataDevice::told, timer, read);
    timer->start(m_patience.silence());
}

void WaylandClipboard::readNow(
    QObject* waiter, const std::function<void(const QString& text)>& done)
{
    auto* const offer = m_device.selection();
    BackgroundText::read(offer ? readingOf(*offer, m_patience) : nothing(), waiter, done);
    wl_display_flush(m_display);
}

void WaylandClipboard::setText(const QString& text)
{
    m_device.setText(text.toUtf8());
    wl_display_flush(m_display);
}

extern "C" Q_DECL_EXPORT Clipboard* corvellaClipboard(const Patience& patience)
{
    auto* const native = QGuiApplication::platformNativeInterface();
    auto* const display = static_cast<wl_display*>(
        native->nativeResourceForIntegration(QByteArrayLiteral("wl_display")));
    return display ? std::make_unique<WaylandClipboard>(display, patience).release() : nullptr;
}

static_assert(std::is_same_v<decltype(&corvellaClipboard), ClipboardFactory>);
