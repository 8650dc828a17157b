#include "App/QuickActions/QuickActionsView.h"

#include "App/Platform/Clipboard.h"
#include "App/QuickActions/Ollama.h"
#include "App/Ui/Accessibility.h"
#include "App/Ui/AdaptiveGrid.h"
#include "App/Ui/Button.h"
#include "App/Ui/Label.h"
#include "App/Ui/Picker.h"
#include "App/Ui/TextArea.h"
#include "App/Ui/Theme.h"
#include "App/Ui/Warning.h"

#include <QAccessibleWidget>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace {

constexpr int padding = 14;
constexpr int spacing = 10;
constexpr int inputHeight = 100;
constexpr int leastColumn = 110;
constexpr int gridSpacing = 6;
constexpr int controlHeight = 24;
constexpr int controlGap = 8;
constexpr int widestPicker = 160;
constexpr int mostStatusLines = 5; // What a server says may be of any length.
constexpr int rewriteWidth = 168; // Wide enough for either title, so that nothing moves.

struct Transformation {
    const char16_t* title;
    void (QuickActionsModel::*run)();
};
constexpr std::array<Transformation, 4> transformations { {
    { u"Summarize", &QuickActionsModel::summarize },
    { u"Fix spacing & case", &QuickActionsModel::fixSpacingAndCase },
    { u"Make bullets", &QuickActionsModel::bullets },
    { u"Count words", &QuickActionsModel::count },
} };

}

QuickActionsView::QuickActionsView(Clipboard& clipboard, HttpClient& client)
    : m_clipboard(clipboard)
    , m_model(clipboard, client)
{
    build();
    nameParts();
    connectControls();
    refresh();
    m_model.observe(this, [this] { refresh(); });
}

void QuickActionsView::build()
{
    m_inputHeading = new Label(TextRole::captionHeading, &Colors::secondary, this);
    m_inputHeading->setText(u"Clipboard text"_s);
    m_read = new Button(Button::Kind::small, u"Read clipboard"_s, this);
    m_input = new TextArea(TextArea::Kind::editor, m_inputHeading->text(), this);
    for (size_t index = 0; index < transformations.size(); ++index) {
        const auto title = QString::fromUtf16(transformations[index].title);
        m_transformations[index] = new Button(Button::Kind::normal, title, this);
    }
    m_models = new Picker(u"Model"_s, this);
    m_rewrite = new Button(Button::Kind::normal, {}, this);
    m_rewrite->setBoxWidth(rewriteWidth);
    m_refresh = new Button(Button::Kind::icon, u"Check for Ollama again"_s, this);
    m_refresh->setSymbol(u"arrow.clockwise"_s);
    m_refresh->setToolTip(m_refresh->text());
    m_warning
        = new Warning(u"Ollama isn't running. Start it (ollama serve) and it will be found at "_s
                + Ollama::base().toString() + u"."_s,
            this);
    m_outputHeading = new Label(TextRole::captionHeading, &Colors::secondary, this);
    m_outputHeading->setText(u"Result"_s);
    m_copy = new Button(Button::Kind::small, u"Copy"_s, this);
    m_output = new TextArea(TextArea::Kind::result, m_outputHeading->text(), this);
    m_status = new Label(TextRole::caption, &Colors::secondary, this);
    m_status->setMostLines(mostStatusLines);
}

void QuickActionsView::nameParts()
{
    m_read->setObjectName(u"read"_s);
    m_input->setObjectName(u"input"_s);
    for (auto* const button : m_transformations)
        button->setObjectName(button->text());
    m_models->setObjectName(u"models"_s);
    m_rewrite->setObjectName(u"rewrite"_s);
    m_refresh->setObjectName(u"refresh"_s);
    m_warning->setObjectName(u"warning"_s);
    m_copy->setObjectName(u"copy"_s);
    m_output->setObjectName(u"output"_s);
    m_status->setObjectName(u"status"_s);
    setAccessibleName(u"Actions"_s);
    Accessibility::describe(staticMetaObject,
        [](QWidget* widget) { return new QAccessibleWidget(widget, QAccessible::Grouping); });
}

void QuickActionsView::connectControls()
{
    connect(m_read, &Button::clicked, &m_model, &QuickActionsModel::readClipboard);
    connect(m_input, &TextArea::edited, this, [this] {
        m_shownInput = m_input->text();
        m_model.setInput(m_shownInput);
    });
    connect(m_input, &TextArea::pasteWanted, this, [this](QClipboard::Mode mode) {
        m_clipboard.readText(mode, m_input, [this](const QString& text) { m_input->insert(text); });
    });
    for (size_t index = 0; index < transformations.size(); ++index) {
        connect(m_transformations[index], &Button::clicked, &m_model, transformations[index].run);
    }
    connect(m_models, &Picker::chosen, this,
        [this](int index) { m_model.setModel(m_model.models().value(index)); });
    connect(m_rewrite, &Button::clicked, &m_model, &QuickActionsModel::rewrite);
    connect(m_refresh, &Button::clicked, &m_model, &QuickActionsModel::loadModels);
    connect(m_copy, &Button::clicked, &m_model, &QuickActionsModel::copy);
}

