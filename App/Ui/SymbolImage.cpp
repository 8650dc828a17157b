#include "App/Ui/SymbolImage.h"

#include "App/Ui/IconMask.h"
#include "App/Ui/IconTheme.h"
#include "App/Ui/SymbolNames.h"
#include "App/Ui/Symbols.h"
#include "App/Ui/Theme.h"

#include <QCache>
#include <QImage>
#include <QPainter>
#include <QStringList>

#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

// Theme icons leave less of a margin than our own symbols do.
constexpr qreal iconPart = 0.8;
constexpr qsizetype cacheSize = qsizetype { 1 } << 20; // Bytes
constexpr int commonSide = 48; // Pixels

struct Icons {
    explicit Icons(const QString& name)
        : themeName(name)
        , theme(name)
    {
    }

    QString themeName;
    IconTheme theme;
    // By name, side and colour; null images for names without a picture.
    QCache<QString, QImage> images { cacheSize };
};

std::unique_ptr<Icons>& loaded()
{
    static std::unique_ptr<Icons> icons;
    return icons;
}

// Nothing is read before the first icon is asked for.
Icons& icons()
{
    auto& icons = loaded();
    const QString wanted = Theme::current().iconTheme();
    if (!icons || icons->themeName != wanted)
        icons = std::make_unique<Icons>(wanted);
    return *icons;
}

bool isOwn(const QString& name)
{
    return Symbols::contains(name) && !name.startsWith("ui."_L1);
}

// Where a name leads to: a symbol of our own, else icons, the best one first; or nowhere.
struct Picture {
    QString own;
    QStringList icons;
};

Picture pictureOf(const QString& name)
{
    if (!IconTheme::isName(name))
        return {};
    for (QString known = name; !known.isEmpty(); known = SymbolNames::plainer(known)) {
        if (isOwn(known))
            return { known, {} };
        if (const QStringList icons = SymbolNames::icons(known); !icons.isEmpty())
            return { {}, icons };
    }
    return { {}, { name } };
}

QString fileOf(const QStringList& names, int side)
{
    for (const auto& ending : { u"-symbolic"_s, QString() }) {
        for (const QString& name : names) {
            if (QString file = icons().theme.find(name + ending, side); !file.isEmpty())
                return file;
        }
    }
    return {};
}

IconMask::Ink inkOf(const QColor& color)
{
    return qGray(color.rgb()) < 128 ? IconMask::Ink::dark : IconMask::Ink::light;
}

QImage tinted(const QImage& mask, const QColor& color)
{
    QImage image(mask.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, mask);
    return image;
}

QImage iconImage(const QStringList& names, int side, const QColor& color)
{
    const QString file = fileOf(names, side);
    const QImage mask = file.isEmpty() ? QImage() : IconMask::read(file, side, inkOf(color));
    return mask.isNull() ? QImage() : tinted(mask, color);
}

QImage cachedImage(const QStringList& names, int side, const QColor& color)
{
    auto& images = icons().images;
    const QString key = u"%1/%2/%3"_s.arg(names.first()).arg(side).arg(color.rgba(), 0, 16);
    if (const QImage* image = images.object(key))
        return *image;
    QImage image = iconImage(names, side, color);
    images.insert(key, new QImage(image), std::max<qsizetype>(image.sizeInBytes(), 1024));
    return image;
}

// Pixel by pixel, in the middle of the box.
bool paintIcon(QPainter& painter, const QStringList& names, const QRectF& box, const QColor& color)
{
    const QTransform toDevice = painter.deviceTransform();
    const QRectF device = toDevice.mapRect(box);
    const int side = int(std::lround(device.width() * iconPart));
    const QImage image = side > 0 && !names.isEmpty() ? cachedImage(names, side, color) : QImage();
    if (image.isNull())
        return false;
    const QPointF corner(std::floor(device.center().x() - side / 2.0 + 0.5),
        std::floor(device.center().y() - side / 2.0 + 0.5));
    painter.drawImage(toDevice.inverted().mapRect(QRectF(corner, image.size())), image);
    return true;
}

}

bool SymbolImage::exists(const QString& name)
{
    const Picture picture = pictureOf(name);
    if (!picture.own.isEmpty())
        return true;
    loaded().reset();
    return !iconImage(picture.icons, commonSide, Qt::black).isNull();
}

void SymbolImage::paint(
    QPainter& painter, const QString& name, const QRectF& box, const QColor& color)
{
    const Picture picture = pictureOf(name);
    if (!picture.own.isEmpty())
        Symbols::paint(painter, picture.own, box, color);
    else if (!paintIcon(painter, picture.icons, box, color))
        Symbols::paint(painter, u"star"_s, box, color);
}
