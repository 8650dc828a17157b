// Where the user's screens are.
#pragma once

#include <QObject>
#include <QRect>

#include <optional>

class Screens : public QObject {
    Q_OBJECT

public:
    // The main screen with all its panels, in global coordinates, else the first of all; absent
    // while there is none.
    virtual std::optional<QRect> main() const = 0;

Q_SIGNALS:
    // A screen came, went, was moved or has another size, or another one is the main screen.
    void changed();
};
