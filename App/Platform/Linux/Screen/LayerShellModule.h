// Windows above others out of a module, as the library that they need is of no use on X11.
#pragma once

#include "App/Platform/Linux/Screen/DesktopWindows.h"

// What the module exports. The windows are the caller's; null where the compositor has no layers.
using LayerShellFactory = DesktopWindows* (*)();

namespace LayerShellModule {

// To be asked for before there is an application.
constexpr auto interface = "zwlr_layer_shell_v1";

// Null also when there is no such module, which is never unloaded.
std::unique_ptr<DesktopWindows> load(const QString& module);

}
