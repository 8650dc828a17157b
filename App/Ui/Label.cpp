#include "App/Ui/Label.h"

#include "App/Ui/TextLine.h"
#include "App/Ui/Theme.h"

#include <QEvent>
#include <QPainter>

Label::Label(TextRole role, QColor Colors::*color, QWidget* parent)
    : QLabel(parent)
    , m_role(role)
    , m_color(color)
{
    setTextFormat(Qt::PlainText);
    setFont(Theme::familylessFont(role));
    adoptColor();
}

void Label::setRole(TextRole role)
{
    if (m_role == role)
        return;
    m_role = role;
    setFont(Theme::familylessFont(role));
}

void Label::setColor(QColor Colors::*color)
{
    if (m_color == color)
        return;
    m_color = color;
    adoptColor();
}

void Label::setElided(bool elided)
{
    if (m_elided == elided)
        return;
    m_elided = elided;
    update();
}

void Label::paintEvent(QPaintEvent* event)
{
    if (!m_elided) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    TextLine::paint(
        painter, contentsRect(), alignment(), text(), font(), palette().color(foregroundRole()));
}

void Label::changeEvent(QEvent* event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        adoptColor();
}

void Label::adoptColor()
{
    const QColor color = Theme::current().colors.*m_color;
    // Our own change comes back here as an event.
    if (palette().color(QPalette::WindowText) == color)
        return;
    QPalette inked;
    inked.setColor(QPalette::WindowText, color);
    setPalette(inked);
}
