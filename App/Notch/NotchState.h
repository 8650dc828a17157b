// Whether the pointer is over the widget, which then shows more.
#pragma once

#include "App/Core/Model.h"

class NotchState final : public Model {
    Q_OBJECT

public:
    bool expanded() const { return m_expanded; }
    void setExpanded(bool expanded) { publish(m_expanded, expanded); }

private:
    bool m_expanded = false;
};
