// The popover as a window of its own on an X11 desktop.
#pragma once

#include "App/Platform/Linux/Screen/X11ClickCatcher.h"
#include "App/Platform/PopoverWindow.h"

#include <QAbstractNativeEventFilter>
#include <QElapsedTimer>
#include <QPoint>

#include <functional>
#include <memory>

class QWidget;

class X11PopoverWindow final : public PopoverWindow, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    // The content is built when the popover is first shown, and kept. Its contents margins are
    // taken as its shadow: they may hang over the screen's edges, and clicks go through them.
    explicit X11PopoverWindow(std::function<std::unique_ptr<QWidget>()> buildContent);
    ~X11PopoverWindow() override;

    bool isShown() const override;
    void show(const QRect& anchor) override;
    void close() override;

private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    void build();
    void place(const QRect& anchor);
    void correctPlace();
    void claimInput();
    void takeKeyboard();
    void ensureActive();
    bool hasKeyboard() const;
    QRect nativeBody() const;

    std::function<std::unique_ptr<QWidget>()> m_buildContent;
    std::unique_ptr<QWidget> m_content;
    QPoint m_body; // Where the content without its margins belongs.
    X11ClickCatcher m_catcher;
    QElapsedTimer m_sinceLostKeyboard;
};
