#pragma once

#include "App/Platform/Screens.h"

struct FakeScreens final : Screens {
    std::optional<QRect> main() const override { return mainScreen; }

    void change(const std::optional<QRect>& screen)
    {
        mainScreen = screen;
        Q_EMIT changed();
    }

    std::optional<QRect> mainScreen = QRect(0, 0, 1512, 982);
};
