#include "App/Platform/Linux/Screen/QtScreens.h"

#include <QGuiApplication>
#include <QScreen>

QtScreens::QtScreens()
{
    connect(qApp, &QGuiApplication::primaryScreenChanged, this, &Screens::changed);
    connect(qApp, &QGuiApplication::screenRemoved, this, &Screens::changed, Qt::QueuedConnection);
    connect(qApp, &QGuiApplication::screenAdded, this, &QtScreens::watch);
    for (auto* const screen : QGuiApplication::screens())
        watch(screen);
}

void QtScreens::watch(QScreen* screen)
{
    connect(screen, &QScreen::geometryChanged, this, &Screens::changed);
    Q_EMIT changed();
}

std::optional<QRect> QtScreens::main() const
{
    const auto* const screen = QGuiApplication::primaryScreen();
    // Where no output is left Qt keeps one without a name, or of no size.
    return screen && !screen->geometry().isEmpty() ? std::optional(screen->geometry())
                                                   : std::nullopt;
}
