// The clipboard of an X11 server.
#pragma once

#include "App/Platform/Clipboard.h"
#include "App/Platform/Linux/Background/Patience.h"

#include <QByteArray>

#include <memory>

class X11Clipboard final : public Clipboard {
public:
    explicit X11Clipboard(const Patience& patience = Patience());

    // Not through Qt, which would wait for the owner of the clipboard on the main thread.
    void readText(QClipboard::Mode mode, QObject* waiter,
        std::function<void(const QString& text)> done) override;
    void setText(const QString& text) override;

private:
    struct Unanswered;

    Patience m_patience;
    QByteArray m_display;
    std::shared_ptr<Unanswered> m_unanswered; // Shared with the threads that read.
};
