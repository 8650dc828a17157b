// The program's item in the desktop's status bar.
#pragma once

#include <QFont>
#include <QObject>
#include <QRect>
#include <QString>

struct TitleFont {
    int size = 13; // Device-independent pixels.
    QFont::Weight weight = QFont::Normal;
    bool monospacedDigits = false;

    bool operator==(const TitleFont&) const = default;
};

struct StatusTitle {
    QString text;
    TitleFont font;

    bool operator==(const StatusTitle&) const = default;
};

class StatusItem : public QObject {
    Q_OBJECT

public:
    // Puts the item up now and again whenever a status bar appears.
    virtual void show() = 0;
    virtual void setTitle(const StatusTitle& title) = 0;
    // The item's place in global coordinates; null where the desktop does not tell.
    virtual QRect geometry() const = 0;

Q_SIGNALS:
    void activated();
    void quitRequested();
};
