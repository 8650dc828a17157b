#include "App/Platform/Linux/Background/BackgroundText.h"

#include <utility>

void BackgroundText::read(const std::function<QString()>& reading, QObject* waiter, Done done)
{
    (new BackgroundText(waiter, std::move(done)))->start(reading);
}

BackgroundText::BackgroundText(QObject* waiter, Done done)
    : QObject(waiter)
    , m_done(std::move(done))
{
}

void BackgroundText::start(const std::function<QString()>& reading)
{
    m_work.start([this, reading]() -> BackgroundWork::Finish {
        return [this, text = reading()] { finish(text); };
    });
    if (!m_work.isUnderWay())
        QMetaObject::invokeMethod(
            this, [this] { finish({}); }, Qt::QueuedConnection);
}

void BackgroundText::finish(const QString& text)
{
    deleteLater();
    // The waiter may go with the answer, and this object with it.
    const auto done = std::move(m_done);
    done(text);
}
