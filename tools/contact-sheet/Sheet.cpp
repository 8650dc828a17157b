#include "tools/contact-sheet/Sheet.h"

#include "App/Ui/Bar.h"
#include "App/Ui/Button.h"
#include "App/Ui/ControlBox.h"
#include "App/Ui/DigitText.h"
#include "App/Ui/Label.h"
#include "App/Ui/Picker.h"
#include "App/Ui/ScrollArea.h"
#include "App/Ui/ScrollBar.h"
#include "App/Ui/SegmentedPicker.h"
#include "App/Ui/Stepper.h"
#include "App/Ui/Switch.h"
#include "App/Ui/TextField.h"
#include "App/Ui/Theme.h"

#include <QApplication>
#include <QFocusEvent>
#include <QHoverEvent>
#include <QMouseEvent>
#include <QPainter>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int gap = 18;

template <typename Control>
Control* hovered(Control* control)
{
    const QPointF inside(control->width() > 20 ? 12 : 6, 12);
    QHoverEvent event(QEvent::HoverEnter, inside, inside, QPointF(-1, -1));
    QApplication::sendEvent(control, &event);
    return control;
}

template <typename Control>
Control* focused(Control* control)
{
    QFocusEvent event(QEvent::FocusIn, Qt::TabFocusReason);
    QApplication::sendEvent(control, &event);
    return control;
}

template <typename Control>
Control* pressed(Control* control)
{
    const QPointF inside(12, 12);
    QMouseEvent event(QEvent::MouseButtonPress, inside, inside, Qt::LeftButton, Qt::LeftButton, {});
    QApplication::sendEvent(control, &event);
    return control;
}

template <typename Control>
Control* disabled(Control* control)
{
    control->setEnabled(false);
    return control;
}

Button* button(Button::Kind kind, const QString& text, const QString& symbol = {})
{
    auto* made = new Button(kind, text);
    made->setSymbol(symbol);
    made->resize(made->sizeHint());
    return made;
}

Switch* lever(bool on)
{
    auto* made = new Switch(u"Switch"_s);
    made->setChecked(on);
    return made;
}

Stepper* stepper(int value)
{
    auto* made = new Stepper(u"Stepper"_s);
    made->resize(made->sizeHint());
    made->setValue(value);
    return made;
}

TextField* field(const QString& text)
{
    auto* made = new TextField(u"Label"_s);
    made->setText(text);
    return made;
}

Picker* picker(int current)
{
    auto* made = new Picker(u"Model"_s);
    made->setTitles({ u"llama3.2:latest"_s, u"mistral:7b"_s });
    made->setPlaceholder(u"No models"_s);
    made->setCurrent(current);
    return made;
}

SegmentedPicker* segments(int current)
{
    auto* made = new SegmentedPicker(u"Kind"_s, { u"App"_s, u"URL"_s, u"Shortcut"_s });
    made->setCurrent(current);
    return made;
}

}

Sheet::Sheet()
{
    addButtons();
    addFields();
    addSegments();
    addSwitches();
    addBars();
    addScrollBars();
    resize(700, m_pen.y() + 250);
}

void Sheet::paintEvent(QPaintEvent*)
{
    const Colors& c = Theme::current().colors;
    const QFont font = Theme::current().font(TextRole::ringTime);
    QPainter painter(this);
    const int top = m_pen.y() + 60;
    const QStringList times { u"100:00"_s, u"00:09"_s, u"24:59"_s, u"11:11"_s };
    for (int index = 0; index < times.size(); ++index) {
        const QRectF ring(128 + 140 * index, top, 134, 150);
        DigitText::ring(font, times[index].size()).paint(painter, ring, times[index], c.text);
    }
    const QFont small = Theme::current().font(TextRole::callout);
    DigitText(small).paint(painter, QRectF(128, top + 110, 60, 16), u"11.1 %"_s, c.text);
    DigitText(small).paint(painter, QRectF(128, top + 126, 60, 16), u"40.8 %"_s, c.text);
}

void Sheet::startRow(const QString& name)
{
    m_pen = { 128, m_pen.y() + 58 };
    auto* label = new Label(TextRole::captionHeading, &Colors::secondary, this);
    label->setText(name);
    label->setGeometry(26, m_pen.y() + 5, 96, 14);
}

void Sheet::add(QWidget* control, const QSize& box, const QString& caption)
{
    control->setParent(this);
    ControlBox::place(*control, { m_pen, box });
    addCaption(caption, m_pen.x(), m_pen.y() + 28);
    m_pen.rx() += qMax(box.width(), 40) + gap;
}

void Sheet::addCaption(const QString& text, int x, int y)
{
    auto* label = new Label(TextRole::caption, &Colors::secondary, this);
    label->setText(text);
    label->setGeometry(x, y, 140, 14);
}

