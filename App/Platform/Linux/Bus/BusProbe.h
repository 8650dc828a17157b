// Asks whether a message bus is alive, in a way that a bus which hangs cannot hold up.
#pragma once

#include <QByteArray>

#include <chrono>

namespace BusProbe {

// Where the environment or else the standard says that the system bus is.
QByteArray systemBusAddress();

// Waits for as long as patience for a first word of the bus. True also for a kind of address that
// is not understood here.
bool answers(const QByteArray& address, std::chrono::milliseconds patience);

}
