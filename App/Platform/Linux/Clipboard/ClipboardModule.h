// A clipboard out of a module, as the libraries that it needs are of no use on other platforms.
#pragma once

#include "App/Platform/Linux/Background/Patience.h"

#include <QString>

#include <memory>

class Clipboard;

// What such a module exports. The clipboard is the caller's; null where there is none of its kind.
using ClipboardFactory = Clipboard* (*)(const Patience& patience);

namespace ClipboardModule {

// Null also when there is no such module, which is never unloaded.
std::unique_ptr<Clipboard> load(const QString& module, const Patience& patience = Patience());

}
