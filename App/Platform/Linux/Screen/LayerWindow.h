// A widget of no parent in the layer above windows and panels, on one output at a time.
#pragma once

#include "App/Platform/Linux/Screen/LayerShell.h"

#include <QObject>
#include <QPointer>
#include <QScreen>

#include <optional>

class QWidget;

class LayerWindow final : public QObject {
    Q_OBJECT

public:
    LayerWindow(const LayerShell& shell, QWidget& widget);
    ~LayerWindow() override;

    bool isShown() const { return m_surface.has_value(); }
    bool isConfigured() const { return m_isConfigured; }
    QScreen* screen() const { return m_screen; } // Null once the output is gone.

    // False when the screen stands for no output. A size is of no use to what is everywhere.
    bool show(QScreen& screen, LayerSurface::Place place, const QSize& size = {});
    void hide();
    void setSize(const QSize& size);
    void takeKeyboard();

Q_SIGNALS:
    void lost(); // The output went, or the compositor wants it no more.

private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void configure(const QSize& size);
    QSize acceptable(const QSize& given) const;
    void lose();

    const LayerShell& m_shell;
    QWidget& m_widget;
    QPointer<QScreen> m_screen;
    std::optional<LayerSurface> m_surface; // Absent while it is hidden.
    LayerSurface::Place m_place {};
    QSize m_wanted; // Empty for what is everywhere.
    bool m_isConfigured = false;
};
