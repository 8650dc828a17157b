#include "App/Meetings/EventList.h"

#include "App/Meetings/EventRow.h"
#include "App/Ui/Button.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int spacing = 6;
constexpr int pitch = EventRow::height + spacing;

}

EventList::EventList(int padding)
    : m_padding(padding)
{
    setAccessibleName(u"Today"_s);
}

void EventList::setLines(const QList<MeetingLine>& lines)
{
    if (m_lines == lines)
        return;
    m_lines = lines;
    QStringList keys;
    keys.reserve(lines.size());
    for (const auto& line : lines)
        keys << line.id;
    setKeys(keys);
    setFixedHeight(int(lines.size()) * pitch - spacing + m_padding);
}

QWidget* EventList::makeCell()
{
    auto* const row = new EventRow(m_padding, this);
    connect(row, &EventRow::joined, this, &EventList::joined);
    return row;
}

void EventList::fillCell(QWidget& cell, qsizetype index)
{
    static_cast<EventRow&>(cell).setLine(m_lines[index]);
}

QRect EventList::placeOf(qsizetype index) const
{
    return { 0, int(index) * pitch, width(), EventRow::height };
}

bool EventList::hasControl(qsizetype index) const
{
    return m_lines[index].link.has_value();
}

QWidget* EventList::controlOf(QWidget& cell) const
{
    return static_cast<EventRow&>(cell).join();
}
