#include "App/Shortcuts/ShortcutsView.h"

#include "App/Shortcuts/ShortcutEditor.h"
#include "App/Shortcuts/ShortcutGrid.h"
#include "App/Shortcuts/ShortcutStore.h"
#include "App/Ui/Accessibility.h"
#include "App/Ui/Button.h"
#include "App/Ui/ControlBox.h"
#include "App/Ui/Label.h"
#include "App/Ui/ScrollArea.h"
#include "App/Ui/Theme.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QScrollBar>
#include <QStyle>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int padding = 14;
constexpr int spacing = 10;
constexpr int headerGap = 8;
constexpr int mostErrorLines = 6;

}

ShortcutsView::ShortcutsView(ShortcutStore& store, Clipboard& clipboard)
    : m_store(store)
    , m_clipboard(clipboard)
{
    build();
    nameParts();
    connectControls();
    refresh();
    m_store.observe(this, [this] { refresh(); });
}

void ShortcutsView::build()
{
    m_heading = new Label(TextRole::captionHeading, &Colors::secondary, this);
    m_heading->setElided(true);
    m_add = new Button(Button::Kind::small, u"Add"_s, this);
    m_edit = new Button(Button::Kind::small, {}, this);
    m_grid = new ShortcutGrid(padding);
    m_scroll = new ScrollArea(this);
    m_scroll->setWidget(m_grid);
    m_grid->setAutoFillBackground(false); // The ground is the window's.
    m_error = new Label(TextRole::caption, &Colors::redText, this);
    m_error->setAlignment(Qt::AlignCenter);
    m_error->setMostLines(mostErrorLines);
}

void ShortcutsView::nameParts()
{
    m_heading->setObjectName(u"heading"_s);
    m_add->setObjectName(u"add"_s);
    m_edit->setObjectName(u"edit"_s);
    m_grid->setObjectName(u"grid"_s);
    m_scroll->setObjectName(u"scroll"_s);
    m_error->setObjectName(u"error"_s);
    setAccessibleName(u"Shortcuts"_s);
    Accessibility::describe(staticMetaObject,
        [](QWidget* widget) { return new QAccessibleWidget(widget, QAccessible::Grouping); });
}

void ShortcutsView::connectControls()
{
    connect(m_add, &Button::clicked, this, [this] { edit({ .symbol = u"star"_s }, true); });
    connect(m_edit, &Button::clicked, this, &ShortcutsView::toggleEditing);
    connect(m_grid, &ShortcutGrid::tapped, this, &ShortcutsView::tap);
    connect(m_grid, &ShortcutGrid::reached, m_scroll, &ScrollArea::bringIntoSight);
    connect(
        m_scroll->verticalScrollBar(), &QScrollBar::valueChanged, this, &ShortcutsView::arrange);
}

void ShortcutsView::toggleEditing()
{
    m_editing = !m_editing;
    refresh();
}

void ShortcutsView::tap(const ShortcutItem& item)
{
    if (m_editing)
        edit(item, false);
    else
        m_store.run(item);
}

void ShortcutsView::edit(const ShortcutItem& draft, bool isNew)
{
    m_openedByKeyboard = m_add->hasFocus() || m_grid->current() >= 0;
    closeEditor();
    m_editor = new ShortcutEditor(draft, isNew, m_clipboard, this);
    m_editor->setObjectName(u"editor"_s);
    connect(m_editor, &ShortcutEditor::saved, this, &ShortcutsView::save);
    connect(m_editor, &ShortcutEditor::deleted, this, &ShortcutsView::remove);
    connect(m_editor, &ShortcutEditor::cancelled, this, [this] {
        const auto index = m_grid->indexOf(m_editor->draft().id);
        closeEditor();
        focusAfterEdit(index);
    });
    m_editor->show();
    m_editor->setFocus();
    setTabOrder(m_edit, m_editor);
    refresh();
}

void ShortcutsView::save(const ShortcutItem& item)
{
    m_store.setItems(withItem(m_store.items(), item));
    closeEditor();
    focusAfterEdit(m_grid->indexOf(item.id));
}

