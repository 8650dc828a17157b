// Reads one text on a thread of its own and hands it over on this one.
#pragma once

#include "App/Platform/Linux/Background/BackgroundWork.h"

#include <QString>

#include <functional>

class BackgroundText final : public QObject {
public:
    using Done = std::function<void(const QString& text)>;

    // The reading must own all that it touches. Done is not called once the waiter is gone, and
    // with an empty text when there is no thread to be had.
    static void read(const std::function<QString()>& reading, QObject* waiter, Done done);

private:
    BackgroundText(QObject* waiter, Done done);

    void start(const std::function<QString()>& reading);
    void finish(const QString& text);

    Done m_done; // Stays on this thread, as does all that it holds.
    BackgroundWork m_work;
};
