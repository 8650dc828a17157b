#include "App/Ui/Warning.h"

#include "App/Ui/Label.h"
#include "App/Ui/Symbols.h"
#include "App/Ui/Theme.h"

#include <QPainter>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace {

constexpr int symbolSide = 14;
constexpr int gap = 5;
constexpr int indent = symbolSide + gap;

}

Warning::Warning(const QString& text, QWidget* parent)
    : QWidget(parent)
    , m_words(new Label(TextRole::caption, &Colors::orangeText, this))
{
    m_words->setWordWrap(true);
    m_words->setAlignment(Qt::AlignLeading | Qt::AlignTop);
    m_words->setText(text);
}

QString Warning::text() const
{
    return m_words->text();
}

int Warning::heightForWidth(int width) const
{
    return m_words->heightForWidth(width - indent);
}

void Warning::resizeEvent(QResizeEvent*)
{
    m_words->setGeometry(
        QStyle::visualRect(layoutDirection(), rect(), rect().adjusted(indent, 0, 0, 0)));
}

void Warning::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRect firstLine(0, 0, symbolSide, Theme::lineHeight(TextRole::caption));
    Symbols::paint(painter, u"exclamationmark.triangle"_s,
        Symbols::centered(symbolSide, QStyle::visualRect(layoutDirection(), rect(), firstLine)),
        Theme::current().colors.orangeText);
}
