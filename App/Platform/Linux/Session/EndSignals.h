// Tells that the session or a terminal asks the program to end, so that it can do so in order.
#pragma once

#include <QObject>
#include <QSocketNotifier>

class EndSignals final : public QObject {
    Q_OBJECT

public:
    // At most one at a time. A signal that the program was started to ignore stays ignored.
    EndSignals();
    ~EndSignals() override;

Q_SIGNALS:
    // Once for each kind of signal: the same one again ends the program at once.
    void received();

private:
    void wake();

    QSocketNotifier m_notifier { QSocketNotifier::Read };
};
