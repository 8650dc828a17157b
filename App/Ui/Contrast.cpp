#include "App/Ui/Contrast.h"

#include <algorithm>
#include <cmath>

namespace {

qreal linear(int channel)
{
    const qreal value = channel / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

qreal luminance(const QColor& color)
{
    return 0.2126 * linear(color.red()) + 0.7152 * linear(color.green())
        + 0.0722 * linear(color.blue());
}

}

qreal Contrast::ratio(const QColor& first, const QColor& second)
{
    const auto [dark, light] = std::minmax({ luminance(first), luminance(second) });
    return (light + 0.05) / (dark + 0.05);
}

QColor Contrast::over(const QColor& ink, const QColor& ground)
{
    return mixed(ground, QColor(ink.rgb()), ink.alphaF());
}

QColor Contrast::withAlpha(QColor color, qreal alpha)
{
    color.setAlphaF(float(alpha));
    return color;
}

QColor Contrast::mixed(const QColor& from, const QColor& to, qreal share)
{
    const auto channel = [share](int a, int b) { return int(std::lround(a + (b - a) * share)); };
    return { channel(from.red(), to.red()), channel(from.green(), to.green()),
        channel(from.blue(), to.blue()) };
}
