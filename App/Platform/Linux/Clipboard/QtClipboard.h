// The clipboard as Qt knows it, for platforms where asking it waits for nobody.
#pragma once

#include "App/Platform/Clipboard.h"

class QtClipboard final : public Clipboard {
public:
    void readText(QClipboard::Mode mode, QObject* waiter,
        std::function<void(const QString& text)> done) override;
    void setText(const QString& text) override;
};