void Sheet::addButtons()
{
    struct Row {
        QString name;
        Button::Kind kind;
        QString text;
        QString symbol;
    };
    const QList<Row> rows {
        { u"Button"_s, Button::Kind::normal, u"Reset"_s, {} },
        { u"With a symbol"_s, Button::Kind::normal, u"Mute"_s, u"mic.fill"_s },
        { u"Prominent"_s, Button::Kind::prominent, u"Start"_s, {} },
        { u"Small"_s, Button::Kind::small, u"Copy"_s, {} },
        { u"Destructive"_s, Button::Kind::destructive, u"Delete"_s, {} },
        { u"Tinted red"_s, Button::Kind::tinted, u"Unmute"_s, u"mic.slash.fill"_s },
        { u"Icon button"_s, Button::Kind::icon, u"Again"_s, u"arrow.clockwise"_s },
    };
    for (const Row& row : rows) {
        startRow(row.name);
        const auto made = [&row] { return button(row.kind, row.text, row.symbol); };
        const QSize box = std::unique_ptr<Button>(made())->boxSize();
        add(made(), box, u"normal"_s);
        add(hovered(made()), box, u"hover"_s);
        add(pressed(made()), box, u"pressed"_s);
        add(focused(made()), box, u"focus"_s);
        add(disabled(made()), box, u"disabled"_s);
    }
}

void Sheet::addFields()
{
    startRow(u"Text field"_s);
    const QSize box(120, 24);
    add(field({}), box, u"placeholder"_s);
    add(field(u"Notes"_s), box, u"filled"_s);
    add(focused(field(u"Notes"_s)), box, u"focus"_s);
    add(disabled(field(u"Notes"_s)), box, u"disabled"_s);
}

void Sheet::addSegments()
{
    startRow(u"Picker"_s);
    add(picker(0), { 160, 24 }, u"normal"_s);
    add(focused(picker(0)), { 160, 24 }, u"focus"_s);
    add(disabled(picker(-1)), { 160, 24 }, u"disabled"_s);
    startRow(u"Segmented"_s);
    const QSize box(240, 24);
    add(segments(0), box, u"normal"_s);
    add(focused(segments(1)), box, u"focus"_s);
    startRow({});
    add(disabled(segments(2)), box, u"disabled"_s);
    auto* mirrored = segments(0);
    mirrored->setLayoutDirection(Qt::RightToLeft);
    add(mirrored, box, u"right to left"_s);
}

void Sheet::addSwitches()
{
    startRow(u"Switch"_s);
    add(lever(true), Switch::boxSize(), u"on"_s);
    add(lever(false), Switch::boxSize(), u"off"_s);
    add(focused(lever(true)), Switch::boxSize(), u"focus"_s);
    add(disabled(lever(true)), Switch::boxSize(), u"disabled"_s);
    add(disabled(lever(false)), Switch::boxSize(), u"disabled"_s);
    startRow(u"Stepper"_s);
    add(stepper(5), Stepper::boxSize(), u"normal"_s);
    add(hovered(stepper(5)), Stepper::boxSize(), u"hover"_s);
    add(pressed(stepper(5)), Stepper::boxSize(), u"pressed"_s);
    add(stepper(0), Stepper::boxSize(), u"at its limit"_s);
    add(focused(stepper(5)), Stepper::boxSize(), u"focus"_s);
    add(disabled(stepper(5)), Stepper::boxSize(), u"disabled"_s);
}

void Sheet::addBars()
{
    startRow(u"Progress"_s);
    const std::pair<qreal, QColor Colors::*> bars[] { { .57, &Colors::mark },
        { .86, &Colors::green }, { .16, &Colors::red }, { .02, &Colors::red } };
    for (const auto& [fraction, tint] : bars) {
        auto* bar = new Bar(u"Bar"_s, this);
        bar->setFraction(fraction);
        bar->setTint(tint);
        bar->setGeometry(m_pen.x(), m_pen.y() + 9, 110, 6);
        addCaption(u"%1 %"_s.arg(fraction * 100), m_pen.x(), m_pen.y() + 28);
        m_pen.rx() += 110 + gap;
    }
}

void Sheet::addScrollBars()
{
    startRow(u"Scroll bar"_s);
    for (const bool strong : { false, true }) {
        auto* area = new ScrollArea(this);
        auto* content = new Label(TextRole::body, &Colors::text);
        content->setText(u"Content\nthat is\nhigher than\nits area"_s);
        content->setMinimumHeight(120);
        area->setWidget(content);
        area->setGeometry(m_pen.x(), m_pen.y(), 90, 44);
        if (strong)
            hovered(&area->bar());
        addCaption(strong ? u"hover"_s : u"normal"_s, m_pen.x(), m_pen.y() + 48);
        m_pen.rx() += 90 + gap;
    }
}
