#include "App/Ui/Segment.h"

#include "App/Ui/Accessibility.h"
#include "App/Ui/Surface.h"
#include "App/Ui/TextLine.h"
#include "App/Ui/Theme.h"

#include <QPainter>

namespace {

constexpr int inset = 2;
constexpr int padding = 12;
constexpr qreal radius = 5;

}

Segment::Segment(const QString& title, QWidget* parent)
    : QAbstractButton(parent)
{
    Accessibility::install();
    setText(title);
    setCheckable(true);
    setAutoExclusive(true);
    setFocusPolicy(Qt::NoFocus);
}

QSize Segment::sizeHint() const
{
    const QFont font = Theme::current().font(TextRole::button);
    return { TextLine::width(text(), font) + 2 * padding, 24 };
}

void Segment::paintEvent(QPaintEvent*)
{
    const Colors& c = Theme::current().colors;
    QPainter painter(this);
    if (isChecked()) {
        const QRectF chosen = QRectF(rect()).adjusted(0, inset, 0, -inset);
        if (isEnabled())
            Surface::shade(painter, chosen, radius, c.segmentShade, 2);
        Surface::fill(painter, chosen, radius, isEnabled() ? c.segment : c.disabledFill);
    }
    TextLine::paint(painter, rect(), Qt::AlignHCenter, text(),
        Theme::current().font(TextRole::button), isEnabled() ? c.text : c.disabledWords);
}
