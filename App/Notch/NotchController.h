// Shows the widget while the user wants it, at the top centre of the main screen.
#pragma once

#include "App/Notch/NotchState.h"

#include <QObject>
#include <QSize>

#include <functional>
#include <memory>

class NotchPanel;
class Screens;
class UserDefaults;

class NotchController final : public QObject {
    Q_OBJECT

public:
    // In points.
    static constexpr QSize collapsed { 150, 30 };
    static constexpr QSize expandedSize { 320, 96 };

    // What the user has chosen; without a choice the widget is shown.
    static bool isWanted(const UserDefaults& defaults);
    static void setWanted(UserDefaults& defaults, bool isWanted);

    // Makes a panel that is not shown yet and tells when the pointer enters or leaves it.
    using MakePanel = std::function<std::unique_ptr<NotchPanel>(
        NotchState& state, std::function<void(bool inside)> onHover)>;

    NotchController(UserDefaults& defaults, Screens& screens, MakePanel makePanel);
    ~NotchController() override;

    const NotchState& state() const { return m_state; }

private:
    bool wanted() const;
    void update();
    void build();
    void position(bool animated);

    UserDefaults& m_defaults;
    Screens& m_screens;
    MakePanel m_makePanel;
    NotchState m_state;
    std::unique_ptr<NotchPanel> m_panel; // Absent while the widget is switched off.
};
