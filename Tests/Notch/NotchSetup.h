// What the widget shows, over fakes.
#pragma once

#include "App/Notch/NotchState.h"
#include "App/Notch/NotchView.h"
#include "App/Ui/Theme.h"
#include "Tests/Focus/FocusSetup.h"
#include "Tests/Meetings/TodaySetup.h"

#include <QCoreApplication>
#include <QList>

#include <memory>

struct NotchSetup {
    NotchSetup() { Theme::apply({}); }

    std::unique_ptr<NotchView> makeView()
    {
        return std::make_unique<NotchView>(
            state, focus.model, today.model, [this](bool inside) { hovers << inside; });
    }

    void grantCalendars()
    {
        today.store.status = AuthorizationStatus::fullAccess;
        today.model.checkAuthorization();
    }

    FocusSetup focus;
    TodaySetup today;
    NotchState state;
    QList<bool> hovers;
};
