// Keeps signals away from the threads that are born while it lives.
#pragma once

#include <QtGlobal>

#include <csignal>

// A thread keeps the mask it is born with: the program's signals stay with its main thread, and a
// file that outgrows a limit becomes an error instead of the program's end.
class SignalsBlocked final {
public:
    SignalsBlocked()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }

    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }

    Q_DISABLE_COPY_MOVE(SignalsBlocked)

private:
    sigset_t m_before {};
};
