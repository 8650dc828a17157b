// Today's events below one another. A row stays with its event however the list changes, so that
// neither the keyboard nor a finger on the button finds another meeting under it.
#pragma once

#include "App/Meetings/MeetingsContent.h"

#include <QWidget>

class EventRow;

class EventList final : public QWidget {
    Q_OBJECT

public:
    explicit EventList(int padding);

    const QList<EventRow*>& rows() const { return m_rows; }

    void setLines(const QList<MeetingLine>& lines);

Q_SIGNALS:
    void joined(const QString& link);
    // The keyboard has come to this place.
    void reached(const QRect& row);

private:
    QList<EventRow*> rowsFor(const QList<MeetingLine>& lines);
    EventRow* makeRow();
    void order(const QList<EventRow*>& rows);
    void arrange();
    void resizeEvent(QResizeEvent* event) override;

    int m_padding;
    QList<EventRow*> m_rows;
};
