#include "App/Platform/Linux/Screen/X11Compositor.h"
#include "App/Platform/Linux/Screen/X11OverlayWindow.h"
#include "App/Platform/Linux/Screen/X11PopoverWindow.h"

#include <QTest>
#include <QWidget>

// The offscreen platform stands for any that is not X11.
class WithoutX11Test final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothingComposites()
    {
        const X11Compositor compositor;
        QVERIFY(!compositor.isRunning());
    }

    void theOverlayIsStillShown()
    {
        const X11Compositor compositor;
        auto content = std::make_unique<QWidget>();
        const auto& shown = *content;
        X11OverlayWindow overlay(compositor, std::move(content));
        overlay.setFrame({ 0, 0, 150, 30 });
        overlay.setShape(QRect(0, 0, 150, 30));
        overlay.orderFront();
        QTest::qWait(200); // It is raised again a moment later.
        QVERIFY(shown.isVisible());
    }

    void thePopoverStillOpensAndCloses()
    {
        X11PopoverWindow popover([] { return std::make_unique<QWidget>(); });
        popover.show({});
        QVERIFY(popover.isShown());
        QWidget other;
        other.show();
        other.activateWindow();
        QTRY_VERIFY(!popover.isShown());
    }
};

QTEST_MAIN(WithoutX11Test)
#include "WithoutX11Test.moc"
