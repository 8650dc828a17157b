// A see-through window over all of an output, which takes every click there.
#pragma once

#include "App/Platform/Linux/Screen/LayerWindow.h"
#include "App/Platform/Linux/Screen/PopoverPlacement.h"

#include <QWidget>

#include <memory>

class LayerSheet final : public QWidget {
    Q_OBJECT

public:
    // Points. Farther from all edges of an output no panel has an item.
    static constexpr int thickestPanel = 96;

    explicit LayerSheet(const LayerShell& shell);
    ~LayerSheet() override;

    bool isShown() const { return m_window.isShown(); }
    bool isConfigured() const { return m_window.isConfigured(); } // It has its size.
    QScreen* screen() const { return m_window.screen(); }
    // In the sheet's own coordinates. Panels are taken to be at the edges that are nearest to a
    // place: the compositor tells only how much room they leave.
    ScreenSpace space(const QPoint& place) const;

    bool open(QScreen& screen);
    void takeKeyboard() { m_window.takeKeyboard(); }
    void close();
    // What it was painted in, which is as large as the output, until it is opened again.
    void freeMemory();

Q_SIGNALS:
    void entered(const QPoint& place); // The pointer came, or was there already.
    void clicked(const QPoint& place);
    void lost(); // Also when the output has another size now: it has to be opened again.

private:
    void enterEvent(QEnterEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

    // What panels are likely to take, of width and height, where the compositor counts none.
    QSize guess(const QPoint& place) const;

    struct Measure;

    const LayerShell& m_shell;
    LayerWindow m_window;
    std::unique_ptr<Measure> m_measure; // While the compositor is being asked.
    QSize m_free;
};