// A focus proxy would also be where the Tab key comes to first, past the button above it.
void QuickActionsView::focusInEvent(QFocusEvent* event)
{
    m_input->setFocus(event->reason());
}

void QuickActionsView::showEvent(QShowEvent*)
{
    m_model.readClipboard();
    m_model.loadModels();
}

void QuickActionsView::refresh()
{
    if (m_shownInput != m_model.input()) {
        m_shownInput = m_model.input();
        m_input->setText(m_shownInput);
    }
    for (auto* const button : m_transformations)
        button->setEnabled(m_model.canTransform());
    const auto models = m_model.models();
    m_models->setTitles(models.isEmpty() ? QStringList(u"No models"_s) : models);
    m_models->setCurrent(models.isEmpty() ? 0 : int(models.indexOf(m_model.model())));
    m_models->setEnabled(!models.isEmpty());
    m_rewrite->setText(m_model.busy() ? u"Rewriting…"_s : u"Rewrite with model"_s);
    // Qt would hand the keyboard on to whatever comes next; the result is what is waited for.
    if (m_rewrite->hasFocus() && m_model.busy())
        m_output->setFocus();
    m_rewrite->setEnabled(m_model.canRewrite());
    m_warning->setVisible(m_model.ollamaDown());
    m_copy->setEnabled(m_model.canCopy());
    if (m_output->text() != m_model.output())
        m_output->setText(m_model.output());
    m_status->setText(m_model.status());
    m_status->setVisible(!m_model.status().isEmpty());
    arrange();
}

// From the top down; the result takes what the others leave.
void QuickActionsView::arrange()
{
    QRect room = rect().adjusted(padding, padding, -padding, -padding);
    const auto takeTop = [&room](int height) {
        const QRect row(room.topLeft(), QSize(room.width(), height));
        room.setTop(room.top() + height + spacing);
        return row;
    };
    arrangeHeading(takeTop(m_read->boxSize().height()), m_inputHeading, m_read);
    m_input->placeBox(takeTop(inputHeight));
    const AdaptiveGrid grid(room.width(), leastColumn, gridSpacing, controlHeight);
    arrangeTransformations(takeTop(grid.height(int(m_transformations.size()))), grid);
    arrangeModels(takeTop(controlHeight));
    if (m_model.ollamaDown())
        m_warning->setGeometry(takeTop(m_warning->heightForWidth(room.width())));
    arrangeHeading(takeTop(m_copy->boxSize().height()), m_outputHeading, m_copy);
    if (!m_status->isHidden()) {
        const int height = m_status->heightForWidth(room.width());
        m_status->setGeometry(room.left(), room.bottom() + 1 - height, room.width(), height);
        room.setBottom(room.bottom() - height - spacing);
    }
    m_output->placeBox(room);
}

void QuickActionsView::arrangeHeading(const QRect& row, QWidget* heading, Button* button)
{
    const auto size = button->boxSize();
    const QRect atEnd({ row.right() + 1 - size.width(), row.top() }, size);
    heading->setGeometry(
        mirrored(row, { row.topLeft(), QSize(row.width() - size.width(), row.height()) }));
    button->placeBox(mirrored(row, atEnd));
}

void QuickActionsView::arrangeTransformations(const QRect& rows, const AdaptiveGrid& grid)
{
    int index = 0;
    for (auto* const button : m_transformations)
        button->placeBox(mirrored(rows, grid.cell(index++).translated(rows.topLeft())));
}

void QuickActionsView::arrangeModels(const QRect& row)
{
    const int icon = m_refresh->boxSize().width();
    const int picker = qMin(widestPicker, row.width() - rewriteWidth - icon - 2 * controlGap);
    int x = row.left();
    const auto take = [&](int width) {
        const QRect part(x, row.top(), width, row.height());
        x += width + controlGap;
        return mirrored(row, part);
    };
    m_models->placeBox(take(picker));
    m_rewrite->placeBox(take(rewriteWidth));
    m_refresh->placeBox(take(icon));
}

QRect QuickActionsView::mirrored(const QRect& row, const QRect& part) const
{
    return QStyle::visualRect(layoutDirection(), row, part);
}
