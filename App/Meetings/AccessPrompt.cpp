#include "App/Meetings/AccessPrompt.h"

#include "App/Ui/Button.h"
#include "App/Ui/Label.h"
#include "App/Ui/TextLine.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int spacing = 8;
// A text of several lines is narrower than the view, so that its lines are about equal.
constexpr int widestLine = 296;

}

AccessPrompt::AccessPrompt(const QString& text, const QString& title, QWidget* parent)
    : ArrangedWidget(parent)
    , m_text(new Label(TextRole::callout, &Colors::secondary, this))
    , m_button(new Button(Button::Kind::normal, title, this))
{
    m_text->setObjectName(u"text"_s);
    m_text->setText(text);
    m_text->setWordWrap(true);
    m_text->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
}

void AccessPrompt::arrange()
{
    const bool isOneLine = TextLine::width(m_text->text(), m_text->font()) <= width();
    const int textWidth = isOneLine ? width() : widestLine;
    const int textHeight = m_text->heightForWidth(textWidth);
    m_text->setGeometry((width() - textWidth) / 2, 0, textWidth, textHeight);
    const auto button = m_button->boxSize();
    m_button->placeBox({ { (width() - button.width()) / 2, textHeight + spacing }, button });
}
