#include "App/Platform/Linux/Clipboard/QtClipboard.h"

#include <QGuiApplication>

#include <utility>

void QtClipboard::readText(
    QClipboard::Mode mode, QObject* waiter, std::function<void(const QString& text)> done)
{
    const auto hand
        = [mode, done = std::move(done)] { done(QGuiApplication::clipboard()->text(mode)); };
    QMetaObject::invokeMethod(waiter, hand, Qt::QueuedConnection);
}

void QtClipboard::setText(const QString& text)
{
    QGuiApplication::clipboard()->setText(text);
}
