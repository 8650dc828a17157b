#include "App/Ui/SegmentedPicker.h"
#include "App/Ui/Theme.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

struct Setup {
    Setup()
    {
        Theme::apply({});
        window.resize(400, 100);
        picker.placeBox({ 20, 30, 304, 24 });
        window.show();
    }

    QWidget* segment(int index) { return picker.findChildren<QWidget*>().at(index); }

    QWidget window;
    SegmentedPicker picker { u"Kind"_s, { u"App"_s, u"URL"_s, u"Shortcut"_s }, &window };
    QSignalSpy choices { &picker, &SegmentedPicker::chosen };
};

class SegmentedPickerTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theFirstIsChosenAtFirst()
    {
        Setup s;
        QCOMPARE(s.picker.current(), 0);
    }

    void aClickChooses()
    {
        Setup s;
        QTest::mouseClick(s.segment(2), Qt::LeftButton);
        QCOMPARE(s.picker.current(), 2);
        QCOMPARE(s.choices.takeFirst().at(0).toInt(), 2);
    }

    void choosingByProgramIsSilent()
    {
        Setup s;
        s.picker.setCurrent(1);
        s.picker.setCurrent(7);
        QCOMPARE(s.picker.current(), 1);
        QCOMPARE(s.choices.count(), 0);
    }

    void arrowsChooseAndStopAtTheEnds()
    {
        Setup s;
        QTest::keyClick(&s.picker, Qt::Key_Left);
        QCOMPARE(s.picker.current(), 0);
        QTest::keyClick(&s.picker, Qt::Key_Right);
        QCOMPARE(s.picker.current(), 1);
        QTest::keyClick(&s.picker, Qt::Key_End);
        QTest::keyClick(&s.picker, Qt::Key_Right);
        QCOMPARE(s.picker.current(), 2);
        QCOMPARE(s.choices.count(), 2);
    }

    void theSegmentsShareTheWidthInReadingOrder()
    {
        Setup s;
        QCOMPARE(s.segment(0)->geometry(), QRect(5, 3, 100, 24));
        QCOMPARE(s.segment(2)->geometry(), QRect(205, 3, 100, 24));
        s.picker.setLayoutDirection(Qt::RightToLeft);
        QCOMPARE(s.segment(0)->geometry(), QRect(205, 3, 100, 24));
        QTest::keyClick(&s.picker, Qt::Key_Left);
        QCOMPARE(s.picker.current(), 1);
    }

    void assistiveTechnologySeesANamedGroupOfChoices()
    {
        Setup s;
        auto* group = QAccessible::queryAccessibleInterface(&s.picker);
        QCOMPARE(group->role(), QAccessible::Grouping);
        QCOMPARE(group->text(QAccessible::Name), u"Kind"_s);
        QCOMPARE(group->childCount(), 3);
        auto* url = group->child(1);
        QCOMPARE(url->role(), QAccessible::RadioButton);
        QCOMPARE(url->text(QAccessible::Name), u"URL"_s);
        url->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QVERIFY(url->state().checked);
        QCOMPARE(s.picker.current(), 1);
    }
};

QTEST_MAIN(SegmentedPickerTest)
#include "SegmentedPickerTest.moc"
