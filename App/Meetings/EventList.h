// Today's events below one another.
#pragma once

#include "App/Meetings/MeetingsContent.h"
#include "App/Ui/LazyCells.h"

class EventList final : public LazyCells {
    Q_OBJECT

public:
    explicit EventList(int padding);

    void setLines(const QList<MeetingLine>& lines);

Q_SIGNALS:
    void joined(const QString& link);

private:
    QWidget* makeCell() override;
    void fillCell(QWidget& cell, qsizetype index) override;
    QRect placeOf(qsizetype index) const override;
    bool hasControl(qsizetype index) const override;
    QWidget* controlOf(QWidget& cell) const override;

    int m_padding;
    QList<MeetingLine> m_lines;
};
