// A widget that places its parts itself: again whenever its size, font or direction changes.
#pragma once

#include <QWidget>

class ArrangedWidget : public QWidget {
    Q_OBJECT

protected:
    using QWidget::QWidget;

    virtual void arrange() = 0;

    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
};
