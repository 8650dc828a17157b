// The settings pane: the widget, the start at login, and the way out.
#pragma once

#include "App/Ui/ArrangedWidget.h"

#include <functional>

class Button;
class Label;
class LoginItem;
class Switch;
class UserDefaults;

class SettingsView final : public ArrangedWidget {
    Q_OBJECT

public:
    SettingsView(UserDefaults& defaults, LoginItem& loginItem, std::function<void()> terminate);

private:
    void build();
    void nameParts();
    void connectControls();
    void refresh();
    void refreshNotch();
    void setLaunch(bool on);
    void arrange() override;
    void showEvent(QShowEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    Switch* switchOfWordsAt(const QMouseEvent& event) const; // Null beside all words.

    UserDefaults& m_defaults;
    LoginItem& m_loginItem;
    std::function<void()> m_terminate;
    Label* m_title;
    Switch* m_showNotch;
    Label* m_showNotchWords;
    Switch* m_launchAtLogin;
    Label* m_launchWords;
    Switch* m_pressed = nullptr; // By its words.
    Label* m_error;
    Button* m_quit;
};
