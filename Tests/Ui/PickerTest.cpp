#include "App/Ui/Picker.h"
#include "App/Ui/Theme.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

struct Setup {
    Setup()
    {
        Theme::apply({});
        window.resize(300, 100);
        picker.placeBox({ 20, 30, 160, 24 });
        picker.setPlaceholder(u"No models"_s);
        picker.setTitles({ u"llama"_s, u"a & b"_s });
        window.show();
    }

    static QMenu* menu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }

    QWidget window;
    Picker picker { u"Model"_s, &window };
    QSignalSpy choices { &picker, &Picker::chosen };
};

class PickerTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothingChosenShowsThePlaceholder()
    {
        Setup s;
        QCOMPARE(s.picker.text(), u"No models"_s);
        s.picker.setCurrent(1);
        QCOMPARE(s.picker.text(), u"a & b"_s);
        s.picker.setTitles({ u"llama"_s });
        QCOMPARE(s.picker.current(), -1);
        QCOMPARE(s.choices.count(), 0);
    }

    void theMenuChooses()
    {
        Setup s;
        s.picker.setCurrent(0);
        QTest::mouseClick(&s.picker, Qt::LeftButton, {}, QPoint(40, 12));
        QTRY_VERIFY(Setup::menu());
        QCOMPARE(Setup::menu()->actions().at(1)->text(), u"a && b"_s);
        QVERIFY(Setup::menu()->actions().at(0)->isChecked());
        QTest::keyClick(Setup::menu(), Qt::Key_Down);
        QTest::keyClick(Setup::menu(), Qt::Key_Return);
        QCOMPARE(s.picker.current(), 1);
        QCOMPARE(s.choices.count(), 1);
    }

    void theMenuHasEachTitleInOneShortLine()
    {
        Setup s;
        s.picker.setTitles({ u"a\nb\tc"_s, QString(1'000'000, u'x') });
        QTest::keyClick(&s.picker, Qt::Key_Down);
        QTRY_VERIFY(Setup::menu());
        QCOMPARE(Setup::menu()->actions().at(0)->text(), u"a b c"_s);
        QCOMPARE(Setup::menu()->actions().at(1)->text(), QString(100, u'x') + u'…');
        QTest::keyClick(Setup::menu(), Qt::Key_Escape);
    }

    void theDownArrowOpensTheMenuAndEscapeChangesNothing()
    {
        Setup s;
        s.picker.setCurrent(0);
        QTest::keyClick(&s.picker, Qt::Key_Down);
        QTRY_VERIFY(Setup::menu());
        QTest::keyClick(Setup::menu(), Qt::Key_Escape);
        QTRY_VERIFY(!Setup::menu());
        QCOMPARE(s.picker.current(), 0);
        QCOMPARE(s.choices.count(), 0);
    }

    void assistiveTechnologyHearsNameAndChoice()
    {
        Setup s;
        s.picker.setCurrent(0);
        auto* accessible = QAccessible::queryAccessibleInterface(&s.picker);
        QCOMPARE(accessible->role(), QAccessible::ButtonMenu);
        QCOMPARE(accessible->text(QAccessible::Name), u"Model"_s);
        QCOMPARE(accessible->text(QAccessible::Value), u"llama"_s);
        QCOMPARE(accessible->text(QAccessible::Description), u"llama"_s);
    }
};

QTEST_MAIN(PickerTest)
#include "PickerTest.moc"
