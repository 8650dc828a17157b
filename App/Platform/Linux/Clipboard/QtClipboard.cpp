#include "App/Platform/Linux/Clipboard/QtClipboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include <utility>

void QtClipboard::readText(QObject* waiter, std::function<void(const QString& text)> done)
{
    const auto hand = [done = std::move(done)] { done(QGuiApplication::clipboard()->text()); };
    QMetaObject::invokeMethod(waiter, hand, Qt::QueuedConnection);
}

void QtClipboard::setText(const QString& text)
{
    QGuiApplication::clipboard()->setText(text);
}
