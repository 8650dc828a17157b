#include "App/Platform/Linux/Clipboard/ClipboardModule.h"

#include "App/Platform/Clipboard.h"

#include <QLibrary>

std::unique_ptr<Clipboard> ClipboardModule::load(const QString& module, const Patience& patience)
{
    const auto symbol = QLibrary::resolve(module, "corvellaClipboard");
    const auto factory = reinterpret_cast<ClipboardFactory>(symbol);
    return std::unique_ptr<Clipboard>(factory ? factory(patience) : nullptr);
}
