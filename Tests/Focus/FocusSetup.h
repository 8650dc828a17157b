// A focus timer over fakes.
#pragma once

#include "App/Focus/PomodoroModel.h"
#include "Tests/Fakes/FakeClock.h"
#include "Tests/Fakes/FakeNotifier.h"
#include "Tests/Fakes/FakeSoundPlayer.h"
#include "Tests/Fakes/FakeTicker.h"
#include "Tests/Fakes/FakeUserDefaults.h"

struct FocusSetup {
    explicit FocusSetup(const QHash<QString, UserDefaults::Value>& stored = {})
        : defaults(stored)
    {
    }

    void tickAfter(double seconds)
    {
        clock.advance(seconds);
        ticker.fire();
    }

    void completePhase()
    {
        model.start();
        tickAfter(static_cast<double>(model.remaining()));
    }

    FakeUserDefaults defaults;
    FakeClock clock;
    FakeTicker ticker;
    FakeSoundPlayer sounds;
    FakeNotifier notifier;
    PomodoroModel model { defaults, clock, ticker, sounds, notifier };
};
