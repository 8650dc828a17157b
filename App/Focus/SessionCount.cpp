#include "App/Focus/SessionCount.h"

#include "App/Ui/Accessibility.h"
#include "App/Ui/DigitText.h"
#include "App/Ui/Symbols.h"
#include "App/Ui/Theme.h"

#include <QAccessibleWidget>
#include <QPainter>
#include <QStyle>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int gap = 6;

}

SessionCount::SessionCount(QWidget* parent)
    : QWidget(parent)
{
    Accessibility::describe(staticMetaObject,
        [](QWidget* widget) { return new QAccessibleWidget(widget, QAccessible::StaticText); });
}

void SessionCount::setCount(qint64 sessions)
{
    const auto words = QString::asprintf("%lld sessions", sessions);
    if (words == m_words)
        return;
    m_words = words;
    setAccessibleName(words);
    update();
}

void SessionCount::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const auto& theme = Theme::current();
    const auto font = theme.font(TextRole::callout);
    const DigitText text(font);
    const int width = static_cast<int>(std::ceil(text.width(m_words)));
    const int side = Symbols::boxSize(font.pixelSize());
    const auto mirrored
        = [this](const QRect& part) { return QStyle::visualRect(layoutDirection(), rect(), part); };

    const QRect words(this->width() - width, 0, width, height());
    const QRect symbol(words.left() - gap - side, 0, side, height());
    text.paint(painter, mirrored(words), m_words, theme.colors.secondary);
    Symbols::paint(painter, u"checkmark.circle"_s, Symbols::centered(side, mirrored(symbol)),
        theme.colors.secondary);
}
