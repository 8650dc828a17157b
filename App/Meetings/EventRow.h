// One event of the list: its title over its time, the button that joins it, and a line below.
#pragma once

#include "App/Meetings/MeetingsContent.h"
#include "App/Ui/ArrangedWidget.h"

class Button;

class EventRow final : public ArrangedWidget {
    Q_OBJECT

public:
    static constexpr int height = 39;

    // The content keeps this distance from both edges, in which there is room for a focus ring.
    EventRow(int padding, QWidget* parent);

    const MeetingLine& line() const { return m_line; }
    Button* join() const { return m_join; } // Null without a link.

    void setLine(const MeetingLine& line);

Q_SIGNALS:
    void joined(const QString& link);

private:
    void adaptButton();
    void dropButton();
    void arrange() override;
    qreal strength() const;
    QString said() const;
    void paintEvent(QPaintEvent* event) override;

    int m_padding;
    MeetingLine m_line;
    Button* m_join = nullptr;
};
