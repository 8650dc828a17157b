#include "App/Platform/Linux/Screen/LayerShellModule.h"

#include <QLibrary>

std::unique_ptr<DesktopWindows> LayerShellModule::load(const QString& module)
{
    const auto symbol = QLibrary::resolve(module, "corvellaLayerShell");
    const auto factory = reinterpret_cast<LayerShellFactory>(symbol);
    return std::unique_ptr<DesktopWindows>(factory ? factory() : nullptr);
}
