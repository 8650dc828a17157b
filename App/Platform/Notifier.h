// Desktop notifications.
#pragma once

#include <QString>

class Notifier {
public:
    virtual ~Notifier() = default;

    // Both texts are shown to the letter. Never waits; a notification nobody takes is dropped.
    virtual void notify(const QString& title, const QString& body) = 0;
};
