#include "App/Ui/Picker.h"

#include "App/Ui/Accessibility.h"
#include "App/Ui/ControlBox.h"
#include "App/Ui/Interaction.h"
#include "App/Ui/Surface.h"
#include "App/Ui/Symbols.h"
#include "App/Ui/TextLine.h"
#include "App/Ui/Theme.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize usualSize(160, 24);
constexpr int padding = 10;
constexpr int chevronSide = 14;
constexpr int chevronEnd = 5;
constexpr qreal chevronStroke = 2;
constexpr qreal radius = 6;

// In one line of a menu, which would be as wide as the longest title. An ampersand is no mnemonic,
// and nothing is to stand where menus have their shortcuts.
QString entryOf(const QString& title)
{
    constexpr qsizetype longest = 100;
    QString entry = title.left(longest).simplified();
    if (title.size() > longest)
        entry += u'…';
    return entry.replace(u'&', u"&&"_s);
}

}

Picker::Picker(const QString& name, QWidget* parent)
    : QAbstractButton(parent)
    , m_interaction(new Interaction(this))
{
    Accessibility::install();
    setAccessibleName(name);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, this, &Picker::openMenu);
    connect(&m_menu, &QMenu::aboutToHide, this, qOverload<>(&QWidget::update));
    connect(&m_menu, &QMenu::triggered, this,
        [this](QAction* action) { choose(int(m_menu.actions().indexOf(action))); });
}

QRect Picker::box() const
{
    return ControlBox::of(*this);
}

QSize Picker::sizeHint() const
{
    return ControlBox::outer(usualSize);
}

void Picker::setTitles(const QStringList& titles)
{
    if (m_titles == titles)
        return;
    m_titles = titles;
    m_menu.hide(); // It showed the old ones.
    m_menu.clear();
    const int index = m_current;
    m_current = -1;
    setCurrent(index);
}

void Picker::setCurrent(int index)
{
    m_current = index >= 0 && index < m_titles.size() ? index : -1;
    showTitle();
}

void Picker::setPlaceholder(const QString& text)
{
    m_placeholder = text;
    showTitle();
}

void Picker::placeBox(const QRect& box)
{
    ControlBox::place(*this, box);
}

void Picker::paintEvent(QPaintEvent*)
{
    const Colors& c = Theme::current().colors;
    QPainter painter(this);
    if (isEnabled())
        Surface::shade(painter, box(), radius, c.buttonShade);
    Surface::fill(painter, box(), radius, fillColor());
    Surface::ring(painter, box(), radius, isEnabled() ? c.buttonRing : c.disabledRing);
    const QColor ink = isEnabled() ? c.text : c.disabledWords;
    QRect slot = box().adjusted(0, 0, -chevronEnd, 0);
    slot.setLeft(slot.right() + 1 - chevronSide);
    const QRect words = box().adjusted(padding, 0, -chevronEnd - chevronSide, 0);
    const auto mirrored
        = [this](const QRect& part) { return QStyle::visualRect(layoutDirection(), box(), part); };
    TextLine::paint(painter, mirrored(words), Qt::AlignLeading, text(),
        Theme::current().font(TextRole::callout), ink);
    Symbols::paint(painter, u"ui.chevron.up.down"_s, Symbols::centered(chevronSide, mirrored(slot)),
        ink, chevronStroke);
    if (m_interaction->showsFocus())
        Surface::focusRing(painter, box(), radius);
}

bool Picker::hitButton(const QPoint& position) const
{
    return box().contains(position);
}

void Picker::keyPressEvent(QKeyEvent* event)
{
    const int key = event->key();
    if (key == Qt::Key_Up || key == Qt::Key_Down)
        openMenu();
    else
        QAbstractButton::keyPressEvent(event);
}

void Picker::openMenu()
{
    if (m_titles.isEmpty())
        return;
    fillMenu();
    m_menu.setLayoutDirection(layoutDirection());
    m_menu.setFont(Theme::familylessFont(TextRole::callout));
    m_menu.setMinimumWidth(box().width());
    QAction* chosenAction = m_menu.actions().value(m_current);
    m_menu.setActiveAction(chosenAction);
    // Not exec(): that would hold up the event loop of the whole program.
    m_menu.popup(mapToGlobal(box().bottomLeft() + QPoint(0, 2)));
}

void Picker::choose(int index)
{
    const bool isNew = index != m_current;
    setCurrent(index);
    if (isNew)
        Q_EMIT chosen(index);
}

// Only now: the titles may be many, and most of them are never asked for.
void Picker::fillMenu()
{
    if (m_menu.isEmpty()) {
        for (const auto& title : m_titles)
            m_menu.addAction(entryOf(title))->setCheckable(true);
    }
    const QList<QAction*> actions = m_menu.actions();
    for (int index = 0; index < actions.size(); ++index)
        actions[index]->setChecked(index == m_current);
}

void Picker::showTitle()
{
    setText(m_titles.value(m_current, m_placeholder));
}

QColor Picker::fillColor() const
{
    const Colors& c = Theme::current().colors;
    if (!isEnabled())
        return c.disabledFill;
    if (isDown() || m_menu.isVisible())
        return c.buttonPressed;
    return m_interaction->isHovered() ? c.buttonHover : c.button;
}
