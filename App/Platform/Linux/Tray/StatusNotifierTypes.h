// The structures that org.kde.StatusNotifierItem sends over D-Bus.
#pragma once

#include <QByteArray>
#include <QList>
#include <QMetaType>
#include <QString>

class QDBusArgument;
class QImage;

struct StatusNotifierPixmap {
    int width = 0;
    int height = 0;
    QByteArray bytes; // ARGB32, not premultiplied, the most significant byte first.

    static StatusNotifierPixmap of(const QImage& image);
};

struct StatusNotifierToolTip {
    QString iconName;
    QList<StatusNotifierPixmap> pixmaps;
    QString title;
    QString text;
};

void registerStatusNotifierTypes();

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierPixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierPixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierToolTip& toolTip);

Q_DECLARE_METATYPE(StatusNotifierPixmap)
Q_DECLARE_METATYPE(StatusNotifierToolTip)
