#include "App/Ui/Theme.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPalette>
#include <QToolTip>
#include <QWidget>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

struct Type {
    int size;
    int line;
    int weight;
};

Type typeOf(TextRole role)
{
    switch (role) {
    case TextRole::tabTitle:
        return { 10, 12, 400 };
    case TextRole::caption:
    case TextRole::widgetRow:
        return { 11, 14, 400 };
    case TextRole::captionHeading:
        return { 11, 14, 600 };
    case TextRole::callout:
        return { 12, 15, 400 };
    case TextRole::body:
        return { 13, 16, 400 };
    case TextRole::headline:
        return { 13, 16, 600 };
    case TextRole::button:
        return { 12, 15, 500 };
    case TextRole::smallButton:
        return { 11, 14, 500 };
    case TextRole::editor:
        return { 12, 17, 400 };
    case TextRole::ringTime:
        return { 40, 48, 300 };
    case TextRole::statusTitle:
        return { 13, 16, 500 };
    }
    Q_UNREACHABLE();
}

QString familyFor(const QString& wanted)
{
    if (!wanted.isEmpty())
        return wanted;
    const QString own = u"Inter"_s;
    if (QFontDatabase::hasFamily(own))
        return own;
    return QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
}

// The mark is in it as the link colour, so that every change of the theme is a change of the
// palette.
QPalette paletteOf(const Colors& c)
{
    QPalette palette(c.text, c.button, c.segment, c.buttonRing, c.placeholder, c.text, c.text,
        c.field, c.window);
    palette.setColor(QPalette::PlaceholderText, c.placeholder);
    palette.setColor(QPalette::Highlight, c.accent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, c.mark);
    palette.setColor(QPalette::LinkVisited, c.mark);
    palette.setColor(QPalette::ToolTipBase, c.menu);
    palette.setColor(QPalette::ToolTipText, c.text);
    for (const auto role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText })
        palette.setColor(QPalette::Disabled, role, c.disabledWords);
    return palette;
}

// No change of the palette or the font tells of icons.
void repaintAll()
{
    for (QWidget* widget : QApplication::allWidgets())
        widget->update();
}

std::optional<Theme>& active()
{
    static std::optional<Theme> theme;
    return theme;
}

}

const Theme& Theme::current()
{
    if (!active())
        active().emplace(ThemeChoice {});
    return *active();
}

void Theme::apply(const ThemeChoice& choice)
{
    if (active() && active()->m_choice == choice
        && QApplication::palette() == paletteOf(active()->colors))
        return;
    const bool keepsIcons = !active() || active()->m_choice.iconTheme == choice.iconTheme;
    active().emplace(choice);
    if (!keepsIcons)
        repaintAll();
    QApplication::setPalette(paletteOf(active()->colors));
    QApplication::setFont(active()->font(TextRole::body));
    QToolTip::setPalette(QApplication::palette());
    QToolTip::setFont(active()->font(TextRole::caption));
}

Theme::Theme(const ThemeChoice& choice)
    : colors(Colors::make(choice.dark, choice.accent))
    , m_choice(choice)
    , m_family(familyFor(choice.fontFamily))
{
}

QFont Theme::font(TextRole role) const
{
    QFont font = familylessFont(role);
    font.setFamily(m_family);
    return font;
}

QFont Theme::familylessFont(TextRole role)
{
    const Type type = typeOf(role);
    QFont font;
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(type.size);
    font.setWeight(QFont::Weight(type.weight));
    // Hinted widths change with the scale of the screen.
    font.setHintingPreference(QFont::PreferNoHinting);
    // Only times and the program's name: they look the same without the font's rules, of which
    // copies would stay in memory.
    if (role == TextRole::statusTitle || role == TextRole::ringTime)
        font.setStyleStrategy(QFont::PreferNoShaping);
    return font;
}

int Theme::lineHeight(TextRole role)
{
    return typeOf(role).line;
}
