// The Shortcuts tab: the launcher's buttons, and in their place the editor of one.
#pragma once

#include "App/Shortcuts/ShortcutItem.h"
#include "App/Ui/ArrangedWidget.h"

class Button;
class Clipboard;
class Label;
class ScrollArea;
class ShortcutEditor;
class ShortcutGrid;
class ShortcutStore;

class ShortcutsView final : public ArrangedWidget {
    Q_OBJECT

public:
    ShortcutsView(ShortcutStore& store, Clipboard& clipboard);

private:
    void build();
    void nameParts();
    void connectControls();
    void refresh();
    void toggleEditing();
    void tap(const ShortcutItem& item);
    void edit(const ShortcutItem& draft, bool isNew);
    void save(const ShortcutItem& item);
    void remove();
    void closeEditor();
    void focusAfterEdit(qsizetype index);
    void arrange() override;
    void arrangeHeader(const QRect& row);
    void arrangeGrid(const QRect& room);
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

    ShortcutStore& m_store;
    Clipboard& m_clipboard;
    bool m_editing = false;
    bool m_openedByKeyboard = false;
    Label* m_heading;
    Button* m_add;
    Button* m_edit;
    ShortcutGrid* m_grid;
    ScrollArea* m_scroll;
    ShortcutEditor* m_editor = nullptr; // While there is a draft.
    Label* m_error;
};
