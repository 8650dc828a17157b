#include "App/Ui/LazyCells.h"

#include "App/Ui/Accessibility.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QEvent>
#include <QMultiHash>

#include <algorithm>
#include <utility>

namespace {

// Tells of all cells; those out of sight get their widgets when somebody asks for them.
class AccessibleCells final : public QAccessibleWidget {
public:
    explicit AccessibleCells(QWidget* list)
        : QAccessibleWidget(list, QAccessible::List)
    {
    }

    int childCount() const override { return int(list().count()); }

    QAccessibleInterface* child(int index) const override
    {
        if (index < 0 || index >= list().count())
            return nullptr;
        return QAccessible::queryAccessibleInterface(&list().cell(index));
    }

    int indexOfChild(const QAccessibleInterface* child) const override
    {
        const auto& cells = list().cells();
        const auto found = std::ranges::find(cells, child ? child->object() : nullptr);
        return child && found != cells.cend() ? int(found - cells.cbegin()) : -1;
    }

private:
    LazyCells& list() const { return *static_cast<LazyCells*>(widget()); }
};

bool hasKeyboard(const QWidget* cell)
{
    return cell && (cell->hasFocus() || cell->isAncestorOf(QApplication::focusWidget()));
}

}

LazyCells::LazyCells()
{
    Accessibility::describe(
        staticMetaObject, [](QWidget* widget) { return new AccessibleCells(widget); });
    connect(qApp, &QApplication::focusChanged, this,
        [this](const QWidget*, const QWidget* now) { tellWhere(now); });
}

// The cells go later, and take the keyboard from one another on the way.
LazyCells::~LazyCells()
{
    disconnect(qApp, nullptr, this, nullptr);
}

QWidget& LazyCells::cell(qsizetype index)
{
    if (!m_cells[index]) {
        m_cells[index] = makeCell();
        fillCell(*m_cells[index], index);
        m_cells[index]->setGeometry(placeOf(index));
        m_cells[index]->show();
    }
    return *m_cells[index];
}

qsizetype LazyCells::current() const
{
    const auto found = std::ranges::find_if(m_cells, hasKeyboard);
    return found == m_cells.cend() ? -1 : found - m_cells.cbegin();
}

void LazyCells::focusCell(qsizetype index, Qt::FocusReason reason)
{
    controlOf(cell(index))->setFocus(reason);
}

void LazyCells::setKeys(const QStringList& keys)
{
    m_cells = cellsFor(keys);
    m_keys = keys;
    m_first = -1;
    m_last = -1;
    for (qsizetype i = 0; i < keys.size(); ++i) {
        if (!hasControl(i))
            continue;
        m_first = m_first < 0 ? i : m_first;
        m_last = i;
    }
    fillAll();
    showWhatIsNeeded();
}

QList<QWidget*> LazyCells::cellsFor(const QStringList& keys)
{
    QMultiHash<QString, QWidget*> known;
    known.reserve(m_cells.size());
    // Of equal ones the last that went in comes out first.
    for (auto i = m_cells.size() - 1; i >= 0; --i) {
        if (m_cells[i])
            known.insert(m_keys[i], m_cells[i]);
    }
    QList<QWidget*> cells;
    cells.reserve(keys.size());
    for (const auto& key : keys)
        cells << known.take(key);
    // The keyboard would go on to something else.
    if (std::ranges::any_of(known, hasKeyboard))
        setFocus();
    qDeleteAll(known);
    return cells;
}

void LazyCells::fillAll()
{
    for (qsizetype i = 0; i < m_cells.size(); ++i) {
        if (!m_cells[i])
            continue;
        fillCell(*m_cells[i], i);
        m_cells[i]->setGeometry(placeOf(i));
    }
}

bool LazyCells::isNeeded(qsizetype index) const
{
    const auto place = placeOf(index).translated(0, y());
    const bool isSeen
        = parentWidget() && place.top() < parentWidget()->height() && place.bottom() >= 0;
    return isSeen || index == m_first || index == m_last || hasKeyboard(m_cells[index]);
}

void LazyCells::showWhatIsNeeded()
{
    for (qsizetype i = 0; i < m_cells.size(); ++i) {
        if (isNeeded(i)) {
            cell(i);
        } else if (auto* const cell = std::exchange(m_cells[i], nullptr)) {
            cell->hide();
            cell->deleteLater(); // It may be the one that scrolls.
        }
    }
    orderControls();
}

// Neighbours for the eye are neighbours for the keyboard too.
void LazyCells::orderControls()
{
    QWidget* last = this;
    for (auto* const cell : std::as_const(m_cells)) {
        auto* const control = cell ? controlOf(*cell) : nullptr;
        if (!control)
            continue;
        setTabOrder(last, control);
        last = control;
    }
}

void LazyCells::tellWhere(const QWidget* focused)
{
    if (focused && isAncestorOf(focused))
        Q_EMIT reached(placeOf(current()));
}

// The next one may be out of sight.
bool LazyCells::focusNextPrevChild(bool next)
{
    const qsizetype step = next ? 1 : -1;
    if (const auto from = current(); from >= 0) {
        for (auto i = from + step; i >= 0 && i < m_cells.size(); i += step) {
            if (!hasControl(i))
                continue;
            focusCell(i, next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            return true;
        }
    }
    return QWidget::focusNextPrevChild(next);
}

bool LazyCells::event(QEvent* event)
{
    if (event->type() == QEvent::ParentChange && parentWidget())
        parentWidget()->installEventFilter(this);
    if (event->type() == QEvent::LayoutDirectionChange)
        fillAll();
    return QWidget::event(event);
}

bool LazyCells::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        showWhatIsNeeded();
    return false;
}

void LazyCells::moveEvent(QMoveEvent*)
{
    showWhatIsNeeded();
}

void LazyCells::resizeEvent(QResizeEvent*)
{
    fillAll();
    showWhatIsNeeded();
}
