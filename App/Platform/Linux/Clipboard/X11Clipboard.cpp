#include "App/Platform/Linux/Clipboard/X11Clipboard.h"

#include "App/Platform/Linux/Background/BackgroundText.h"
#include "App/Platform/Linux/Clipboard/X11Conversation.h"
#include "App/Platform/Linux/Clipboard/X11Selection.h"

#include <QGuiApplication>

#include <deque>
#include <mutex>
#include <utility>

// Conversations that were given up: a simple program that still answers one ends, and its text with
// it, if nobody is there any more.
struct X11Clipboard::Unanswered {
    static constexpr std::size_t most = 8;

    void keep(std::unique_ptr<X11Conversation> conversation)
    {
        const std::lock_guard lock(mutex);
        kept.push_back(std::move(conversation));
        if (kept.size() > most)
            kept.pop_front();
    }

    std::mutex mutex;
    std::deque<std::unique_ptr<X11Conversation>> kept;
};

X11Clipboard::X11Clipboard(const Patience& patience)
    : m_patience(patience)
    , m_display(qgetenv("DISPLAY"))
    , m_unanswered(std::make_shared<Unanswered>())
{
}

void X11Clipboard::readText(
    QClipboard::Mode mode, QObject* waiter, std::function<void(const QString& text)> done)
{
    const auto read
        = [mode, display = m_display, patience = m_patience, unanswered = m_unanswered] {
              auto conversation = std::make_unique<X11Conversation>(display, patience);
              const auto text = X11Selection::readText(mode, *conversation);
              if (conversation->isOver())
                  unanswered->keep(std::move(conversation));
              return text;
          };
    BackgroundText::read(read, waiter, std::move(done));
}

void X11Clipboard::setText(const QString& text)
{
    QGuiApplication::clipboard()->setText(text);
}
