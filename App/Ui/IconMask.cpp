#include "App/Ui/IconMask.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QPainter>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 largestFile = qint64 { 2 } << 20; // Bytes
constexpr int widestPicture = 2048;

QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    if (file.size() > largestFile || !file.open(QIODevice::ReadOnly))
        return {};
    return file.read(largestFile);
}

// Whoever draws a picture also reads what it takes in, and that may wait for somebody else.
bool leadsOut(QByteArrayView svg)
{
    constexpr QByteArrayView link = "href";
    constexpr QByteArrayView packed = "\x1f\x8b";
    if (svg.startsWith(packed) || svg.contains('\0'))
        return true; // For all that can be seen here.
    for (auto at = svg.indexOf(link); at >= 0; at = svg.indexOf(link)) {
        svg = svg.sliced(at + link.size()).trimmed();
        if (!svg.startsWith('='))
            continue;
        svg = svg.sliced(1).trimmed();
        const auto target = svg.isEmpty() ? svg : svg.sliced(1).trimmed();
        if (!target.startsWith('#') && !target.startsWith("data:"))
            return true;
    }
    return false;
}

// As large as the square allows, in its middle.
QImage pictureOf(const QString& path, int side)
{
    QByteArray bytes = bytesOf(path);
    const bool isDrawing = path.endsWith(".svg"_L1);
    if (isDrawing && leadsOut(bytes))
        return {};
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer, isDrawing ? "svg" : "png");
    reader.setAutoDetectImageFormat(false);
    const QSize size = reader.size();
    if (size.isEmpty() || size.width() > widestPicture || size.height() > widestPicture)
        return {};
    const QSize fit = size.scaled(side, side, Qt::KeepAspectRatio).expandedTo({ 1, 1 });
    reader.setScaledSize(fit);
    const QImage read = reader.read();
    if (read.isNull())
        return {};
    QImage square(side, side, QImage::Format_ARGB32);
    square.fill(Qt::transparent);
    QPainter painter(&square);
    painter.drawImage((side - fit.width()) / 2, (side - fit.height()) / 2, read);
    painter.end();
    return square;
}

// From the darkest to the lightest part, without the few that stand out; from 0 to 255.
struct Range {
    int darkest = 0;
    int lightest = 0;
};

Range rangeOf(const QImage& picture)
{
    std::array<int, 256> counts {};
    int total = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb pixel = picture.pixel(x, y);
            if (qAlpha(pixel) < 128)
                continue;
            ++counts[size_t(qGray(pixel))];
            ++total;
        }
    }
    const auto level = [&](int pixels) {
        int gray = 0;
        for (int seen = counts[0]; seen <= pixels && gray < 255; ++gray)
            seen += counts[size_t(gray) + 1];
        return gray;
    };
    constexpr int outliers = 50; // One of so many, at either end.
    return { level(total / outliers), level(total - 1 - total / outliers) };
}

void weigh(QImage& picture, IconMask::Ink ink)
{
    constexpr int flat = 40; // Less of a difference is a single colour.
    constexpr int faintest = 70; // The silhouette, of 255.
    const auto [darkest, lightest] = rangeOf(picture);
    const int range = lightest - darkest;
    if (range < flat)
        return;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb pixel = picture.pixel(x, y);
            const int above = std::clamp(qGray(pixel) - darkest, 0, range);
            const int part = ink == IconMask::Ink::light ? above : range - above;
            const int weight = faintest + part * (255 - faintest) / range;
            picture.setPixel(x, y, qRgba(0, 0, 0, qAlpha(pixel) * weight / 255));
        }
    }
}

}

QImage IconMask::read(const QString& path, int side, Ink ink)
{
    QImage picture = pictureOf(path, side);
    if (!QFileInfo(path).completeBaseName().endsWith("-symbolic"_L1) && !picture.isNull())
        weigh(picture, ink);
    return picture.convertToFormat(QImage::Format_Alpha8);
}
