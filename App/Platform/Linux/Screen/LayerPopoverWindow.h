// The popover on sheets over all outputs, in a compositor's layer above windows and panels.
#pragma once

#include "App/Platform/Linux/Screen/LayerSheet.h"
#include "App/Platform/PopoverWindow.h"

#include <QElapsedTimer>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class LayerPopoverWindow final : public PopoverWindow {
    Q_OBJECT

public:
    LayerPopoverWindow(
        const LayerShell& shell, std::function<std::unique_ptr<QWidget>()> buildContent);
    ~LayerPopoverWindow() override;

    bool isShown() const override { return m_isShown; }
    // Where the item is nobody tells here; but who has just clicked it has the pointer there.
    void show(const QRect& anchor) override;
    void close() override;

private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    LayerSheet& sheet(size_t index);
    void openSheets();
    void hangFrom(LayerSheet& sheet, const std::optional<QPoint>& pointer);
    void hangAnywhere();
    bool filterOfHost(QEvent* event);
    void adopt(QWidget& window);

    const LayerShell& m_shell;
    std::function<std::unique_ptr<QWidget>()> m_buildContent;
    std::vector<std::unique_ptr<LayerSheet>>
        m_sheets; // One for each output there ever was at once.
    std::unique_ptr<QWidget> m_content;
    LayerSheet* m_host = nullptr; // Absent until it is known where the popover is to hang.
    std::optional<QPoint> m_item; // Where the pointer last was when the item was clicked.
    QTimer m_pointerIsElsewhere;
    QTimer m_freeing;
    QElapsedTimer m_sinceClosed;
    bool m_isShown = false;
};
