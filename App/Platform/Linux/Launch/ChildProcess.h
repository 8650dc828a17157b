// Starts a program that neither the end of this one nor anything of its own can touch.
#pragma once

#include <QString>
#include <QStringList>

#include <sys/types.h>

namespace ChildProcess {

// Descriptors of this program; what is absent goes nowhere.
struct Streams {
    int input = -1;
    int errors = -1;
};

struct Started {
    pid_t process = -1;
    int error = 0; // As errno; otherwise the process is there and has to be waited for.
};

// Without a shell, in a session of its own and in the user's home; nothing is inherited but the
// environment and the streams.
Started start(const QString& path, const QStringList& arguments, const Streams& streams);

}
