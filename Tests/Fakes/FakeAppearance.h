#pragma once

#include "App/Platform/Appearance.h"

struct FakeAppearance final : Appearance {
    bool isDark() const override { return dark; }
    QColor accent() const override { return accentColor; }
    QString fontFamily() const override { return family; }
    QString iconTheme() const override { return icons; }

    bool dark = false;
    QColor accentColor;
    QString family;
    QString icons;
};
