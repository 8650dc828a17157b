// Says what is needed to see the calendar, above the button that brings it.
#pragma once

#include "App/Ui/ArrangedWidget.h"

class Button;
class Label;

class AccessPrompt final : public ArrangedWidget {
    Q_OBJECT

public:
    // Stands at the top of its geometry, in the middle.
    AccessPrompt(const QString& text, const QString& title, QWidget* parent);

    Button& button() const { return *m_button; }

private:
    void arrange() override;

    Label* m_text;
    Button* m_button;
};
