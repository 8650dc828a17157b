#include "App/Ui/TextArea.h"
#include "App/Ui/ScrollBar.h"
#include "App/Ui/Theme.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>

using namespace Qt::StringLiterals;

struct Setup {
    Setup()
    {
        Theme::apply({ .fontFamily = u"DejaVu Sans"_s });
        window.resize(400, 300);
        editor.placeBox({ 14, 14, 372, 100 });
        result.placeBox({ 14, 124, 372, 120 });
        window.show();
        window.activateWindow();
    }

    static void select(TextArea& area, int start, int end)
    {
        auto cursor = area.textCursor();
        cursor.setPosition(start);
        cursor.setPosition(end, QTextCursor::KeepAnchor);
        area.setTextCursor(cursor);
    }

    static QColor at(TextArea& area, const QPoint& position)
    {
        return area.grab().toImage().pixelColor(position);
    }

    static QString lines(int count)
    {
        QStringList all;
        for (int line = 0; line < count; ++line)
            all << u"line %1"_s.arg(line);
        return all.join(u'\n');
    }

    QWidget window;
    TextArea editor { TextArea::Kind::editor, u"Text"_s, &window };
    TextArea result { TextArea::Kind::result, u"Result"_s, &window };
    QSignalSpy edits { &editor, &TextArea::edited };
};

class TextAreaTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void typingIsTold()
    {
        Setup s;
        s.editor.setText(u"b"_s);
        QCOMPARE(s.edits.count(), 0);
        QTest::keyClicks(&s.editor, u"a"_s);
        QCOMPARE(s.editor.text(), u"ab"_s);
        QCOMPARE(s.edits.count(), 1);
    }

    void whatAnInputMethodOnlyShowsIsNoEdit()
    {
        Setup s;
        const QInputMethodEvent::Attribute caret(QInputMethodEvent::Cursor, 1, 1);
        s.editor.setText(u"a\r\nb"_s);
        // The first one is as some compositors have it sent with the keyboard.
        for (const auto& words : { QString(), u"かん"_s, u"漢"_s }) {
            QInputMethodEvent preedit(words, { caret });
            QCoreApplication::sendEvent(&s.editor, &preedit);
        }
        QCOMPARE(s.edits.count(), 0);
        QCOMPARE(s.editor.text(), u"a\r\nb"_s);
        QInputMethodEvent commit;
        commit.setCommitString(u"漢字"_s);
        QCoreApplication::sendEvent(&s.editor, &commit);
        QCOMPARE(s.edits.count(), 1);
        QCOMPARE(s.editor.text(), u"漢字a\nb"_s);
        QInputMethodEvent replacement;
        replacement.setCommitString(QString(), -1, 1);
        QCoreApplication::sendEvent(&s.editor, &replacement);
        QCOMPARE(s.editor.text(), u"漢a\nb"_s);
        QCOMPARE(s.edits.count(), 2);
    }

    void whatAnInputMethodShowsTakesThePlaceOfTheSelection()
    {
        Setup s;
        s.editor.setText(u"text"_s);
        s.select(s.editor, 0, 2);
        QInputMethodEvent caret({}, { { QInputMethodEvent::Cursor, 0, 1 } });
        QCoreApplication::sendEvent(&s.editor, &caret);
        QCOMPARE(s.edits.count(), 0);
        QInputMethodEvent preedit(u"か"_s, {});
        QCoreApplication::sendEvent(&s.editor, &preedit);
        QCOMPARE(s.edits.count(), 1);
        QCOMPARE(s.editor.text(), u"xt"_s);
    }

    void onlyEditsCanBeUndone()
    {
        Setup s;
        QVERIFY(!s.editor.document()->isUndoAvailable());
        s.editor.setText(u"text"_s);
        QVERIFY(!s.editor.document()->isUndoAvailable());
        QTest::keyClicks(&s.editor, u"a"_s);
        QVERIFY(s.editor.document()->isUndoAvailable());
    }

    void aResultIsOnlyRead()
    {
        Setup s;
        s.result.setText(u"b"_s);
        QTest::keyClicks(&s.result, u"a"_s);
        QMimeData pasted;
        pasted.setText(u"c"_s);
        QApplication::clipboard()->setText(u"c"_s);
        s.result.paste();
        QCOMPARE(s.result.text(), u"b"_s);
    }

    void aLineEndWithShiftIsALineEnd()
    {
        Setup s;
        QTest::keyClick(&s.editor, Qt::Key_Return, Qt::ShiftModifier);
        QTest::keyClick(&s.editor, Qt::Key_Return);
        QCOMPARE(s.editor.text(), u"\n\n"_s);
    }

    void theTabKeyLeaves()
    {
        Setup s;
        QVERIFY(QTest::qWaitForWindowActive(&s.window));
        s.editor.setFocus();
        QTest::keyClick(&s.editor, Qt::Key_Tab);
        QVERIFY(s.result.hasFocus());
        QCOMPARE(s.editor.text(), QString());
    }

    void whatIsCopiedHasNoLineEndsOfOurs()
    {
        Setup s;
        const QString text = u"x"_s.repeated(6000) + u"\nend"_s;
        s.result.setText(text);
        s.result.selectAll();
        s.result.copy();
        QCOMPARE(QApplication::clipboard()->text(), text);
    }

    void aLongParagraphThatIsPastedStaysOne()
    {
        Setup s;
        const QString text = u"word "_s.repeated(2000);
        s.editor.setText(u"ab"_s);
        s.editor.moveCursor(QTextCursor::End);
        s.editor.insert(text);
        QCOMPARE(s.editor.text(), u"ab"_s + text);
        QVERIFY(s.editor.document()->blockCount() > 3);
    }

    void onlyPlainTextIsDropped()
    {
        Setup s;
        QMimeData dragged;
        dragged.setHtml(u"<b>bold</b>"_s);
        dragged.setText(u"<b>plain</b>"_s);
        QDragEnterEvent enter({ 5, 5 }, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(s.editor.viewport(), &enter);
        QDropEvent drop({ 5, 5 }, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(s.editor.viewport(), &drop);
        QCOMPARE(s.editor.text(), u"<b>plain</b>"_s);
    }

    void whoPastesDoesNotAskTheClipboardThroughQt()
    {
        struct Watched : QMimeData {
            QVariant retrieveData(const QString&, QMetaType) const override
            {
                ++questions;
                return {};
            }
            bool hasFormat(const QString&) const override { return ++questions > 0; }
            QStringList formats() const override { return ++questions, QStringList(); }

            mutable int questions = 0;
        };
        Setup s;
        auto* const watched = new Watched;
        QApplication::clipboard()->setMimeData(watched);
        watched->questions = 0;
        QSignalSpy wishes(&s.editor, &TextArea::pasteWanted);
        QTest::keySequence(&s.editor, QKeySequence::Paste);
        QVERIFY(s.editor.canPaste());
        s.editor.paste();
        QCOMPARE(wishes.count(), 2);
        QCOMPARE(watched->questions, 0);
        QCOMPARE(s.edits.count(), 0);
        QApplication::clipboard()->clear();
    }

    void whatIsInsertedTakesThePlaceOfTheSelection()
    {
        Setup s;
        s.editor.setText(u"one two"_s);
        Setup::select(s.editor, 0, 3);
        s.editor.insert({});
        QCOMPARE(s.editor.text(), u"one two"_s);
        s.editor.insert(u"six"_s);
        QCOMPARE(s.editor.text(), u"six two"_s);
        QCOMPARE(s.edits.count(), 1);
    }

    void linesAreOfOneHeightWhateverTheFont()
    {
        Setup s;
        s.editor.setText(u"a\n∑\n⟦⟧\nÅ\nb"_s);
        for (int line = 0; line < 5; ++line) {
            QTextCursor cursor(s.editor.document()->findBlockByNumber(line));
            const auto caret = s.editor.cursorRect(cursor);
            QVERIFY(qAbs(caret.bottom() + 1 - 17 * (line + 1)) <= 1);
        }
    }

    void fiveLinesStandInTheEditor()
    {
        Setup s;
        s.editor.setText(Setup::lines(5));
        QCOMPARE(s.editor.verticalScrollBar()->maximum(), 0);
        s.editor.setText(Setup::lines(6));
        QCOMPARE(s.editor.verticalScrollBar()->maximum(), 1);
    }

    void itScrollsToTheLastLineAndNoFurther_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("lines") << Setup::lines(40);
        QTest::newRow("one paragraph") << u"some words "_s.repeated(170);
    }
    void itScrollsToTheLastLineAndNoFurther()
    {
        QFETCH(QString, text);
        Setup s;
        s.result.setText(text);
        s.result.moveCursor(QTextCursor::End);
        auto& bar = *s.result.verticalScrollBar();
        QCOMPARE(bar.value(), bar.maximum());
        const int bottom = s.result.cursorRect().bottom() + 1;
        QVERIFY(bottom <= s.result.viewport()->height());
        QVERIFY(bottom > s.result.viewport()->height() - 17);
    }

    void aLineThatIsAlmostTooLongMovesNothing()
    {
        Setup s;
        s.editor.setFocus();
        int widest = 0;
        connect(s.editor.horizontalScrollBar(), &QScrollBar::valueChanged, this,
            [&](int value) { widest = qMax(widest, value); });
        for (int width = 300; width < 340; ++width) {
            s.editor.placeBox({ 14, 14, width, 100 });
            s.editor.setText({});
            for (const auto letter :
                u"The release notes need a short paragraph about all of it"_s) {
                QTest::keyClicks(&s.editor, letter);
                QCoreApplication::processEvents();
                QCOMPARE(s.editor.horizontalScrollBar()->maximum(), 0);
            }
        }
        QCOMPARE(widest, 0);
    }

    void aNewTextShowsItsBeginning()
    {
        Setup s;
        s.result.setText(Setup::lines(40));
        s.result.moveCursor(QTextCursor::End);
        s.result.setText(Setup::lines(30));
        QCOMPARE(s.result.verticalScrollBar()->value(), 0);
    }

    void theSelectionHasNoGapsBetweenItsLines()
    {
        Setup s;
        s.result.setText(u"MMMMMM\nMMMMMM\nMMMMMM"_s);
        s.result.setFocus();
        s.result.selectAll();
        const auto image = s.result.grab().toImage();
        const int x = s.result.viewport()->x() + 3;
        const int top = s.result.viewport()->y();
        for (int y = top; y < top + 3 * 17; ++y) {
            const auto color = image.pixelColor(x, y);
            QVERIFY2(
                color != image.pixelColor(200, top + 60), qPrintable(QString::number(y - top)));
        }
        QCOMPARE(image.pixelColor(x, top), Theme::current().colors.accent);
    }

    void theFocusedEditorHasARing()
    {
        Setup s;
        QVERIFY(QTest::qWaitForWindowActive(&s.window));
        s.result.setFocus();
        const QColor bare = Setup::at(s.editor, { 100, 1 });
        s.editor.setFocus(Qt::MouseFocusReason);
        QVERIFY(Setup::at(s.editor, { 100, 1 }) != bare);
        QCOMPARE(Setup::at(s.editor, { 100, 3 }), Theme::current().colors.mark);
    }

    void theResultHasARingOnlyByKeyboard()
    {
        Setup s;
        QVERIFY(QTest::qWaitForWindowActive(&s.window));
        s.editor.setFocus();
        const QColor bare = Setup::at(s.result, { 100, 1 });
        s.result.setFocus(Qt::MouseFocusReason);
        QCOMPARE(Setup::at(s.result, { 100, 1 }), bare);
        s.editor.setFocus();
        s.result.setFocus(Qt::TabFocusReason);
        QVERIFY(Setup::at(s.result, { 100, 1 }) != bare);
    }

    void aClickLetsTheCaretBlinkAgain()
    {
        Setup s;
        QVERIFY(QTest::qWaitForWindowActive(&s.window));
        s.editor.setFocus();
        QApplication::setCursorFlashTime(0);
        QTest::mouseClick(s.editor.viewport(), Qt::LeftButton);
        QVERIFY(QApplication::cursorFlashTime() > 0);
    }

    void aNewThemeColoursGroundAndWords()
    {
        Setup s;
        Theme::apply({ .dark = true });
        QTRY_COMPARE(s.editor.palette().color(QPalette::Text), Theme::current().colors.text);
        QCOMPARE(Setup::at(s.editor, { 100, 50 }), Theme::current().colors.field);
    }

    void itsThumbStandsInsideTheBox()
    {
        Setup s;
        s.result.setText(Setup::lines(40));
        auto& bar = *s.result.findChild<ScrollBar*>();
        QVERIFY(!bar.thumb().isEmpty());
        QCOMPARE(bar.geometry().right(), s.result.box().right());
        QCOMPARE(bar.height(), s.result.box().height());
    }

    void assistiveTechnologyReadsAndWritesItsText()
    {
        Setup s;
        s.editor.setText(u"one\ntwo"_s);
        auto* const accessible = QAccessible::queryAccessibleInterface(&s.editor);
        QCOMPARE(accessible->text(QAccessible::Name), u"Text"_s);
        QCOMPARE(accessible->role(), QAccessible::EditableText);
        QCOMPARE(accessible->textInterface()->text(0, 7), u"one\ntwo"_s);
        accessible->editableTextInterface()->insertText(3, u"!"_s);
        QCOMPARE(s.editor.text(), u"one!\ntwo"_s);
        QVERIFY(QAccessible::queryAccessibleInterface(&s.result)->state().readOnly);
    }
};

QTEST_MAIN(TextAreaTest)
#include "TextAreaTest.moc"
