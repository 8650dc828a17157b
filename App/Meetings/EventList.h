// Today's events below one another. Only what is in sight has a row, which stays with its event
// however the list changes, so that neither the keyboard nor a finger on the button finds another
// meeting under it.
#pragma once

#include "App/Meetings/MeetingsContent.h"

#include <QWidget>

class EventRow;

class EventList final : public QWidget {
    Q_OBJECT

public:
    explicit EventList(int padding);

    qsizetype count() const { return m_lines.size(); }
    const QList<EventRow*>& rows() const { return m_rows; } // Null where an event has none.
    EventRow& row(qsizetype index); // Made where there is none.

    void setLines(const QList<MeetingLine>& lines);

Q_SIGNALS:
    void joined(const QString& link);
    // The keyboard has come to this place.
    void reached(const QRect& row);

private:
    QList<EventRow*> rowsFor(const QList<MeetingLine>& lines);
    EventRow* makeRow();
    bool isNeeded(qsizetype index) const;
    void showWhatIsNeeded();
    void place(qsizetype index);
    void orderButtons();
    bool focusNextPrevChild(bool next) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* viewport, QEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

    int m_padding;
    QList<MeetingLine> m_lines;
    QList<EventRow*> m_rows; // One a line.
    // The keyboard comes in at these.
    qsizetype m_firstLink = -1;
    qsizetype m_lastLink = -1;
};
