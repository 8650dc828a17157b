#include "App/Meetings/EventList.h"

#include "App/Meetings/EventRow.h"
#include "App/Ui/Accessibility.h"
#include "App/Ui/Button.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QMultiHash>

#include <algorithm>
#include <ranges>

using namespace Qt::StringLiterals;

static constexpr int spacing = 6;

EventList::EventList(int padding)
    : m_padding(padding)
{
    Accessibility::describe(staticMetaObject,
        [](QWidget* widget) { return new QAccessibleWidget(widget, QAccessible::List); });
    setAccessibleName(u"Today"_s);
}

void EventList::setLines(const QList<MeetingLine>& lines)
{
    const auto rows = rowsFor(lines);
    for (qsizetype i = 0; i < rows.size(); ++i)
        rows[i]->setLine(lines[i]);
    order(rows);
}

QList<EventRow*> EventList::rowsFor(const QList<MeetingLine>& lines)
{
    QMultiHash<QString, EventRow*> known;
    known.reserve(m_rows.size());
    // Of equal ones the last that went in comes out first.
    for (auto* const row : m_rows | std::views::reverse)
        known.insert(row->line().id, row);
    QList<EventRow*> rows;
    rows.reserve(lines.size());
    for (const auto& line : lines) {
        auto* const row = known.take(line.id);
        rows << (row ? row : makeRow());
    }
    // The keyboard would go on to another meeting.
    if (std::ranges::any_of(
            known, [](EventRow* row) { return row->isAncestorOf(qApp->focusWidget()); }))
        setFocus();
    qDeleteAll(known);
    return rows;
}

EventRow* EventList::makeRow()
{
    auto* const row = new EventRow(m_padding, this);
    connect(row, &EventRow::joined, this, &EventList::joined);
    connect(row, &EventRow::reached, this, [=, this] { Q_EMIT reached(row->geometry()); });
    return row;
}

// Neighbours for the eye are neighbours for the keyboard and for assistive technology too.
void EventList::order(const QList<EventRow*>& rows)
{
    if (m_rows == rows)
        return;
    const auto same = std::ranges::mismatch(m_rows, rows).in2 - rows.cbegin();
    m_rows = rows;
    for (auto* const row : m_rows | std::views::drop(same)) {
        row->raise();
        row->show();
    }
    arrange();
}

void EventList::arrange()
{
    int y = 0;
    QWidget* last = this;
    for (auto* const row : std::as_const(m_rows)) {
        row->setGeometry(0, y, width(), EventRow::height);
        y += EventRow::height + spacing;
        if (row->join()) {
            setTabOrder(last, row->join());
            last = row->join();
        }
    }
    setFixedHeight(y - spacing + m_padding);
}

void EventList::resizeEvent(QResizeEvent*)
{
    arrange();
}
