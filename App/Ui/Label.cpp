#include "App/Ui/Label.h"

#include "App/Ui/TextLine.h"
#include "App/Ui/Theme.h"
#include "App/Ui/WrappedLines.h"

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

void Label::setMostLines(int lines)
{
    m_mostLines = lines;
    update();
}

int Label::heightForWidth(int width) const
{
    if (m_mostLines == 0)
        return QLabel::heightForWidth(width);
    return int(WrappedLines::of(text(), font(), width, m_mostLines).size())
        * Theme::lineHeight(m_role);
}

void Label::paintEvent(QPaintEvent* event)
{
    if (!m_elided && m_mostLines == 0) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    if (m_mostLines > 0) {
        paintLines(painter);
        return;
    }
    TextLine::paint(
        painter, contentsRect(), alignment(), text(), font(), palette().color(foregroundRole()));
}

void Label::paintLines(QPainter& painter) const
{
    QRect line(0, 0, width(), Theme::lineHeight(m_role));
    for (const auto& words : WrappedLines::of(text(), font(), width(), m_mostLines)) {
        TextLine::paint(
            painter, line, alignment(), words, font(), palette().color(foregroundRole()));
        line.translate(0, line.height());
    }
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
