#include "App/Ui/TextField.h"

#include "App/Ui/ControlBox.h"
#include "App/Ui/Interaction.h"
#include "App/Ui/Surface.h"
#include "App/Ui/Theme.h"

#include <QPainter>

#include <limits>

namespace {

constexpr int boxHeight = 24;
constexpr int usualWidth = 150;
constexpr int padding = 8;
constexpr int ownPadding = 2; // QLineEdit adds it by itself.
constexpr qreal radius = 6;

}

TextField::TextField(const QString& placeholder, QWidget* parent)
    : QLineEdit(parent)
    , m_interaction(new Interaction(this, Interaction::Ring::always))
{
    setPlaceholderText(placeholder);
    setAccessibleName(placeholder);
    setFrame(false);
    setMaxLength(std::numeric_limits<int>::max()); // What is shown is never less than what is set.
    const int side = ControlBox::margin + padding - ownPadding;
    setTextMargins(side, ControlBox::margin, side, ControlBox::margin);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFont(Theme::familylessFont(TextRole::body));
    // The rounded field is ours to paint; all other roles follow the application.
    QPalette clear;
    clear.setColor(QPalette::Base, Qt::transparent);
    setPalette(clear);
}

QRect TextField::box() const
{
    return ControlBox::of(*this);
}

QSize TextField::sizeHint() const
{
    return ControlBox::outer({ usualWidth, boxHeight });
}

void TextField::placeBox(const QRect& box)
{
    ControlBox::place(*this, box);
}

void TextField::paintEvent(QPaintEvent* event)
{
    const Colors& c = Theme::current().colors;
    QPainter painter(this);
    Surface::fill(painter, box(), radius, isEnabled() ? c.field : c.disabledFill);
    if (m_interaction->showsFocus()) {
        Surface::focusRing(painter, box(), radius);
        Surface::ring(painter, box(), radius, c.mark, 1);
    } else {
        Surface::ring(painter, box(), radius, isEnabled() ? c.fieldRing : c.disabledRing);
    }
    painter.end();
    QLineEdit::paintEvent(event);
}
