#include "App/Shortcuts/ShortcutEditor.h"

#include "App/Platform/Clipboard.h"
#include "App/Ui/Accessibility.h"
#include "App/Ui/Button.h"
#include "App/Ui/ControlBox.h"
#include "App/Ui/Label.h"
#include "App/Ui/SegmentedPicker.h"
#include "App/Ui/SymbolImage.h"
#include "App/Ui/TextField.h"
#include "App/Ui/TextLine.h"
#include "App/Ui/Theme.h"

#include <QAccessibleWidget>
#include <QShortcut>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace {

constexpr int spacing = 10;
constexpr int controlHeight = 24;
constexpr int controlGap = 8;
constexpr int saveWidth = 64;

QString targetPlaceholder(ShortcutKind kind)
{
    switch (kind) {
    case ShortcutKind::app:
        return u"Safari or /Applications/Notes.app"_s;
    case ShortcutKind::url:
        return u"https://example.com"_s;
    case ShortcutKind::shortcut:
        return u"Name of a Shortcuts shortcut"_s;
    }
    Q_UNREACHABLE();
}

QStringList kindTitles()
{
    QStringList titles;
    for (const auto kind : shortcutKinds)
        titles << rawValue(kind);
    return titles;
}

}

ShortcutEditor::ShortcutEditor(
    const ShortcutItem& draft, bool isNew, Clipboard& clipboard, QWidget* parent)
    : ArrangedWidget(parent)
    , m_draft(draft)
    , m_clipboard(clipboard)
{
    build(isNew);
    nameParts();
    connectControls();
    m_name->setText(m_draft.name);
    m_target->setText(m_draft.target);
    m_symbol->setText(m_draft.symbol);
    m_kind->setCurrent(int(m_draft.kind));
    refresh();
}

void ShortcutEditor::build(bool isNew)
{
    m_title = new Label(TextRole::headline, &Colors::text, this);
    m_title->setText(isNew ? u"New button"_s : u"Edit button"_s);
    m_name = new TextField(u"Label"_s, this);
    m_opens = new Label(TextRole::body, &Colors::text, this);
    m_opens->setText(u"Opens"_s);
    m_kind = new SegmentedPicker(m_opens->text(), kindTitles(), this);
    m_target = new TextField({}, this);
    m_symbol = new TextField(u"SF Symbol name"_s, this);
    if (!isNew)
        m_delete = new Button(Button::Kind::destructive, u"Delete"_s, this);
    m_cancel = new Button(Button::Kind::normal, u"Cancel"_s, this);
    m_save = new Button(Button::Kind::prominent, u"Save"_s, this);
    m_save->setBoxWidth(saveWidth);
}

void ShortcutEditor::nameParts()
{
    m_title->setObjectName(u"title"_s);
    m_name->setObjectName(u"name"_s);
    m_opens->setObjectName(u"opens"_s);
    m_kind->setObjectName(u"kind"_s);
    m_target->setObjectName(u"target"_s);
    m_symbol->setObjectName(u"symbol"_s);
    if (m_delete)
        m_delete->setObjectName(u"delete"_s);
    m_cancel->setObjectName(u"cancel"_s);
    m_save->setObjectName(u"save"_s);
    setAccessibleName(m_title->text());
    Accessibility::describe(staticMetaObject,
        [](QWidget* widget) { return new QAccessibleWidget(widget, QAccessible::Form); });
}

void ShortcutEditor::connectControls()
{
    connect(m_name, &TextField::textChanged, this,
        [this](const QString& text) { m_draft.name = text; });
    connect(m_target, &TextField::textChanged, this, [this](const QString& text) {
        m_draft.target = text;
        refresh();
    });
    connect(m_symbol, &TextField::textChanged, this,
        [this](const QString& text) { m_draft.symbol = text; });
    for (auto* const field : { m_name, m_target, m_symbol }) {
        connect(field, &TextField::pasteWanted, this, [this, field](QClipboard::Mode mode) {
            m_clipboard.readText(
                mode, field, [field](const QString& text) { field->insertPasted(text); });
        });
    }
    connect(m_kind, &SegmentedPicker::chosen, this, [this](int index) {
        m_draft.kind = shortcutKinds[size_t(index)];
        refresh();
    });
    if (m_delete)
        connect(m_delete, &Button::clicked, this, &ShortcutEditor::deleted);
    connect(m_cancel, &Button::clicked, this, &ShortcutEditor::cancelled);
    connect(m_save, &Button::clicked, this, &ShortcutEditor::save);
    for (const auto key : { Qt::Key_Return, Qt::Key_Enter }) {
        auto* const isDefault = new QShortcut(key, this);
        isDefault->setAutoRepeat(false);
        connect(isDefault, &QShortcut::activated, m_save, &Button::click);
    }
}

void ShortcutEditor::refresh()
{
    m_target->setPlaceholder(targetPlaceholder(m_draft.kind));
    m_save->setEnabled(!m_draft.target.isEmpty());
}

void ShortcutEditor::save()
{
    auto item = m_draft;
    if (item.name.isEmpty())
        item.name = item.target;
    if (!SymbolImage::exists(item.symbol))
        item.symbol = u"star"_s;
    Q_EMIT saved(item);
}

int ShortcutEditor::boxHeight()
{
    return Theme::lineHeight(TextRole::headline) + 5 * (spacing + controlHeight);
}

void ShortcutEditor::placeBox(const QRect& box)
{
    ControlBox::place(*this, box);
}

// Not by a focus proxy: Tab would skip what stands before the field.
void ShortcutEditor::focusInEvent(QFocusEvent* event)
{
    m_name->setFocus(event->reason());
}

void ShortcutEditor::arrange()
{
    const auto box = ControlBox::of(*this);
    int y = box.top();
    const auto next = [&](int height) {
        const QRect row(box.left(), y, box.width(), height);
        y += height + spacing;
        return row;
    };
    m_title->setGeometry(next(Theme::lineHeight(TextRole::headline)));
    m_name->placeBox(next(controlHeight));
    const auto row = next(controlHeight);
    const int words = TextLine::width(m_opens->text(), Theme::current().font(TextRole::body));
    m_opens->setGeometry(mirrored(row, { row.left(), row.top(), words, row.height() }));
    m_kind->placeBox(mirrored(row, row.adjusted(words + controlGap, 0, 0, 0)));
    m_target->placeBox(next(controlHeight));
    m_symbol->placeBox(next(controlHeight));
    arrangeButtons(next(controlHeight));
}

void ShortcutEditor::arrangeButtons(const QRect& row)
{
    if (m_delete)
        m_delete->placeBox(mirrored(row, { row.topLeft(), m_delete->boxSize() }));
    int end = row.right() + 1;
    for (auto* const button : { m_save, m_cancel }) {
        const auto size = button->boxSize();
        button->placeBox(mirrored(row, { { end - size.width(), row.top() }, size }));
        end -= size.width() + controlGap;
    }
}

QRect ShortcutEditor::mirrored(const QRect& row, const QRect& part) const
{
    return QStyle::visualRect(layoutDirection(), row, part);
}
