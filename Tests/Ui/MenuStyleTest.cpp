#include "App/Ui/MenuStyle.h"
#include "App/Ui/Theme.h"

#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QTest>
#include <QToolTip>

using namespace Qt::StringLiterals;

struct Setup {
    Setup()
    {
        Theme::apply({});
        first->setCheckable(true);
        first->setChecked(true);
        menu.setMinimumWidth(160);
        menu.popup({ 0, 0 });
    }

    QColor at(const QPoint& position) { return menu.grab().toImage().pixelColor(position); }
    // Where nothing but the ground of a row is painted.
    QPoint inRow(QAction* action) { return menu.actionGeometry(action).topRight() + QPoint(-8, 4); }

    QMenu menu;
    QAction* first = menu.addAction(u"llama"_s);
    QAction* second = menu.addAction(u"a && b"_s);
    QAction* separator = menu.addSeparator();
    QAction* third = menu.addAction(u"third"_s);
};

class MenuStyleTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(new MenuStyle); }

    void rowsStandInTheirPanel()
    {
        Setup s;
        QCOMPARE(s.menu.actionGeometry(s.first), QRect(4, 4, 152, 24));
        QCOMPARE(s.menu.actionGeometry(s.second).top(), 28);
        QCOMPARE(s.menu.actionGeometry(s.separator).height(), 9);
        QCOMPARE(s.menu.height(), 4 + 3 * 24 + 9 + 4);
    }

    void theRowThatIsMeantHasTheAccent()
    {
        Setup s;
        s.menu.setActiveAction(s.second);
        QCOMPARE(s.at(s.inRow(s.second)), Theme::current().colors.accent);
        QCOMPARE(s.at(s.inRow(s.first)), Theme::current().colors.menu);
    }

    void theChosenOneIsChecked()
    {
        Setup s;
        s.menu.setActiveAction(s.third);
        const auto signs = [&s](QAction* action) {
            const auto row = s.menu.actionGeometry(action);
            const auto image = s.menu.grab({ row.left() + 5, row.top() + 5, 14, 14 }).toImage();
            int inked = 0;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x)
                    inked += image.pixelColor(x, y) != Theme::current().colors.menu;
            }
            return inked;
        };
        QVERIFY(signs(s.first) > 0);
        QCOMPARE(signs(s.second), 0);
    }

    void itsCornersAreRound()
    {
        Setup s;
        QVERIFY(!s.menu.mask().contains(QPoint(0, 0)));
        QVERIFY(s.menu.mask().contains(QPoint(s.menu.width() / 2, 0)));
        QVERIFY(s.menu.mask().contains(QPoint(8, 8)));
    }

    void aTooltipIsOneLineHigh()
    {
        Theme::apply({ .dark = true });
        QWidget window;
        window.show();
        QToolTip::showText({ 20, 20 }, u"Check again"_s, &window);
        QTRY_VERIFY(QToolTip::isVisible());
        QWidget* tip = nullptr;
        for (auto* const widget : QApplication::topLevelWidgets()) {
            if (widget->inherits("QTipLabel"))
                tip = widget;
        }
        QVERIFY(tip);
        QVERIFY(qAbs(tip->height() - 22) <= 1);
        const auto& colors = Theme::current().colors;
        QCOMPARE(tip->grab().toImage().pixelColor(4, tip->height() / 2), colors.menu);
        QCOMPARE(tip->palette().color(QPalette::ToolTipText), colors.text);
        QToolTip::hideText();
    }
};

QTEST_MAIN(MenuStyleTest)
#include "MenuStyleTest.moc"
