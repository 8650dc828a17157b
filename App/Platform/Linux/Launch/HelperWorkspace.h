// Opens what the user asked for by a helper program that opens one thing and ends.
#pragma once

#include "App/Platform/Workspace.h"

#include <QString>

class HelperWorkspace final : public Workspace {
public:
    // The helper takes -u and the encoded URL.
    explicit HelperWorkspace(QString helper);

    void open(const QUrl& url) override;

private:
    QString m_helper;
};
