#include "App/Platform/Linux/Tray/StatusNotifierTypes.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QImage>
#include <QtEndian>

StatusNotifierPixmap StatusNotifierPixmap::of(const QImage& image)
{
    const auto plain = image.convertToFormat(QImage::Format_ARGB32);
    StatusNotifierPixmap pixmap { plain.width(), plain.height(),
        QByteArray(plain.sizeInBytes(), Qt::Uninitialized) };
    // Rows of 32-bit pixels have no padding, so that the picture is one run of words.
    qToBigEndian<quint32>(plain.constBits(), plain.sizeInBytes() / 4, pixmap.bytes.data());
    return pixmap;
}

void registerStatusNotifierTypes()
{
    qDBusRegisterMetaType<StatusNotifierPixmap>();
    qDBusRegisterMetaType<QList<StatusNotifierPixmap>>();
    qDBusRegisterMetaType<StatusNotifierToolTip>();
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierPixmap& pixmap)
{
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.bytes;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierPixmap& pixmap)
{
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.bytes;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierToolTip& toolTip)
{
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.pixmaps << toolTip.title << toolTip.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierToolTip& toolTip)
{
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.pixmaps >> toolTip.title >> toolTip.text;
    argument.endStructure();
    return argument;
}
