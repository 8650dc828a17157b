#pragma once

#include "App/Platform/OverlayWindow.h"

#include <QList>
#include <QWidget>

#include <memory>
#include <utility>

// Keeps all that it was told, in its order.
struct FakeOverlayWindow final : OverlayWindow {
    struct Sight {
        QRect frame;
        QRect tab; // Around the shape, in global coordinates.
    };

    // What happened, also after the window is gone.
    struct Record {
        QList<QRect> frames;
        QList<Sight> sights; // One for each shape.
        QRegion shape;
        int ordered = 0; // To the front.
        int alive = 0;
    };

    FakeOverlayWindow(Record& kept, std::unique_ptr<QWidget> widget)
        : record(kept)
        , content(std::move(widget))
    {
        ++record.alive;
    }
    ~FakeOverlayWindow() override { --record.alive; }
    Q_DISABLE_COPY_MOVE(FakeOverlayWindow)

    void orderFront() override
    {
        ++record.ordered;
        content->show();
    }

    void setFrame(const QRect& frame) override
    {
        content->setGeometry(frame);
        record.frames << frame;
    }

    void setShape(const QRegion& shape) override
    {
        const auto frame = record.frames.last();
        record.shape = shape;
        record.sights.append({ frame, shape.boundingRect().translated(frame.topLeft()) });
    }

    Record& record;
    std::unique_ptr<QWidget> content;
};
