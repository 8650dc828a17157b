// Addresses by a helper program that opens one and ends.
#pragma once

#include "App/Platform/AddressOpener.h"

class HelperAddressOpener final : public AddressOpener {
public:
    // The helper takes the address as its only argument.
    explicit HelperAddressOpener(QString helper);

    void open(const QString& address) override;

private:
    QString m_helper;
};
