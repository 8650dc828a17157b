// The screens as Qt knows them.
#pragma once

#include "App/Platform/Screens.h"

class QScreen;

class QtScreens final : public Screens {
    Q_OBJECT

public:
    QtScreens();

    std::optional<QRect> main() const override;

private:
    void watch(QScreen* screen);
};
