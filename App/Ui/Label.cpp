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
    adoptTheme();
}

void Label::setRole(TextRole role)
{
    if (m_role == role)
        return;
    m_role = role;
    adoptTheme();
}

void Label::setColor(QColor Colors::*color)
{
    if (m_color == color)
        return;
    m_color = color;
    adoptTheme();
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

bool Label::event(QEvent* event)
{
    const bool handled = QLabel::event(event);
    if (event->type() == QEvent::ApplicationFontChange
        || event->type() == QEvent::ApplicationPaletteChange)
        adoptTheme();
    return handled;
}

void Label::adoptTheme()
{
    setFont(Theme::current().font(m_role));
    QPalette inked;
    inked.setColor(QPalette::WindowText, Theme::current().colors.*m_color);
    setPalette(inked);
}
