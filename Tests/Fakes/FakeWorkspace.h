#pragma once

#include "App/Platform/Workspace.h"

#include <QList>
#include <QUrl>

struct FakeWorkspace final : Workspace {
    void open(const QUrl& url) override { opened << url; }

    QList<QUrl> opened = {};
};
