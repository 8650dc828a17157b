#pragma once

#include "App/Platform/LoginItem.h"

struct FakeLoginItem final : LoginItem {
    Status status() const override { return state; }

    std::optional<QString> registerItem() override { return change(Status::enabled); }
    std::optional<QString> unregisterItem() override { return change(Status::notRegistered); }

    std::optional<QString> change(Status wanted)
    {
        if (!failure)
            state = wanted;
        return failure;
    }

    Status state = Status::notRegistered;
    std::optional<QString> failure = {}; // Why nothing can be changed.
};
