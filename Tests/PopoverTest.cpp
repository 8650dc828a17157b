#include "App/Popover.h"
#include "App/Ui/Theme.h"
#include "Tests/Fakes/FakeCompositor.h"

#include <QScopeGuard>
#include <QTest>

#include <utility>

struct Setup {
    explicit Setup(bool composited)
    {
        compositor.running = composited;
        auto sheet = std::make_unique<QWidget>();
        sheet->setFixedSize(400, 500);
        content = sheet.get();
        popover = std::make_unique<Popover>(compositor, std::move(sheet));
    }

    void switchTo(bool composited)
    {
        compositor.running = composited;
        Q_EMIT compositor.changed();
    }

    // The window where only that part of it was painted.
    QImage painted(const QRect& part)
    {
        QImage image(popover->size(), QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        popover->render(&image, part.topLeft(), part, QWidget::DrawWindowBackground);
        return image;
    }

    // The pixel at a place of the sheet, which may lie outside of it.
    QColor at(int x, int y)
    {
        return painted(popover->rect()).pixelColor(content->pos() + QPoint(x, y));
    }

    FakeCompositor compositor;
    std::unique_ptr<Popover> popover;
    QWidget* content = nullptr;
};

class PopoverTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theContentFillsTheSheetInsideItsMargins_data()
    {
        QTest::addColumn<bool>("composited");
        QTest::newRow("composited") << true;
        QTest::newRow("plain") << false;
    }

    void theContentFillsTheSheetInsideItsMargins()
    {
        QFETCH(bool, composited);
        Setup s(composited);
        QCOMPARE(s.popover->contentsRect(), s.content->geometry());
        QCOMPARE(s.content->size(), QSize(400, 500));
    }

    void underACompositorAShadowSurroundsTheSheet()
    {
        Setup s(true);
        QVERIFY(s.popover->mask().isEmpty());
        QCOMPARE(s.at(200, 250).alpha(), 255);
        const int shade = s.at(200, 510).alpha();
        QVERIFY(shade > 0 && shade < 128);
    }

    void aPartPaintedAnewLooksAsBefore_data()
    {
        QTest::addColumn<bool>("dark");
        QTest::addColumn<QRect>("part");
        for (const bool dark : { false, true }) {
            const auto* const theme = dark ? "dark" : "light";
            QTest::addRow("%s, from side to side", theme) << dark << QRect(0, 60, 400, 14);
            QTest::addRow("%s, in the middle", theme) << dark << QRect(100, 60, 200, 14);
            QTest::addRow("%s, at the top", theme) << dark << QRect(0, 0, 400, 14);
        }
    }

    void aPartPaintedAnewLooksAsBefore()
    {
        QFETCH(bool, dark);
        QFETCH(QRect, part);
        const auto restore = qScopeGuard([] { Theme::apply({}); });
        ThemeChoice choice;
        choice.dark = dark;
        Theme::apply(choice);
        Setup s(true);
        const auto whole = s.painted(s.popover->rect());
        const auto box = part.translated(s.content->pos());
        QCOMPARE(s.painted(box).copy(box), whole.copy(box));
    }

    void withoutOneTheWindowIsCutToRoundedCorners()
    {
        Setup s(false);
        const auto mask = s.popover->mask();
        QVERIFY(!mask.contains(QPoint(0, 0)));
        QVERIFY(!mask.contains(s.popover->rect().bottomRight()));
        QVERIFY(mask.contains(QPoint(11, 0)));
        QVERIFY(mask.contains(s.popover->rect().center()));
    }

    void theSheetStaysWhereItIsWhenACompositorComes()
    {
        Setup s(false);
        s.popover->move(100, 50);
        const auto place = s.content->mapToGlobal(QPoint());
        s.switchTo(true);
        QCOMPARE(s.content->mapToGlobal(QPoint()), place);
    }

    void aCompositorMayComeAndGo()
    {
        Setup s(false);
        const auto plain = s.popover->size();
        s.switchTo(true);
        QVERIFY(s.popover->mask().isEmpty());
        QVERIFY(s.popover->width() > plain.width());
        s.switchTo(false);
        QVERIFY(!s.popover->mask().isEmpty());
        QCOMPARE(s.popover->size(), plain);
        QCOMPARE(s.popover->contentsRect(), s.content->geometry());
    }
};

QTEST_MAIN(PopoverTest)
#include "PopoverTest.moc"
