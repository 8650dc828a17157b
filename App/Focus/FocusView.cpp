#include "App/Focus/FocusView.h"

#include "App/Focus/LengthStepper.h"
#include "App/Focus/PomodoroModel.h"
#include "App/Focus/ProgressRing.h"
#include "App/Focus/SessionCount.h"
#include "App/Platform/Clipboard.h"
#include "App/Ui/Accessibility.h"
#include "App/Ui/Button.h"
#include "App/Ui/Divider.h"
#include "App/Ui/Label.h"
#include "App/Ui/TextField.h"
#include "App/Ui/Theme.h"

#include <QAccessibleWidget>
#include <QEvent>
#include <QShortcut>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace {

constexpr int padding = 16;
constexpr int spacing = 14;
constexpr int controlHeight = 24;
constexpr int controlGap = 8;
constexpr int toggleWidth = 64; // Wide enough for either title, so that nothing moves.
constexpr int lengthGap = 16;

}

FocusView::FocusView(PomodoroModel& model, Clipboard& clipboard)
    : m_model(model)
    , m_clipboard(clipboard)
{
    build();
    connectControls();
    refresh();
    m_model.observe(this, [this] { refresh(); });
}

void FocusView::build()
{
    m_phase = new Label(TextRole::captionHeading, &Colors::secondary, this);
    m_phase->setAlignment(Qt::AlignCenter);
    m_ring = new ProgressRing(this);
    m_task = new TextField(u"What are you working on?"_s, this);
    m_toggle = new Button(Button::Kind::prominent, u"Start"_s, this);
    m_toggle->setBoxWidth(toggleWidth);
    m_reset = new Button(Button::Kind::normal, u"Reset"_s, this);
    m_skip = new Button(Button::Kind::normal, u"Skip"_s, this);
    m_sessions = new SessionCount(this);
    m_divider = new Divider(this);
    m_focusLength = new LengthStepper(u"Focus"_s, 120, this);
    m_shortLength = new LengthStepper(u"Short"_s, 60, this);
    m_longLength = new LengthStepper(u"Long"_s, 90, this);
    setFocusProxy(m_task);
    setAccessibleName(u"Focus timer"_s);
    Accessibility::describe(staticMetaObject,
        [](QWidget* widget) { return new QAccessibleWidget(widget, QAccessible::Grouping); });

    m_phase->setObjectName(u"phase"_s);
    m_ring->setObjectName(u"ring"_s);
    m_task->setObjectName(u"task"_s);
    m_toggle->setObjectName(u"toggle"_s);
    m_reset->setObjectName(u"reset"_s);
    m_skip->setObjectName(u"skip"_s);
    m_sessions->setObjectName(u"sessions"_s);
}

void FocusView::connectControls()
{
    // Also when assistive technology writes the text, which Qt does not count as an edit.
    connect(m_task, &TextField::textChanged, this, [this](const QString& text) {
        if (text != m_model.taskName())
            m_model.setTaskName(text);
    });
    connect(m_task, &TextField::pasteWanted, this, [this](QClipboard::Mode mode) {
        m_clipboard.readText(
            mode, m_task, [this](const QString& text) { m_task->insertPasted(text); });
    });
    connect(m_toggle, &Button::clicked, this, &FocusView::toggle);
    connect(m_reset, &Button::clicked, &m_model, &PomodoroModel::reset);
    connect(m_skip, &Button::clicked, &m_model, &PomodoroModel::skip);
    connect(m_focusLength, &LengthStepper::edited, &m_model, &PomodoroModel::setFocusMinutes);
    connect(m_shortLength, &LengthStepper::edited, &m_model, &PomodoroModel::setShortMinutes);
    connect(m_longLength, &LengthStepper::edited, &m_model, &PomodoroModel::setLongMinutes);

    for (const auto key : { Qt::Key_Return, Qt::Key_Enter }) {
        auto* const isDefault = new QShortcut(key, this);
        isDefault->setAutoRepeat(false);
        connect(isDefault, &QShortcut::activated, m_toggle, &Button::click);
    }
}

void FocusView::toggle()
{
    if (m_model.running())
        m_model.pause();
    else
        m_model.start();
}

void FocusView::refresh()
{
    const auto& colors = Theme::current().colors;
    m_phase->setText(rawValue(m_model.phase()));
    m_ring->setColor(m_model.phase() == Phase::focus ? colors.red : colors.green);
    m_ring->setTime(m_model.timeString());
    m_ring->setProgress(m_model.progress());
    // Setting an equal text would still move the caret to its end.
    if (m_task->text() != m_model.taskName())
        m_task->setText(m_model.taskName());
    m_toggle->setText(m_model.running() ? u"Pause"_s : u"Start"_s);
    m_sessions->setCount(m_model.sessions());
    m_focusLength->setMinutes(m_model.focusMinutes());
    m_shortLength->setMinutes(m_model.shortMinutes());
    m_longLength->setMinutes(m_model.longMinutes());
}

void FocusView::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange)
        refresh();
    ArrangedWidget::changeEvent(event);
}

// One column in the middle of the view.
void FocusView::arrange()
{
    const int phaseHeight = Theme::lineHeight(TextRole::captionHeading);
    const int height = phaseHeight + ProgressRing::side + 2 * controlHeight + 1
        + LengthStepper::height + 5 * spacing;
    const int width = this->width() - 2 * padding;
    int y = (this->height() - height) / 2;
    const auto next = [&](int rowHeight) {
        const QRect row(padding, y, width, rowHeight);
        y += rowHeight + spacing;
        return row;
    };

    m_phase->setGeometry(next(phaseHeight));
    const auto ring = next(ProgressRing::side);
    const int indent = (ring.width() - ProgressRing::side) / 2;
    m_ring->move(ring.topLeft() + QPoint(indent - ProgressRing::margin, -ProgressRing::margin));
    m_task->placeBox(next(controlHeight));
    arrangeControls(next(controlHeight));
    m_divider->setGeometry(next(1));
    const auto lengths = next(LengthStepper::height);
    const int column = (width - 2 * lengthGap) / 3;
    int x = lengths.left();
    for (auto* const length : { m_focusLength, m_shortLength, m_longLength }) {
        length->placeBox(QStyle::visualRect(
            layoutDirection(), lengths, { x, lengths.top(), column, lengths.height() }));
        x += column + lengthGap;
    }
}

void FocusView::arrangeControls(const QRect& row)
{
    const auto mirrored
        = [&](const QRect& part) { return QStyle::visualRect(layoutDirection(), row, part); };
    int x = row.left();
    for (auto* const button : { m_toggle, m_reset, m_skip }) {
        const auto size = button->boxSize();
        button->placeBox(mirrored({ { x, row.top() }, size }));
        x += size.width() + controlGap;
    }
    m_sessions->setGeometry(mirrored({ x, row.top(), row.right() + 1 - x, row.height() }));
}
