#include "App/Ui/TextField.h"
#include "App/Ui/Theme.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

struct Setup {
    Setup()
    {
        Theme::apply({});
        window.resize(300, 100);
        field.placeBox({ 20, 30, 150, 24 });
        window.show();
    }

    QColor at(const QPoint& position) { return field.grab().toImage().pixelColor(position); }

    // Opened anew, and closed at the end of this turn.
    QMenu* menu()
    {
        QContextMenuEvent event(
            QContextMenuEvent::Mouse, { 5, 5 }, field.mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(&field, &event);
        auto* const opened = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        opened->close();
        return opened;
    }

    QAction* menuEntry(const QString& words)
    {
        const auto actions = menu()->actions();
        const auto found = std::ranges::find_if(actions,
            [&](const QAction* action) { return action->text().section(u'\t', 0, 0) == words; });
        return found == actions.end() ? nullptr : *found;
    }

    QWidget window;
    TextField field { u"Label"_s, &window };
};

class TextFieldTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theVisibleBoxStandsWhereItIsPlaced()
    {
        Setup s;
        QCOMPARE(s.field.box().translated(s.field.pos()), QRect(20, 30, 150, 24));
    }

    void theCaretRestsWhenNobodyTypes()
    {
        Setup s;
        s.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&s.window));
        s.field.setFocus();
        QVERIFY(QApplication::cursorFlashTime() > 0);
        auto* const rest = s.field.findChild<QTimer*>();
        QVERIFY(rest->isActive());
        rest->setInterval(0);
        QTRY_COMPARE(QApplication::cursorFlashTime(), 0);
        QTest::keyClick(&s.field, Qt::Key_A);
        QVERIFY(QApplication::cursorFlashTime() > 0);
        QVERIFY(rest->isActive());
        s.field.clearFocus();
        QVERIFY(!rest->isActive());
    }

    void theCaretsGroundIsTheField()
    {
        Setup s;
        const QRect middle(80, 8, 4, 12);
        QImage image(s.field.size(), QImage::Format_RGB32);
        image.fill(Qt::red);
        s.field.render(&image, middle.topLeft(), middle, QWidget::RenderFlags());
        QCOMPARE(image.pixelColor(82, 12), Theme::current().colors.field);
        QCOMPARE(image.pixelColor(70, 12), QColor(Qt::red));
    }

    void anyFocusBringsTheRing()
    {
        Setup s;
        s.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&s.window));
        s.field.clearFocus();
        const QColor bare = s.at({ 70, 1 });
        s.field.setFocus(Qt::MouseFocusReason);
        QVERIFY(s.at({ 70, 1 }) != bare);
        QCOMPARE(s.at({ 70, 3 }), Theme::current().colors.mark);
        s.field.clearFocus();
        QCOMPARE(s.at({ 70, 1 }), bare);
    }

    void aNewThemeColoursFieldAndWords()
    {
        Setup s;
        Theme::apply({ .dark = true });
        const Colors& c = Theme::current().colors;
        QTRY_COMPARE(s.field.palette().color(QPalette::Text), c.text);
        QCOMPARE(s.at({ 100, 15 }), c.field);
    }

    void theFontFollowsTheTheme()
    {
        Setup s;
        Theme::apply({ .fontFamily = u"DejaVu Sans"_s });
        QTRY_COMPARE(s.field.font().family(), u"DejaVu Sans"_s);
        QCOMPARE(s.field.font().pixelSize(), 13);
    }

    void typingFillsIt()
    {
        Setup s;
        QTest::keyClicks(&s.field, u"Notes"_s);
        QCOMPARE(s.field.text(), u"Notes"_s);
    }

    void whoPastesDoesNotAskTheClipboardThroughQt()
    {
        Setup s;
        QSignalSpy wanted(&s.field, &TextField::pasteWanted);
        QApplication::clipboard()->setText(u"from Qt"_s);
        s.field.setText(u"text"_s);
        for (const auto& key : QKeySequence::keyBindings(QKeySequence::Paste))
            QTest::keySequence(&s.field, key);
        QCOMPARE(wanted.count(), QKeySequence::keyBindings(QKeySequence::Paste).size());
        s.menuEntry(u"&Paste"_s)->trigger();
        QCOMPARE(wanted.count(), QKeySequence::keyBindings(QKeySequence::Paste).size() + 1);
        QCOMPARE(s.field.text(), u"text"_s);
        for (const auto& wish : wanted)
            QCOMPARE(wish.first().value<QClipboard::Mode>(), QClipboard::Clipboard);
        s.field.setSelection(0, 2);
        s.field.insertPasted(QString());
        QCOMPARE(s.field.text(), u"text"_s);
        s.field.insertPasted(u"ne"_s);
        QCOMPARE(s.field.text(), u"next"_s);
    }

    void itsMenuOffersWhatCanBeDone()
    {
        Setup s;
        const auto offered = [&] {
            QStringList words;
            for (const auto* action : s.menu()->actions()) {
                if (action->isEnabled() && !action->isSeparator())
                    words << action->text().section(u'\t', 0, 0).remove(u'&');
            }
            return words;
        };
        QCOMPARE(offered(), QStringList(u"Paste"_s));
        QTest::keyClicks(&s.field, u"text"_s);
        QCOMPARE(offered(), QStringList({ u"Undo"_s, u"Paste"_s, u"Select All"_s }));
        s.menuEntry(u"Select All"_s)->trigger();
        QCOMPARE(s.field.selectedText(), u"text"_s);
        QCOMPARE(offered(),
            QStringList(
                { u"Undo"_s, u"Cut"_s, u"Copy"_s, u"Paste"_s, u"Delete"_s, u"Select All"_s }));
        s.menuEntry(u"&Copy"_s)->trigger();
        QCOMPARE(QApplication::clipboard()->text(), u"text"_s);
        s.menuEntry(u"Delete"_s)->trigger();
        QCOMPARE(s.field.text(), QString());
        s.menuEntry(u"&Undo"_s)->trigger();
        QCOMPARE(s.field.text(), u"text"_s);
        s.menuEntry(u"&Redo"_s)->trigger();
        QCOMPARE(s.field.text(), QString());
    }

    void thePlaceholderLeavesRoomForTheCaretAndGivesWayToWhatIsComposed()
    {
        Setup s;
        s.field.clearFocus(); // Without the caret, whose place is the column before.
        const auto inkedColumns = [&s] {
            const auto words = s.field.box().adjusted(6, 4, -6, -4);
            const auto image = s.field.grab(words).toImage();
            QList<int> columns;
            for (int x = 0; x < image.width(); ++x) {
                for (int y = 0; y < image.height(); ++y) {
                    if (image.pixelColor(x, y) != Theme::current().colors.field) {
                        columns << words.x() + x - s.field.box().x();
                        break;
                    }
                }
            }
            return columns;
        };
        const auto shown = inkedColumns().size();
        QVERIFY(shown > 15);
        QVERIFY(inkedColumns().first() > 8);
        QInputMethodEvent composing(u"n"_s, {});
        QCoreApplication::sendEvent(&s.field, &composing);
        QVERIFY(inkedColumns().size() < shown);
        QInputMethodEvent given;
        QCoreApplication::sendEvent(&s.field, &given);
        QCOMPARE(inkedColumns().size(), shown);
    }

    void itsPlaceholderIsItsName()
    {
        Setup s;
        auto* accessible = QAccessible::queryAccessibleInterface(&s.field);
        QCOMPARE(accessible->role(), QAccessible::EditableText);
        QCOMPARE(accessible->text(QAccessible::Name), u"Label"_s);
    }
};

QTEST_MAIN(TextFieldTest)
#include "TextFieldTest.moc"
