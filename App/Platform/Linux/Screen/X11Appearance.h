// The session's look, with the icon theme that the desktop keeps on its X11 screen: of Xfce and
// MATE the session's portal only knows what GNOME would have.
#pragma once

#include "App/Platform/Appearance.h"

#include <QAbstractNativeEventFilter>

#include <xcb/xcb.h>

class X11Appearance final : public Appearance, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    explicit X11Appearance(Appearance& session);

    bool isDark() const override { return m_session.isDark(); }
    QColor accent() const override { return m_session.accent(); }
    QString fontFamily() const override { return m_session.fontFamily(); }
    QString iconTheme() const override;

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    void followManager();
    void read();

    Appearance& m_session;
    xcb_window_t m_manager = XCB_WINDOW_NONE; // Holds the settings.
    uint8_t m_ownerChanged = 0; // The type of the event that tells of a new manager.
    QString m_iconTheme;
};
