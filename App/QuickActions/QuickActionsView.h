// The Actions tab: text from the clipboard, what can be done with it, and the result.
#pragma once

#include "App/QuickActions/QuickActionsModel.h"
#include "App/Ui/ArrangedWidget.h"

#include <array>

class AdaptiveGrid;
class Button;
class Label;
class Picker;
class TextArea;
class Warning;

class QuickActionsView final : public ArrangedWidget {
    Q_OBJECT

public:
    QuickActionsView(Clipboard& clipboard, HttpClient& client);

private:
    void build();
    void nameParts();
    void connectControls();
    void refresh();
    void arrange() override;
    void arrangeHeading(const QRect& row, QWidget* heading, Button* button);
    void arrangeTransformations(const QRect& rows, const AdaptiveGrid& grid);
    void arrangeModels(const QRect& row);
    QRect mirrored(const QRect& row, const QRect& part) const;
    void focusInEvent(QFocusEvent* event) override;
    void showEvent(QShowEvent* event) override;

    Clipboard& m_clipboard;
    QuickActionsModel m_model;
    QString m_shownInput; // What the editor holds.

    Label* m_inputHeading;
    Button* m_read;
    TextArea* m_input;
    std::array<Button*, 4> m_transformations;
    Picker* m_models;
    Button* m_rewrite;
    Button* m_refresh;
    Warning* m_warning;
    Label* m_outputHeading;
    Button* m_copy;
    TextArea* m_output;
    Label* m_status;
};
