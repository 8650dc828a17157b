#include "App/Meetings/EventList.h"

#include "App/Meetings/EventRow.h"
#include "App/Ui/Accessibility.h"
#include "App/Ui/Button.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QEvent>
#include <QMultiHash>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int spacing = 6;
constexpr int pitch = EventRow::height + spacing;

// Tells of all events; those out of sight get their rows when somebody asks for them.
class AccessibleEvents final : public QAccessibleWidget {
public:
    explicit AccessibleEvents(QWidget* list)
        : QAccessibleWidget(list, QAccessible::List)
    {
    }

    int childCount() const override { return int(list().count()); }

    QAccessibleInterface* child(int index) const override
    {
        if (index < 0 || index >= list().count())
            return nullptr;
        return QAccessible::queryAccessibleInterface(&list().row(index));
    }

    int indexOfChild(const QAccessibleInterface* child) const override
    {
        const auto& rows = list().rows();
        const auto found = std::ranges::find(rows, child ? child->object() : nullptr);
        return child && found != rows.cend() ? int(found - rows.cbegin()) : -1;
    }

private:
    EventList& list() const { return *static_cast<EventList*>(widget()); }
};

bool hasKeyboard(const EventRow* row)
{
    return row && (row->hasFocus() || row->isAncestorOf(QApplication::focusWidget()));
}

}

EventList::EventList(int padding)
    : m_padding(padding)
{
    Accessibility::describe(
        staticMetaObject, [](QWidget* widget) { return new AccessibleEvents(widget); });
    setAccessibleName(u"Today"_s);
}

void EventList::setLines(const QList<MeetingLine>& lines)
{
    if (m_lines == lines)
        return;
    m_rows = rowsFor(lines);
    m_lines = lines;
    const auto hasLink = [](const MeetingLine& line) { return line.link.has_value(); };
    const auto first = std::find_if(m_lines.cbegin(), m_lines.cend(), hasLink);
    const auto last = std::find_if(m_lines.crbegin(), m_lines.crend(), hasLink);
    m_firstLink = first == m_lines.cend() ? -1 : first - m_lines.cbegin();
    m_lastLink = m_lines.crend() - last - 1;
    for (qsizetype i = 0; i < m_rows.size(); ++i) {
        if (m_rows[i])
            place(i);
    }
    setFixedHeight(int(m_lines.size()) * pitch - spacing + m_padding);
    showWhatIsNeeded();
}

QList<EventRow*> EventList::rowsFor(const QList<MeetingLine>& lines)
{
    QMultiHash<QString, EventRow*> known;
    known.reserve(m_rows.size());
    // Of equal ones the last that went in comes out first.
    for (auto i = m_rows.size() - 1; i >= 0; --i)
        known.insert(m_lines[i].id, m_rows[i]);
    QList<EventRow*> rows;
    rows.reserve(lines.size());
    for (const auto& line : lines)
        rows << known.take(line.id);
    // The keyboard would go on to another meeting.
    if (std::ranges::any_of(known, hasKeyboard))
        setFocus();
    qDeleteAll(known);
    return rows;
}

EventRow& EventList::row(qsizetype index)
{
    if (!m_rows[index]) {
        m_rows[index] = makeRow();
        place(index);
        m_rows[index]->show();
    }
    return *m_rows[index];
}

EventRow* EventList::makeRow()
{
    auto* const row = new EventRow(m_padding, this);
    connect(row, &EventRow::joined, this, &EventList::joined);
    connect(row, &EventRow::reached, this, [=, this] { Q_EMIT reached(row->geometry()); });
    return row;
}

void EventList::place(qsizetype index)
{
    m_rows[index]->setLine(m_lines[index]);
    m_rows[index]->setGeometry(0, int(index) * pitch, width(), EventRow::height);
}

bool EventList::isNeeded(qsizetype index) const
{
    const auto top = y() + int(index) * pitch;
    const bool isSeen
        = parentWidget() && top < parentWidget()->height() && top + EventRow::height > 0;
    return isSeen || index == m_firstLink || index == m_lastLink || hasKeyboard(m_rows[index]);
}

void EventList::showWhatIsNeeded()
{
    for (qsizetype i = 0; i < m_rows.size(); ++i) {
        if (isNeeded(i)) {
            row(i);
        } else if (auto* const row = std::exchange(m_rows[i], nullptr)) {
            row->hide();
            row->deleteLater(); // It may be the one that scrolls.
        }
    }
    orderButtons();
}

// Neighbours for the eye are neighbours for the keyboard too.
void EventList::orderButtons()
{
    QWidget* last = this;
    for (auto* const row : std::as_const(m_rows)) {
        if (row && row->join()) {
            setTabOrder(last, row->join());
            last = row->join();
        }
    }
}

// The next meeting may be out of sight.
bool EventList::focusNextPrevChild(bool next)
{
    const auto current = std::ranges::find_if(std::as_const(m_rows), hasKeyboard) - m_rows.cbegin();
    const qsizetype step = next ? 1 : -1;
    if (current < m_rows.size()) {
        for (auto i = current + step; i >= 0 && i < m_lines.size(); i += step) {
            if (!m_lines[i].link)
                continue;
            row(i).join()->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            return true;
        }
    }
    return QWidget::focusNextPrevChild(next);
}

bool EventList::event(QEvent* event)
{
    if (event->type() == QEvent::ParentChange && parentWidget())
        parentWidget()->installEventFilter(this);
    return QWidget::event(event);
}

bool EventList::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        showWhatIsNeeded();
    return false;
}

void EventList::moveEvent(QMoveEvent*)
{
    showWhatIsNeeded();
}

void EventList::resizeEvent(QResizeEvent*)
{
    for (qsizetype i = 0; i < m_rows.size(); ++i) {
        if (m_rows[i])
            place(i);
    }
    showWhatIsNeeded();
}
