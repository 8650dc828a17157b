// The meeting that is next, on a tinted ground, with a button that joins it.
#pragma once

#include "App/Meetings/MeetingsContent.h"
#include "App/Ui/ArrangedWidget.h"

class Button;
class Label;

class NextMeetingCard final : public ArrangedWidget {
    Q_OBJECT

public:
    explicit NextMeetingCard(QWidget* parent);

    QSize sizeHint() const override;

    void setCard(const MeetingCard& card);

Q_SIGNALS:
    void joined(const QString& link);

private:
    void arrange() override;
    void paintEvent(QPaintEvent* event) override;

    MeetingCard m_card;
    Label* m_title;
    Label* m_time;
    Button* m_join;
};
