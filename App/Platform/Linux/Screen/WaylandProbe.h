// What a Wayland compositor offers, asked before there is an application.
#pragma once

#include <QByteArray>

#include <chrono>

namespace WaylandProbe {

// Where the session says that its compositor listens; empty where it has none. The file name is
// what the environment gives in WAYLAND_DISPLAY and XDG_RUNTIME_DIR.
QByteArray socket();

// False also when the compositor does not answer in time.
bool offers(const QByteArray& socket, const QByteArray& interface, std::chrono::milliseconds limit);

}
