#include "App/Notch/SettingsView.h"

#include "App/Notch/NotchController.h"
#include "App/Platform/LoginItem.h"
#include "App/Platform/UserDefaults.h"
#include "App/Ui/Accessibility.h"
#include "App/Ui/Button.h"
#include "App/Ui/Label.h"
#include "App/Ui/Switch.h"
#include "App/Ui/Theme.h"

#include <QAccessibleWidget>
#include <QMouseEvent>
#include <QStyle>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int padding = 16;
constexpr int spacing = 14;
constexpr int switchGap = 10;
constexpr int mostErrorLines = 8;

}

SettingsView::SettingsView(
    UserDefaults& defaults, LoginItem& loginItem, std::function<void()> terminate)
    : m_defaults(defaults)
    , m_loginItem(loginItem)
    , m_terminate(std::move(terminate))
{
    build();
    nameParts();
    connectControls();
    refresh();
}

void SettingsView::build()
{
    m_title = new Label(TextRole::headline, &Colors::text, this);
    m_title->setText(u"Settings"_s);
    const auto words = [this](const QString& text) {
        auto* const label = new Label(TextRole::body, &Colors::text, this);
        label->setText(text);
        return label;
    };
    m_showNotch = new Switch(u"Show notch widget"_s, this);
    m_showNotchWords = words(u"Show notch widget"_s);
    m_launchAtLogin = new Switch(u"Launch at login"_s, this);
    m_launchWords = words(u"Launch at login"_s);
    m_error = new Label(TextRole::caption, &Colors::orangeText, this);
    m_error->setAlignment(Qt::AlignLeading | Qt::AlignVCenter);
    m_error->setMostLines(mostErrorLines);
    m_error->hide();
    m_quit = new Button(Button::Kind::normal, u"Quit Corvella"_s, this);
}

void SettingsView::nameParts()
{
    m_title->setObjectName(u"title"_s);
    m_showNotch->setObjectName(u"showNotch"_s);
    m_launchAtLogin->setObjectName(u"launchAtLogin"_s);
    m_error->setObjectName(u"error"_s);
    m_quit->setObjectName(u"quit"_s);
    setAccessibleName(u"Settings"_s);
    Accessibility::describe(staticMetaObject,
        [](QWidget* widget) { return new QAccessibleWidget(widget, QAccessible::Grouping); });
}

void SettingsView::connectControls()
{
    connect(m_showNotch, &Switch::clicked, this,
        [this](bool on) { NotchController::setWanted(m_defaults, on); });
    connect(m_launchAtLogin, &Switch::clicked, this, &SettingsView::setLaunch);
    connect(m_quit, &Button::clicked, this, [this] { m_terminate(); });
    connect(&m_defaults, &UserDefaults::changed, this, &SettingsView::refreshNotch);
}

void SettingsView::setLaunch(bool on)
{
    const auto failure = on ? m_loginItem.registerItem() : m_loginItem.unregisterItem();
    m_error->setText(failure
            ? u"Couldn't change login item (run Corvella as an app bundle): "_s + *failure
            : QString());
    m_error->setVisible(failure.has_value());
    refresh();
    arrange();
}

void SettingsView::refresh()
{
    refreshNotch();
    m_launchAtLogin->setChecked(m_loginItem.status() == LoginItem::Status::enabled);
}

void SettingsView::refreshNotch()
{
    m_showNotch->setChecked(NotchController::isWanted(m_defaults));
}

// The login item may have been changed elsewhere meanwhile.
void SettingsView::showEvent(QShowEvent*)
{
    refresh();
}

// The words are as good as the switch beside them.
void SettingsView::mousePressEvent(QMouseEvent* event)
{
    QWidget::mousePressEvent(event);
    m_pressed = switchOfWordsAt(*event);
}

void SettingsView::mouseReleaseEvent(QMouseEvent* event)
{
    QWidget::mouseReleaseEvent(event);
    auto* const pressed = std::exchange(m_pressed, nullptr);
    if (pressed && pressed == switchOfWordsAt(*event))
        pressed->click();
}

Switch* SettingsView::switchOfWordsAt(const QMouseEvent& event) const
{
    const auto position = event.position().toPoint();
    if (event.button() != Qt::LeftButton)
        return nullptr;
    if (m_showNotchWords->geometry().contains(position))
        return m_showNotch;
    return m_launchWords->geometry().contains(position) ? m_launchAtLogin : nullptr;
}

void SettingsView::arrange()
{
    int y = padding;
    const auto next = [&](int height) {
        const QRect row(padding, y, width() - 2 * padding, height);
        y += height + spacing;
        return row;
    };
    const auto mirrored = [this](const QRect& row, const QRect& part) {
        return QStyle::visualRect(layoutDirection(), row, part);
    };
    const auto arrangeSwitch = [&](Switch* button, Label* words) {
        const auto size = Switch::boxSize();
        const auto row = next(size.height());
        button->placeBox(mirrored(row, { row.topLeft(), size }));
        words->setGeometry(mirrored(row, row.adjusted(size.width() + switchGap, 0, 0, 0)));
    };
    m_title->setGeometry(next(Theme::lineHeight(TextRole::headline)));
    arrangeSwitch(m_showNotch, m_showNotchWords);
    arrangeSwitch(m_launchAtLogin, m_launchWords);
    if (!m_error->isHidden())
        m_error->setGeometry(next(m_error->heightForWidth(width() - 2 * padding)));
    const auto size = m_quit->boxSize();
    const auto row = next(size.height());
    m_quit->placeBox(mirrored(row, { row.topLeft(), size }));
}
