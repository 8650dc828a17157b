// How the desktop asks programs to look.
#pragma once

#include <QColor>
#include <QObject>
#include <QString>

class Appearance : public QObject {
    Q_OBJECT

public:
    virtual bool isDark() const = 0;
    // The desktop's accent colour; invalid where it has none.
    virtual QColor accent() const = 0;
    // The family of the desktop's interface font; empty where it names none.
    virtual QString fontFamily() const = 0;
    // The name of the desktop's icon theme; empty where none is known.
    virtual QString iconTheme() const = 0;

Q_SIGNALS:
    void changed();
};
