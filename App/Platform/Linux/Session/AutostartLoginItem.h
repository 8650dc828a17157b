// The start at login by an entry in the user's autostart folder.
#pragma once

#include "App/Platform/LoginItem.h"

class AutostartLoginItem final : public LoginItem {
public:
    // The program by its absolute path.
    explicit AutostartLoginItem(QString program);

    Status status() const override;
    std::optional<QString> registerItem() override;
    std::optional<QString> unregisterItem() override;

private:
    QString m_program;
};
