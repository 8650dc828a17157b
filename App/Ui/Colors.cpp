#include "App/Ui/Colors.h"

#include "App/Ui/Contrast.h"

using Contrast::mixed;
using Contrast::over;
using Contrast::withAlpha;

namespace {

QColor toward(const QColor& end, const QColor& from, const auto& isEnough)
{
    constexpr int steps = 100;
    for (int step = 0; step < steps; ++step) {
        const QColor color = mixed(from, end, qreal(step) / steps);
        if (isEnough(color))
            return color;
    }
    return end;
}

// A nearly black accent cannot be darkened visibly.
QColor reaction(const QColor& accent, qreal strength)
{
    constexpr qreal nearlyBlack = 12;
    const bool lighten = Contrast::ratio(accent, Qt::white) > nearlyBlack;
    return mixed(accent, lighten ? Qt::white : Qt::black, strength);
}

void setAccent(Colors& c, bool dark, const QColor& wanted)
{
    const auto carriesWhite
        = [](const QColor& color) { return Contrast::ratio(Qt::white, color) >= Contrast::words; };
    const auto standsOnWindow
        = [&](const QColor& color) { return Contrast::ratio(color, c.window) >= Contrast::words; };
    const QColor opaque(wanted.rgb());
    c.accent = toward(Qt::black, opaque, carriesWhite);
    c.accentHover = reaction(c.accent, 0.08);
    c.accentPressed = reaction(c.accent, 0.18);
    c.mark = dark ? toward(Qt::white, opaque, standsOnWindow) : opaque;
    const QColor ground = over(withAlpha(c.mark, 0.18), c.window);
    const auto standsOnTint
        = [&](const QColor& color) { return Contrast::ratio(color, ground) >= Contrast::words; };
    c.accentText = toward(dark ? Qt::white : Qt::black, c.mark, standsOnTint);
}

void setLightBase(Colors& c)
{
    c.window = QColor(0xF6F6F8);
    c.field = QColor(0xFFFFFF);
    c.menu = QColor(0xFFFFFF);
    c.text = QColor(0x1C1C1F);
    c.secondary = QColor(0x616168);
    c.placeholder = QColor(0x72727A);
    c.accent = QColor(0x0F6BE6);
    c.accentHover = QColor(0x0D62D4);
    c.accentPressed = QColor(0x0B57BE);
    c.mark = QColor(0x0F6BE6);
    c.accentText = QColor(0x0A56C4);
    c.red = QColor(0xE5352B);
    c.redText = QColor(0xB3211A);
    c.green = QColor(0x1F9D46);
    c.blue = QColor(0x1673F0);
    c.purple = QColor(0x9A4FD8);
    c.orange = QColor(0xD46F00);
    c.orangeText = QColor(0xA85400);
    c.button = QColor(0xFFFFFF);
    c.buttonHover = QColor(0xF0F0F3);
    c.buttonPressed = QColor(0xE4E4E8);
    c.segment = QColor(0xFFFFFF);
}

void setDarkBase(Colors& c)
{
    c.window = QColor(0x252528);
    c.field = QColor(0x1A1A1D);
    c.menu = QColor(0x313135);
    c.text = QColor(0xF3F3F5);
    c.secondary = QColor(0xABABB2);
    c.placeholder = QColor(0x8F8F97);
    c.accent = QColor(0x0F6BE6);
    c.accentHover = QColor(0x126DE8);
    c.accentPressed = QColor(0x0B57BE);
    c.mark = QColor(0x3D92FF);
    c.accentText = QColor(0x8AC0FF);
    c.red = QColor(0xFF5A4F);
    c.redText = QColor(0xFF8C84);
    c.green = QColor(0x3BC463);
    c.blue = QColor(0x4C9DFF);
    c.purple = QColor(0xBE82F5);
    c.orange = QColor(0xFF9F38);
    c.orangeText = QColor(0xFFAD52);
    c.button = QColor(0x3B3B3F);
    c.buttonHover = QColor(0x45454A);
    c.buttonPressed = QColor(0x525258);
    c.segment = QColor(0x58585E);
}

// The alpha of one ink, in light and in dark.
class Ink final {
public:
    explicit Ink(bool dark)
        : m_dark(dark)
        , m_color(dark ? Qt::white : Qt::black)
    {
    }

    QColor operator()(qreal light, qreal dark) const { return of(m_color, light, dark); }
    QColor of(const QColor& color, qreal light, qreal dark) const
    {
        return withAlpha(color, m_dark ? dark : light);
    }

private:
    bool m_dark;
    QColor m_color;
};

void setControlInks(Colors& c, const Ink& ink)
{
    c.buttonRing = ink(.22, .17);
    c.buttonShade = ink.of(Qt::black, .09, .28);
    c.fieldRing = ink(.26, .24);
    c.redTint = ink.of(c.red, .12, .17);
    c.redTintHover = ink.of(c.red, .16, .22);
    c.redTintPressed = ink.of(c.red, .20, .27);
    c.redRing = withAlpha(c.redText, .34);
    c.disabledFill = ink(.035, .06);
    c.disabledRing = ink(.12, .09);
    c.disabledWords = ink(.34, .36);
    c.disabledProminentFill = ink(.07, .09);
    c.disabledProminentWords = ink(.36, .38);
    c.segmentedTrack = ink(.07, .09);
    c.segmentShade = withAlpha(Qt::black, .14);
    c.switchOff = ink(.20, .24);
    c.barTrack = ink(.10, .14);
    c.thumb = ink(.30, .32);
    c.thumbHover = ink(.46, .50);
    c.focusRing = withAlpha(c.mark, .40);
}

void setSurfaceInks(Colors& c, const Ink& ink)
{
    c.divider = ink(.13, .15);
    c.tabHover = ink(.05, .07);
    c.tabPressed = ink(.10, .13);
    c.tabSelected = withAlpha(c.mark, .18);
    c.card = withAlpha(c.mark, .10);
    c.resultArea = withAlpha(c.secondary, .08);
    c.tile = withAlpha(c.secondary, .12);
    c.tileHover = withAlpha(c.secondary, .18);
    c.tileEdit = withAlpha(c.secondary, .22);
    c.tilePressed = withAlpha(c.secondary, .28);
    c.ringTrack = withAlpha(c.secondary, .20);
    c.editorOutline = withAlpha(c.secondary, .30);
}

void setPopoverInks(Colors& c, bool dark)
{
    c.popoverEdge = withAlpha(Qt::black, dark ? .75 : .16);
    if (dark) {
        c.popoverInnerEdge = withAlpha(Qt::white, .16);
        c.popoverShadow = { Colors::Shadow { 14, 34, withAlpha(Qt::black, .55) },
            Colors::Shadow { 3, 8, withAlpha(Qt::black, .35) } };
    } else {
        const QColor shade(0x14161C);
        c.popoverShadow = { Colors::Shadow { 12, 32, withAlpha(shade, .18) },
            Colors::Shadow { 2, 6, withAlpha(shade, .08) } };
    }
}

}

Colors Colors::make(bool dark, const QColor& accent)
{
    Colors c;
    if (dark)
        setDarkBase(c);
    else
        setLightBase(c);
    if (accent.isValid())
        setAccent(c, dark, accent);
    const Ink ink(dark);
    setControlInks(c, ink);
    setSurfaceInks(c, ink);
    setPopoverInks(c, dark);
    return c;
}
