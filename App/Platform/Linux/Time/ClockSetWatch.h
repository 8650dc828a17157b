// Tells that somebody set the wall clock, without waking the program up in between.
#pragma once

#include <QObject>
#include <QSocketNotifier>

class ClockSetWatch final : public QObject {
    Q_OBJECT

public:
    // A timer descriptor of the wall clock, to be handed to a watch; -1 where there is none.
    static int openTimer();

    // Takes the timer over and closes it in the end; -1 makes a watch that never tells.
    explicit ClockSetWatch(int timer = openTimer());
    ~ClockSetWatch() override;

Q_SIGNALS:
    void clockSet();

private:
    void arm();
    void wake();

    int m_timer;
    QSocketNotifier m_notifier { QSocketNotifier::Read };
};
