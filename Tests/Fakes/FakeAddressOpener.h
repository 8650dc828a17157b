#pragma once

#include "App/Platform/AddressOpener.h"

#include <QStringList>

struct FakeAddressOpener final : AddressOpener {
    void open(const QString& address) override { opened << address; }

    QStringList opened = {};
};
