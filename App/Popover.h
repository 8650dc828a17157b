// The popover's body: the root view on a rounded sheet, with its shadow where one can be seen.
#pragma once

#include "App/Ui/Shadow.h"

#include <QWidget>

#include <memory>
#include <optional>

class Compositor;

class Popover final : public QWidget {
    Q_OBJECT

public:
    Popover(const Compositor& compositor, std::unique_ptr<QWidget> content);

private:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void adaptToCompositor();
    void paintInnerSides(QPainter& painter) const;
    void paintShadow(QPainter& painter);
    void paintSheet(QPainter& painter);

    const Compositor& m_compositor;
    QWidget* m_content;
    std::optional<Shadow> m_shadow;
};
