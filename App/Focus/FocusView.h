// The Focus tab: the timer as a ring, the task, the controls and the three lengths.
#pragma once

#include "App/Ui/ArrangedWidget.h"

class Button;
class Clipboard;
class Divider;
class Label;
class LengthStepper;
class PomodoroModel;
class ProgressRing;
class SessionCount;
class TextField;

class FocusView final : public ArrangedWidget {
    Q_OBJECT

public:
    FocusView(PomodoroModel& model, Clipboard& clipboard);

private:
    void build();
    void connectControls();
    void refresh();
    void toggle();
    void arrange() override;
    void arrangeControls(const QRect& row);
    void changeEvent(QEvent* event) override;

    PomodoroModel& m_model;
    Clipboard& m_clipboard;
    Label* m_phase;
    ProgressRing* m_ring;
    TextField* m_task;
    Button* m_toggle;
    Button* m_reset;
    Button* m_skip;
    SessionCount* m_sessions;
    Divider* m_divider;
    LengthStepper* m_focusLength;
    LengthStepper* m_shortLength;
    LengthStepper* m_longLength;
};
