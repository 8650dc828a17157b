// The widget as it is drawn: a black tab that hangs from the upper edge, and how far it is out.
#pragma once

#include "App/Notch/NotchContent.h"

#include <QWidget>

#include <functional>

class CalendarModel;
class NotchState;
class PomodoroModel;

class NotchView final : public QWidget {
    Q_OBJECT

public:
    // Calls onHover when the pointer enters or leaves the tab.
    NotchView(NotchState& state, PomodoroModel& timer, CalendarModel& calendar,
        std::function<void(bool inside)> onHover);

    const NotchContent& content() const { return m_content; }
    bool isExpanded() const;
    QSize tab() const { return m_tab; }
    QRegion shape() const; // Of the tab, in the view's coordinates.
    QSize sizeHint() const override; // The largest that the tab will be.

    // The tab hangs in the middle of the view; its details show as far as it is higher than when it
    // is collapsed.
    void setTab(const QSize& size);

private:
    void refresh();
    qreal detailStrength() const;
    QRect tabBox() const;
    QRect headerBox() const;
    QRect rowBox(int index) const;
    void paintHeader(QPainter& painter) const;
    void paintRow(
        QPainter& painter, const QRect& line, const QString& symbol, const QString& text) const;
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

    const NotchState& m_state;
    PomodoroModel& m_timer;
    CalendarModel& m_calendar;
    std::function<void(bool inside)> m_onHover;
    NotchContent m_content;
    QSize m_tab;
};
