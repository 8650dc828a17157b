// Edits a copy of one of the launcher's buttons, which becomes the button when it is saved.
#pragma once

#include "App/Shortcuts/ShortcutItem.h"
#include "App/Ui/ArrangedWidget.h"

class Button;
class Clipboard;
class Label;
class SegmentedPicker;
class TextField;

class ShortcutEditor final : public ArrangedWidget {
    Q_OBJECT

public:
    // A new item is not in the store yet, and so cannot be deleted.
    ShortcutEditor(const ShortcutItem& draft, bool isNew, Clipboard& clipboard, QWidget* parent);

    const ShortcutItem& draft() const { return m_draft; }
    static int boxHeight();

    void placeBox(const QRect& box); // In the parent's coordinates.

Q_SIGNALS:
    void saved(const ShortcutItem& item);
    void cancelled();
    void deleted();

private:
    void build(bool isNew);
    void nameParts();
    void connectControls();
    void refresh();
    void save();
    void arrange() override;
    void arrangeButtons(const QRect& row);
    QRect mirrored(const QRect& row, const QRect& part) const;
    void focusInEvent(QFocusEvent* event) override;

    ShortcutItem m_draft;
    Clipboard& m_clipboard;
    Label* m_title;
    TextField* m_name;
    Label* m_opens;
    SegmentedPicker* m_kind;
    TextField* m_target;
    TextField* m_symbol;
    Button* m_delete = nullptr; // Only of an item that is in the store.
    Button* m_cancel;
    Button* m_save;
};
