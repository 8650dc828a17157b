#include "App/Platform/Linux/Screen/LayerPopoverWindow.h"

#include "App/Platform/Linux/Screen/DesktopWindows.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

namespace {

// A compositor says at once where the pointer is, if it is there.
constexpr auto longestWait = 150ms;
constexpr auto restBeforeFreeing = 2s;

bool isAtEdge(const QPoint& place, const QRect& whole)
{
    constexpr int most = LayerSheet::thickestPanel;
    return !whole.adjusted(most, most, -most, -most).contains(place);
}

}

LayerPopoverWindow::LayerPopoverWindow(
    const LayerShell& shell, std::function<std::unique_ptr<QWidget>()> buildContent)
    : m_shell(shell)
    , m_buildContent(std::move(buildContent))
{
    m_pointerIsElsewhere.setSingleShot(true);
    m_pointerIsElsewhere.setInterval(longestWait);
    connect(&m_pointerIsElsewhere, &QTimer::timeout, this, &LayerPopoverWindow::hangAnywhere);
    m_freeing.setSingleShot(true);
    m_freeing.setInterval(restBeforeFreeing);
    connect(&m_freeing, &QTimer::timeout, this, [this] {
        for (const auto& sheet : m_sheets)
            sheet->freeMemory();
    });
}

LayerPopoverWindow::~LayerPopoverWindow()
{
    close();
}

LayerSheet& LayerPopoverWindow::sheet(size_t index)
{
    if (index < m_sheets.size())
        return *m_sheets[index];
    auto& added = *m_sheets.emplace_back(std::make_unique<LayerSheet>(m_shell));
    connect(&added, &LayerSheet::entered, this, [this, &added](const QPoint& place) {
        if (m_isShown && !m_host)
            hangFrom(added, place);
    });
    connect(&added, &LayerSheet::clicked, this, [this, &added](const QPoint& place) {
        const auto body = m_content->geometry().marginsRemoved(m_content->contentsMargins());
        if (&added != m_host || !body.contains(place))
            close();
    });
    connect(&added, &LayerSheet::lost, this, &LayerPopoverWindow::close);
    return added;
}

void LayerPopoverWindow::show(const QRect&)
{
    if (m_isShown
        || (m_sinceClosed.isValid() && m_sinceClosed.elapsed() < DesktopWindows::sameClickMs))
        return;
    if (!m_content) {
        m_content = m_buildContent();
        m_content->hide();
        m_content->setAccessibleName(m_content->windowTitle()); // No window's title says it here.
    }
    m_host = nullptr;
    openSheets();
    if (!m_isShown)
        return;
    m_freeing.stop();
    m_pointerIsElsewhere.start();
    qApp->installEventFilter(this);
}

void LayerPopoverWindow::openSheets()
{
    size_t index = 0;
    for (auto* const screen : QGuiApplication::screens()) {
        if (sheet(index).open(*screen)) {
            m_isShown = true;
            ++index;
        }
    }
}

void LayerPopoverWindow::close()
{
    if (!m_isShown)
        return;
    m_isShown = false;
    m_host = nullptr;
    m_pointerIsElsewhere.stop();
    qApp->removeEventFilter(this);
    m_content->hide();
    for (const auto& sheet : m_sheets)
        sheet->close();
    m_sinceClosed.start();
    m_freeing.start();
}

void LayerPopoverWindow::hangAnywhere()
{
    const auto onMain = [](const auto& sheet) {
        return sheet->isShown() && sheet->screen() == QGuiApplication::primaryScreen();
    };
    const auto found = std::ranges::find_if(m_sheets, onMain);
    auto& sheet = found == m_sheets.end() ? *m_sheets.front() : **found;
    if (sheet.isConfigured())
        hangFrom(sheet, std::nullopt);
    else
        m_pointerIsElsewhere.start();
}

void LayerPopoverWindow::hangFrom(LayerSheet& sheet, const std::optional<QPoint>& pointer)
{
    m_pointerIsElsewhere.stop();
    m_host = &sheet;
    if (pointer && isAtEdge(*pointer, sheet.rect()))
        m_item = pointer;
    const bool isKnown = m_item && sheet.rect().contains(*m_item);
    const QRect anchor = isKnown ? QRect(*m_item - QPoint(1, 1), QSize(3, 3)) : QRect();
    const auto margins = m_content->contentsMargins();
    const auto space = sheet.space(anchor.isNull() ? sheet.rect().topRight() : anchor.center());
    const auto origin = popoverOrigin(anchor, m_content->size().shrunkBy(margins), space);
    m_content->setParent(&sheet);
    m_content->move(origin - QPoint(margins.left(), margins.top()));
    m_content->show();
    sheet.takeKeyboard();
}

bool LayerPopoverWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_host)
        return filterOfHost(event);
    const bool isShowing = event->type() == QEvent::Show;
    if (!m_host || (!isShowing && event->type() != QEvent::Hide))
        return false;
    auto* const widget = qobject_cast<QWidget*>(watched);
    const bool isAbove
        = widget && (widget->windowType() == Qt::Popup || widget->windowType() == Qt::ToolTip);
    if (isAbove && isShowing)
        adopt(*widget);
    else if (isAbove)
        m_host->update(widget->geometry()); // Not every compositor does away with what was there.
    return false;
}

bool LayerPopoverWindow::filterOfHost(QEvent* event)
{
    const bool isEscape = event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent*>(event)->matches(QKeySequence::Cancel);
    const bool lostKeyboard
        = event->type() == QEvent::WindowDeactivate && !QApplication::activePopupWidget();
    if (isEscape || lostKeyboard)
        close();
    return isEscape;
}

// Menus and tooltips: a window of its own would have no place here. As a child of the sheet's it
// is a part of that one to the compositor, and to Qt what it always was.
void LayerPopoverWindow::adopt(QWidget& window)
{
    auto* const handle = window.windowHandle();
    if (!handle)
        return;
    const QPoint place = m_host->mapFromGlobal(window.pos());
    handle->setParent(m_host->windowHandle());
    window.move(place);
}
