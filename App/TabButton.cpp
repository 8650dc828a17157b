#include "App/TabButton.h"

#include "App/Ui/Accessibility.h"
#include "App/Ui/AccessibleButton.h"
#include "App/Ui/Corners.h"
#include "App/Ui/Symbols.h"
#include "App/Ui/TextLine.h"
#include "App/Ui/Theme.h"

#include <QFocusEvent>
#include <QPainter>

#include <utility>

namespace {

constexpr int symbolSize = 15;
constexpr qreal radius = 7;
constexpr int padding = 6;
constexpr int symbolSlot = 18;
constexpr int spacing = 2;

class AccessibleTab final : public AccessibleButton {
public:
    using AccessibleButton::AccessibleButton;

    QAccessible::Role role() const override
    {
        return isTab() ? QAccessible::PageTab : AccessibleButton::role();
    }

    QAccessible::State state() const override
    {
        auto state = AccessibleButton::state();
        if (isTab()) {
            state.checkable = state.checked = false;
            state.selectable = true;
            state.selected = button()->isChecked();
        }
        return state;
    }

private:
    bool isTab() const { return static_cast<TabButton*>(button())->kind() == TabButton::Kind::tab; }
};

}

TabButton::TabButton(Kind kind, const QString& symbol, const QString& title, QWidget* parent)
    : QAbstractButton(parent)
    , m_kind(kind)
    , m_symbol(symbol)
{
    Accessibility::install();
    Accessibility::describe(staticMetaObject,
        [](QWidget* widget) { return new AccessibleTab(static_cast<TabButton*>(widget)); });
    setText(title);
    setCheckable(true);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
}

void TabButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(Corners::continuous(rect(), radius), ground());

    const auto& theme = Theme::current();
    const auto& ink = isChecked() ? theme.colors.accentText : theme.colors.text;
    const int side = Symbols::boxSize(symbolSize);
    if (m_kind == Kind::toggle) {
        Symbols::paint(painter, m_symbol, Symbols::centered(side, rect()), ink);
        return;
    }
    const QRect symbol(0, padding, width(), symbolSlot);
    const QRect title(
        0, symbol.bottom() + 1 + spacing, width(), Theme::lineHeight(TextRole::tabTitle));
    Symbols::paint(painter, m_symbol, Symbols::centered(side, symbol), ink);
    TextLine::paint(painter, title, Qt::AlignHCenter, text(), theme.font(TextRole::tabTitle), ink);
}

QColor TabButton::ground() const
{
    const auto& colors = Theme::current().colors;
    if (isChecked())
        return colors.tabSelected;
    if (isDown())
        return colors.tabPressed;
    return underMouse() ? colors.tabHover : QColor(Qt::transparent);
}

void TabButton::focusInEvent(QFocusEvent* event)
{
    QAbstractButton::focusInEvent(event);
    // A window or menu in between does not change how the focus came here.
    if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason)
        m_byKeyboard = event->reason() != Qt::MouseFocusReason;
    setShowsFocus(m_byKeyboard);
}

void TabButton::focusOutEvent(QFocusEvent* event)
{
    QAbstractButton::focusOutEvent(event);
    setShowsFocus(false);
}

void TabButton::setShowsFocus(bool shows)
{
    if (std::exchange(m_showsFocus, shows) != shows)
        parentWidget()->update(geometry().adjusted(-3, -3, 3, 3));
}
