// Whether Corvella is started when the user logs in.
#pragma once

#include <QString>

#include <optional>

class LoginItem {
public:
    virtual ~LoginItem() = default;
    static LoginItem& shared(); // Defined in App/Wiring.cpp.

    enum class Status {
        notRegistered,
        enabled, // The next login starts this program, and nothing stands in the way.
        requiresApproval, // Registered, but the user or the desktop has switched it off.
    };

    virtual Status status() const = 0;

    // What kept it from being done, in words for the user; absent when it is done.
    virtual std::optional<QString> registerItem() = 0;
    virtual std::optional<QString> unregisterItem() = 0;
};
