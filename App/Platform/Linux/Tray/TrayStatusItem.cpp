#include "App/Platform/Linux/Tray/TrayStatusItem.h"

#include <QCursor>
#include <QDBusConnection>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace {

enum Entry { open, quit };

QStringList entries()
{
    return { u"Corvella"_s, u"Quit Corvella"_s };
}

QRect around(const QPoint& point)
{
    return { point - QPoint(1, 1), QSize(3, 3) };
}

}

TrayStatusItem::TrayStatusItem(const StatusPainter& painter)
    : m_hosts(QDBusConnection::sessionBus())
    , m_notifierItem(painter, entries())
    , m_window(m_tray, painter)
{
    // A panel that starts brings its watcher a little before its tray.
    m_grace.setSingleShot(true);
    m_grace.setInterval(400);
    connect(&m_grace, &QTimer::timeout, this, [this] {
        if (const auto host = m_hosts.host())
            m_notifierItem.publish(*host);
    });
    connect(&m_hosts, &TrayHostMonitor::changed, this, &TrayStatusItem::settle);
    connect(&m_tray, &XEmbedTray::changed, this, &TrayStatusItem::settle);
    connect(&m_notifierItem, &StatusNotifierItem::activated, this, &TrayStatusItem::activateAt);
    connect(
        &m_notifierItem, &StatusNotifierItem::menuEntryChosen, this, &TrayStatusItem::chooseEntry);
    connect(&m_notifierItem, &StatusNotifierItem::menuRequested, this, &TrayStatusItem::popUpMenu);
    connect(&m_window, &XEmbedItem::activated, this, &StatusItem::activated);
    connect(&m_window, &XEmbedItem::menuRequested, this, &TrayStatusItem::popUpMenu);
}

TrayStatusItem::~TrayStatusItem() = default;

void TrayStatusItem::show()
{
    m_shown = true;
    settle();
}

void TrayStatusItem::setTitle(const StatusTitle& title)
{
    m_notifierItem.setTitle(title);
    m_window.setTitle(title);
}

QRect TrayStatusItem::geometry() const
{
    return m_window.isDocked() ? m_window.geometry() : m_clicked;
}

void TrayStatusItem::settle()
{
    if (!m_tray.isPresent())
        m_window.undock(); // At once: an orphan would become a window on the desktop.
    if (!m_shown || !m_hosts.isSettled())
        return;
    const auto host = m_hosts.host();
    m_clicked = {};
    m_grace.stop();
    const bool docks = m_tray.isPresent() && (!host || host->yieldsToXEmbed);
    if (docks) {
        m_notifierItem.withdraw();
        m_window.dock();
        return;
    }
    m_window.undock();
    if (!host)
        m_notifierItem.withdraw();
    else if (host->yieldsToXEmbed)
        m_grace.start();
    else
        m_notifierItem.publish(*host);
}

void TrayStatusItem::activateAt(const QPoint& place)
{
    const auto host = m_hosts.host();
    if (host && host->tellsPlace && !place.isNull()) {
        const qreal ratio = qGuiApp->primaryScreen()->devicePixelRatio();
        m_clicked = around((QPointF(place) / ratio).toPoint());
    } else {
        m_clicked = around(QCursor::pos());
    }
    Q_EMIT activated();
}

void TrayStatusItem::chooseEntry(int entry)
{
    if (entry == quit) {
        Q_EMIT quitRequested();
        return;
    }
    m_clicked = {}; // The pointer is somewhere in the host's menu.
    Q_EMIT activated();
}

void TrayStatusItem::popUpMenu()
{
    if (!m_menu) {
        m_menu = std::make_unique<QMenu>();
        for (int entry = 0; entry < entries().size(); ++entry)
            m_menu->addAction(entries().at(entry), this, [this, entry] { chooseEntry(entry); });
    }
    m_menu->popup(QCursor::pos());
}