void ShortcutsView::remove()
{
    const auto id = m_editor->draft().id;
    const auto index = m_grid->indexOf(id);
    m_store.setItems(withoutItem(m_store.items(), id));
    closeEditor();
    focusAfterEdit(qMin(index, m_grid->count() - 1));
}

void ShortcutsView::closeEditor()
{
    if (!m_editor)
        return;
    auto* const editor = std::exchange(m_editor, nullptr);
    // A screen reader may press its buttons until it is gone.
    editor->disconnect(this);
    setFocus();
    editor->hide();
    editor->deleteLater(); // It is what told us.
    refresh();
}

// The keyboard goes back to where it came from.
void ShortcutsView::focusAfterEdit(qsizetype index)
{
    const auto reason = m_openedByKeyboard ? Qt::TabFocusReason : Qt::OtherFocusReason;
    if (index >= 0)
        m_grid->focusCell(index, reason);
    else
        (m_editing ? m_add : m_edit)->setFocus(reason);
}

void ShortcutsView::refresh()
{
    m_heading->setText(m_editing ? u"Tap a button to edit it"_s : u"Shortcuts"_s);
    m_add->setVisible(m_editing);
    m_edit->setText(m_editing ? u"Done"_s : u"Edit"_s);
    m_grid->setItems(m_store.items());
    m_grid->setEdited(m_editing);
    m_scroll->setVisible(!m_editor);
    m_error->setText(m_store.lastError());
    m_error->setVisible(!m_store.lastError().isEmpty());
    arrange();
}

void ShortcutsView::focusInEvent(QFocusEvent* event)
{
    if (m_editor)
        m_editor->setFocus(event->reason());
}

// The keys that a button leaves alone go through the tiles or turn their pages.
void ShortcutsView::keyPressEvent(QKeyEvent* event)
{
    const bool entersGrid = event->key() == Qt::Key_Down && !m_editor && m_grid->count() > 0;
    if (entersGrid && m_grid->current() < 0)
        m_grid->focusCell(0, Qt::TabFocusReason);
    else if (m_editor || !m_scroll->scrollBy(event->key()))
        QWidget::keyPressEvent(event);
}

void ShortcutsView::arrange()
{
    QRect room = rect().adjusted(padding, padding, -padding, -padding);
    const int headerHeight = m_edit->boxSize().height();
    arrangeHeader({ room.topLeft(), QSize(room.width(), headerHeight) });
    room.setTop(room.top() + headerHeight + spacing);
    const int errorHeight = m_error->isHidden() ? 0 : m_error->heightForWidth(room.width());
    if (m_editor) {
        m_editor->placeBox({ room.topLeft(), QSize(room.width(), ShortcutEditor::boxHeight()) });
        const int top = room.top() + ShortcutEditor::boxHeight() + spacing;
        m_error->setGeometry(room.left(), top, room.width(), errorHeight);
        return;
    }
    m_error->setGeometry(room.left(), room.bottom() + 1 - errorHeight, room.width(), errorHeight);
    // To the edges of the tab, where the thumb and the rings of the tiles have room.
    const int top = room.top() - ControlBox::margin;
    const int bottom = errorHeight > 0 ? m_error->y() - spacing : height();
    arrangeGrid({ 0, top, width(), bottom - top });
}

// A list that stands at its end does not grow: the tiles would go away from under the pointer.
void ShortcutsView::arrangeGrid(const QRect& room)
{
    const int scrolled = m_scroll->verticalScrollBar()->value();
    const bool wouldMove = scrolled > qMax(0, m_grid->height() - room.height());
    if (!wouldMove || room.height() < m_scroll->height())
        m_scroll->setGeometry(room);
}

void ShortcutsView::arrangeHeader(const QRect& row)
{
    const auto mirrored
        = [&](const QRect& part) { return QStyle::visualRect(layoutDirection(), row, part); };
    int end = row.right() + 1;
    for (auto* const button : { m_edit, m_add }) {
        if (button->isHidden())
            continue;
        const auto size = button->boxSize();
        button->placeBox(mirrored({ { end - size.width(), row.top() }, size }));
        end -= size.width() + headerGap;
    }
    m_heading->setGeometry(mirrored({ row.left(), row.top(), end - row.left(), row.height() }));
}
