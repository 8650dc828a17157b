// Opens addresses with the program that the user has chosen for them.
#pragma once

#include <QString>

class AddressOpener {
public:
    virtual ~AddressOpener() = default;
    static AddressOpener& shared(); // Defined in App/Wiring.cpp.

    // The text is handed on unchanged. Returns at once; an address that nothing opens is ignored.
    virtual void open(const QString& address) = 0;
};
