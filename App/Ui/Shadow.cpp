#include "App/Ui/Shadow.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

namespace {

// Three box blurs come close to a Gaussian; the box's width for a deviation of sigma is the
// one that the W3C's filter effects module gives.
int boxWidth(qreal sigma)
{
    return std::max(1, static_cast<int>(sigma * 3 * std::sqrt(2 * std::numbers::pi) / 4 + 0.5));
}

void blurLine(uchar* line, qsizetype stride, int length, int width, std::vector<uchar>& scratch)
{
    scratch.resize(static_cast<size_t>(length));
    const auto at = [&](int i) -> int { return i < 0 || i >= length ? 0 : line[i * stride]; };
    int sum = 0;
    for (int i = -width; i < width / 2; ++i)
        sum += at(i);
    for (int i = 0; i < length; ++i) {
        sum += at(i + width / 2) - at(i + width / 2 - width);
        scratch[static_cast<size_t>(i)] = static_cast<uchar>(sum / width);
    }
    for (int i = 0; i < length; ++i)
        line[i * stride] = scratch[static_cast<size_t>(i)];
}

void blur(QImage& alpha, qreal sigma)
{
    const int width = boxWidth(sigma);
    std::vector<uchar> scratch;
    for (int pass = 0; pass < 3; ++pass) {
        for (int y = 0; y < alpha.height(); ++y)
            blurLine(alpha.scanLine(y), 1, alpha.width(), width, scratch);
        for (int x = 0; x < alpha.width(); ++x)
            blurLine(alpha.bits() + x, alpha.bytesPerLine(), alpha.height(), width, scratch);
    }
}

QImage shadowOf(const QRectF& box, qreal radius, qreal sigma, const QColor& color, QSize size)
{
    QImage alpha(size, QImage::Format_Alpha8);
    alpha.fill(0);
    QPainter shape(&alpha);
    shape.setRenderHint(QPainter::Antialiasing);
    shape.setPen(Qt::NoPen);
    shape.setBrush(Qt::black);
    shape.drawRoundedRect(box, radius, radius);
    shape.end();
    blur(alpha, sigma);

    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    QPainter tint(&image);
    tint.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    tint.drawImage(0, 0, alpha);
    return image;
}

}

QMargins Shadow::reach(std::span<const Colors::Shadow> layers)
{
    QMargins reach;
    for (const auto& layer : layers) {
        const QMargins own(layer.blur, std::max(0, layer.blur - layer.y), layer.blur,
            std::max(0, layer.blur + layer.y));
        reach = reach | own;
    }
    return reach;
}

Shadow::Shadow(std::span<const Colors::Shadow> layers, int radius, qreal scale)
    : m_reach(reach(layers))
    , m_scale(scale)
{
    const int farthest = std::max({ m_reach.left(), m_reach.top(), m_reach.bottom() });
    m_corner = static_cast<int>(std::ceil((2 * farthest + radius) * scale));
    const QSize size(2 * m_corner + 1, 2 * m_corner + 1);
    m_tile = QImage(size, QImage::Format_ARGB32_Premultiplied);
    m_tile.fill(Qt::transparent);
    QPainter painter(&m_tile);
    for (const auto& layer : layers) {
        const auto inset = farthest * scale;
        const auto box = QRectF(QPointF(), QSizeF(size))
                             .adjusted(inset, inset, -inset, -inset)
                             .translated(0, layer.y * scale);
        painter.drawImage(
            0, 0, shadowOf(box, radius * scale, layer.blur * scale / 2, layer.color, size));
    }
    m_reach = QMargins(farthest, farthest, farthest, farthest);
}

void Shadow::paint(QPainter& painter, const QRect& box) const
{
    const auto outer = QRectF(box.marginsAdded(m_reach));
    const qreal corner = m_corner / m_scale;
    const std::array xs { outer.left(), outer.left() + corner, outer.right() - corner };
    const std::array ys { outer.top(), outer.top() + corner, outer.bottom() - corner };
    const std::array widths { corner, outer.width() - 2 * corner, corner };
    const std::array heights { corner, outer.height() - 2 * corner, corner };
    const std::array from { 0, m_corner, m_corner + 1 };
    const std::array length { m_corner, 1, m_corner };
    for (size_t row = 0; row < 3; ++row) {
        for (size_t column = 0; column < 3; ++column) {
            painter.drawImage(QRectF(xs[column], ys[row], widths[column], heights[row]), m_tile,
                QRectF(from[column], from[row], length[column], length[row]));
        }
    }
}
