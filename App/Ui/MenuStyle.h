// How menus and tooltips look; all else is Fusion's, as far as Qt paints it.
#pragma once

#include <QProxyStyle>

class MenuStyle final : public QProxyStyle {
    Q_OBJECT

public:
    MenuStyle();

    void polish(QWidget* widget) override;
    using QProxyStyle::polish;

    int pixelMetric(
        PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
        const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
        const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
        const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
        QStyleHintReturn* returned) const override;
};
