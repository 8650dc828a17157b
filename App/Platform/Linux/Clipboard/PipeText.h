// Texts that go through a pipe to another program, or come from one.
#pragma once

#include "App/Platform/Linux/Background/Patience.h"

#include <QByteArray>

#include <memory>

// An end of a pipe, closed with its last owner.
class PipeEnd final {
public:
    explicit PipeEnd(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    ~PipeEnd();
    Q_DISABLE_COPY_MOVE(PipeEnd)

    operator int() const { return m_descriptor; }

private:
    int m_descriptor;
};

// Both wait, and so are for threads that may.
namespace PipeText {

struct Pipe {
    std::shared_ptr<PipeEnd> from;
    std::shared_ptr<PipeEnd> to;
};

Pipe open(); // Null ends when the system has no more of them.
// Empty when more than that comes, or when the end does not come in time.
QByteArray read(const PipeEnd& end, qsizetype most, Patience patience);
// False when nobody took all of it in time.
bool write(const PipeEnd& end, const QByteArray& bytes, Patience patience);

}
