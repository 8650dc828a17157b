// Whether translucent windows show what is behind them.
#pragma once

#include <QObject>

class Compositor : public QObject {
    Q_OBJECT

public:
    virtual bool isRunning() const = 0;

Q_SIGNALS:
    void changed();
};
