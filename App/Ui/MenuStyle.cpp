#include "App/Ui/MenuStyle.h"

#include "App/Ui/Surface.h"
#include "App/Ui/Symbols.h"
#include "App/Ui/TextLine.h"
#include "App/Ui/Theme.h"

#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>

using namespace Qt::StringLiterals;

namespace {

constexpr int menuPadding = 4;
constexpr qreal menuRadius = 8;
constexpr int rowHeight = 24;
constexpr qreal rowRadius = 5;
constexpr int separatorHeight = 9;
constexpr int sidePadding = 10;
constexpr int checkSide = 14;
constexpr int checkInset = 5;
constexpr int checkColumn = 24; // From the row's edge to its words.
constexpr int shortcutGap = 24;
constexpr int tipPadding = 3; // Qt adds one of its own.
constexpr qreal tipRadius = 6;

// Without the marks of mnemonics, of which two stand for one sign.
QString shown(const QString& title)
{
    QString words;
    for (qsizetype at = 0; at < title.size(); ++at) {
        if (title[at] == u'&' && at + 1 < title.size())
            ++at;
        words += title[at];
    }
    return words;
}

int indent(const QStyleOptionMenuItem& item)
{
    return item.menuHasCheckableItems ? checkColumn : sidePadding;
}

void paintPanel(QPainter& painter, const QRectF& box, qreal radius)
{
    const Colors& c = Theme::current().colors;
    Surface::fill(painter, box, radius, c.menu);
    Surface::ring(painter, box, radius, c.buttonRing);
}

void paintItem(QPainter& painter, const QStyleOptionMenuItem& item)
{
    const Colors& c = Theme::current().colors;
    if (item.menuItemType == QStyleOptionMenuItem::Separator) {
        const QRect line(item.rect.left(), item.rect.center().y(), item.rect.width(), 1);
        painter.fillRect(line.adjusted(sidePadding, 0, -sidePadding, 0), c.divider);
        return;
    }
    const bool isEnabled = item.state & QStyle::State_Enabled;
    const bool isChosen = isEnabled && (item.state & QStyle::State_Selected);
    if (isChosen)
        Surface::fill(painter, item.rect, rowRadius, c.accent);
    const QColor ink = !isEnabled ? c.disabledWords : isChosen ? QColor(Qt::white) : c.text;
    const auto mirrored = [&item](const QRect& part) {
        return QStyle::visualRect(item.direction, item.rect, part);
    };
    if (item.checked) {
        const QRect slot(
            item.rect.left() + checkInset, item.rect.top(), checkSide, item.rect.height());
        Symbols::paint(painter, u"ui.check"_s, Symbols::centered(checkSide, mirrored(slot)), ink);
    }
    const QRect words = mirrored(item.rect.adjusted(indent(item), 0, -sidePadding, 0));
    const auto parts = item.text.split(u'\t');
    TextLine::paint(painter, words, Qt::AlignLeading, shown(parts.first()), item.font, ink);
    if (parts.size() > 1)
        TextLine::paint(painter, words, Qt::AlignTrailing, parts.last(), item.font, ink);
}

}

MenuStyle::MenuStyle()
    : QProxyStyle(u"Fusion"_s)
{
}

// The mask leaves pixels at the corners that are covered in part only.
void MenuStyle::polish(QWidget* widget)
{
    QProxyStyle::polish(widget);
    if (qobject_cast<QMenu*>(widget) || widget->inherits("QTipLabel"))
        widget->setAttribute(Qt::WA_TranslucentBackground);
}

int MenuStyle::pixelMetric(
    PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    switch (metric) {
    case PM_MenuHMargin:
    case PM_MenuVMargin:
        return menuPadding;
    case PM_MenuPanelWidth:
        return 0;
    case PM_ToolTipLabelFrameWidth:
        return tipPadding;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

QSize MenuStyle::sizeFromContents(
    ContentsType type, const QStyleOption* option, const QSize& size, const QWidget* widget) const
{
    const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (type != CT_MenuItem || !item)
        return QProxyStyle::sizeFromContents(type, option, size, widget);
    if (item->menuItemType == QStyleOptionMenuItem::Separator)
        return { 1, separatorHeight };
    const auto parts = item->text.split(u'\t');
    int width = indent(*item) + TextLine::width(shown(parts.first()), item->font) + sidePadding;
    if (parts.size() > 1)
        width += shortcutGap + TextLine::width(parts.last(), item->font);
    return { width, rowHeight };
}

void MenuStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
    const QWidget* widget) const
{
    const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (element == CE_MenuItem && item && item->menuItemType != QStyleOptionMenuItem::SubMenu)
        paintItem(*painter, *item);
    else if (element != CE_MenuEmptyArea)
        QProxyStyle::drawControl(element, option, painter, widget);
}

void MenuStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
    QPainter* painter, const QWidget* widget) const
{
    if (element == PE_PanelMenu)
        paintPanel(*painter, option->rect, menuRadius);
    else if (element == PE_PanelTipLabel)
        paintPanel(*painter, option->rect, tipRadius);
    else if (element != PE_FrameMenu)
        QProxyStyle::drawPrimitive(element, option, painter, widget);
}

int MenuStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
    QStyleHintReturn* returned) const
{
    auto* const mask = qstyleoption_cast<QStyleHintReturnMask*>(returned);
    if ((hint != SH_Menu_Mask && hint != SH_ToolTip_Mask) || !option || !mask)
        return QProxyStyle::styleHint(hint, option, widget, returned);
    const qreal radius = hint == SH_Menu_Mask ? menuRadius : tipRadius;
    QPainterPath path;
    path.addRoundedRect(QRectF(option->rect).adjusted(-0.5, -0.5, 0.5, 0.5), radius, radius);
    mask->region = QRegion(path.toFillPolygon().toPolygon());
    return 1;
}
