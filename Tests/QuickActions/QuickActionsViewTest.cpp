#include "App/QuickActions/QuickActionsView.h"
#include "App/Ui/Button.h"
#include "App/Ui/ControlBox.h"
#include "App/Ui/Label.h"
#include "App/Ui/Picker.h"
#include "App/Ui/TextArea.h"
#include "App/Ui/Theme.h"
#include "App/Ui/Warning.h"
#include "Tests/QuickActions/ActionsSetup.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QPushButton>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

struct Setup : ActionsSetup {
    Setup()
    {
        Theme::apply({});
        window.resize(400, 439);
        view.setGeometry(window.rect());
        window.show();
        window.activateWindow();
        settle();
    }

    template <typename T>
    T& find(const QString& name)
    {
        return *view.findChild<T*>(name);
    }

    Button& button(const QString& name) { return find<Button>(name); }
    TextArea& input() { return find<TextArea>(u"input"_s); }
    TextArea& output() { return find<TextArea>(u"output"_s); }
    Picker& models() { return find<Picker>(u"models"_s); }
    Warning& warning() { return find<Warning>(u"warning"_s); }
    Label& status() { return find<Label>(u"status"_s); }

    // How many of the four.
    int enabledTools()
    {
        return int(std::ranges::count_if(
            transformations, [this](const auto& title) { return button(title).isEnabled(); }));
    }

    void click(const QString& name)
    {
        QTest::mouseClick(&button(name), Qt::LeftButton);
        settle();
    }

    void type(const QString& text)
    {
        QTest::keyClicks(&input(), text);
        settle();
    }

    void startWith(const QString& text, const HttpResult& list)
    {
        copyElsewhere(text);
        answerModels(list);
    }

    static QRect boxOf(QWidget& control) { return control.geometry() - QMargins(3, 3, 3, 3); }

    const QStringList transformations { u"Summarize"_s, u"Fix spacing & case"_s, u"Make bullets"_s,
        u"Count words"_s };
    QWidget window;
    QuickActionsView& view = *new QuickActionsView(clipboard, client);
    const bool isInWindow = (view.setParent(&window), true);
};

class QuickActionsViewTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void openingReadsTheClipboardAndTheModels()
    {
        Setup s;
        s.startWith(u"Some text"_s, s.tags({ u"llama3.2:latest"_s, u"b"_s }));
        QCOMPARE(s.input().text(), u"Some text"_s);
        QVERIFY(s.status().isHidden());
        QCOMPARE(s.models().text(), u"llama3.2:latest"_s);
        QVERIFY(s.models().isEnabled());
        QCOMPARE(s.enabledTools(), 4);
        QVERIFY(s.button(u"rewrite"_s).isEnabled());
        QVERIFY(s.warning().isHidden());
    }

    void openingAgainReadsThemAgain()
    {
        Setup s;
        s.startWith(u"old"_s, s.tags({ u"a"_s }));
        s.click(u"Make bullets"_s);
        s.window.hide();
        s.window.show();
        s.startWith(u"new"_s, s.tags({ u"b"_s }));
        QCOMPARE(s.input().text(), u"new"_s);
        QCOMPARE(s.models().text(), u"b"_s);
        QCOMPARE(s.output().text(), u"• old"_s);
    }

    void withoutTextOnTheClipboardItSaysSo()
    {
        Setup s;
        s.startWith({}, s.tags({ u"a"_s }));
        QCOMPARE(s.input().text(), QString());
        QCOMPARE(s.status().text(), u"Clipboard has no text"_s);
        QVERIFY(s.status().isVisible());
        QCOMPARE(s.enabledTools(), 0);
        QVERIFY(!s.button(u"rewrite"_s).isEnabled());
    }

    void theButtonReadsTheClipboardAgain()
    {
        Setup s;
        s.startWith({}, s.stopped());
        s.click(u"read"_s);
        s.copyElsewhere(u"text"_s);
        QCOMPARE(s.input().text(), u"text"_s);
        QVERIFY(s.status().isHidden());
    }

    void whatIsPastedComesWhenItsOwnerAnswers()
    {
        Setup s;
        s.startWith(u"old "_s, s.stopped());
        s.input().moveCursor(QTextCursor::End);
        QGuiApplication::clipboard()->setText(u"what Qt knows"_s);
        QTest::keySequence(&s.input(), QKeySequence::Paste);
        s.settle();
        QCOMPARE(s.input().text(), u"old "_s);
        s.copyElsewhere(u"new"_s);
        QCOMPARE(s.input().text(), u"old new"_s);
        s.click(u"Make bullets"_s);
        QCOMPARE(s.output().text(), u"• old new"_s);
    }

    void oneCharacterEnablesTheToolsAndOnlyWithAModelTheRewrite()
    {
        Setup s;
        s.startWith({}, s.stopped());
        s.type(u"x"_s);
        QCOMPARE(s.enabledTools(), 4);
        QVERIFY(!s.button(u"rewrite"_s).isEnabled());
        s.click(u"refresh"_s);
        s.answerModels(s.tags({ u"a"_s }));
        QVERIFY(s.button(u"rewrite"_s).isEnabled());
        QTest::keyClick(&s.input(), Qt::Key_Backspace);
        s.settle();
        QCOMPARE(s.enabledTools(), 0);
        QVERIFY(!s.button(u"rewrite"_s).isEnabled());
    }

    void theToolsShowTheirResult_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("result");
        QTest::newRow("summarize") << u"Summarize"_s << u"so  do it"_s;
        QTest::newRow("fix") << u"Fix spacing & case"_s << u"So do it"_s;
        QTest::newRow("bullets") << u"Make bullets"_s << u"• so  do it"_s;
        QTest::newRow("count") << u"Count words"_s
                               << u"3 words · 10 characters · 1 sentences · ~1 min read"_s;
    }
    void theToolsShowTheirResult()
    {
        QFETCH(QString, button);
        QFETCH(QString, result);
        Setup s;
        s.startWith(u"so  do it "_s, s.stopped());
        QVERIFY(!s.button(u"copy"_s).isEnabled());
        s.click(button);
        QCOMPARE(s.output().text(), result);
        QVERIFY(s.button(u"copy"_s).isEnabled());
    }

    void theyWorkOnWhatWasTyped()
    {
        Setup s;
        s.startWith(u"b"_s, s.stopped());
        s.type(u"a"_s);
        s.click(u"Make bullets"_s);
        QCOMPARE(s.output().text(), u"• ab"_s);
    }

    void copyPutsTheResultOnTheClipboardAndSaysSo()
    {
        Setup s;
        s.startWith(u"text"_s, s.stopped());
        s.click(u"Make bullets"_s);
        s.click(u"copy"_s);
        QCOMPARE(s.clipboard.text, u"• text"_s);
        QCOMPARE(s.status().text(), u"Copied to clipboard"_s);
    }

    void aStoppedServerIsWarnedOfUntilItIsFound()
    {
        Setup s;
        s.startWith(u"text"_s, s.stopped());
        QVERIFY(s.warning().isVisible());
        QCOMPARE(s.warning().text(),
            u"Ollama isn't running. Start it (ollama serve) and it will be found at "
            "http://localhost:11434."_s);
        QCOMPARE(s.models().text(), u"No models"_s);
        QVERIFY(!s.models().isEnabled());
        QVERIFY(!s.button(u"rewrite"_s).isEnabled());
        s.click(u"refresh"_s);
        s.answerModels(s.tags({ u"a"_s, u"b"_s }));
        QVERIFY(s.warning().isHidden());
        QCOMPARE(s.models().text(), u"a"_s);
        QVERIFY(s.models().isEnabled());
    }

    void aServerWithoutModelsTellsHowToGetOne()
    {
        Setup s;
        s.startWith(u"text"_s, s.tags({}));
        QCOMPARE(
            s.status().text(), u"Ollama is running but has no models. Try: ollama pull llama3.2"_s);
        QCOMPARE(s.models().text(), u"No models"_s);
        QVERIFY(!s.models().isEnabled());
        QVERIFY(s.warning().isHidden());
    }

    void theChosenModelRewritesAndStaysChosen()
    {
        Setup s;
        s.startWith(u"text"_s, s.tags({ u"a"_s, u"b"_s }));
        QTest::keyClick(&s.models(), Qt::Key_Down);
        QTRY_VERIFY(QApplication::activePopupWidget());
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Down);
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Return);
        s.settle();
        QCOMPARE(s.models().text(), u"b"_s);
        s.click(u"refresh"_s);
        s.answerModels(s.tags({ u"a"_s, u"b"_s }));
        QCOMPARE(s.models().text(), u"b"_s);
        s.click(u"rewrite"_s);
        const auto body = QJsonDocument::fromJson(s.client.exchanges.first().request.body);
        QCOMPARE(body[u"model"_s].toString(), u"b"_s);
    }

    void theRewriteButtonTellsThatItIsAtWork_data()
    {
        QTest::addColumn<HttpResult>("result");
        QTest::newRow("succeeds") << HttpResult(QByteArray(R"({"response": "Better."})"));
        QTest::newRow("fails") << HttpResult(QByteArray(R"({"error": "no"})"));
    }
    void theRewriteButtonTellsThatItIsAtWork()
    {
        QFETCH(HttpResult, result);
        Setup s;
        s.startWith(u"text"_s, s.tags({ u"a"_s }));
        auto& rewrite = s.button(u"rewrite"_s);
        QCOMPARE(rewrite.text(), u"Rewrite with model"_s);
        s.click(u"rewrite"_s);
        QCOMPARE(rewrite.text(), u"Rewriting…"_s);
        QVERIFY(!rewrite.isEnabled());
        QCOMPARE(s.enabledTools(), 4);
        QVERIFY(s.models().isEnabled());
        QVERIFY(s.button(u"refresh"_s).isEnabled());
        s.answerRewrite(result);
        QCOMPARE(rewrite.text(), u"Rewrite with model"_s);
        QVERIFY(rewrite.isEnabled());
    }

    void aFailedRewriteSaysWhyAndKeepsTheResult()
    {
        Setup s;
        s.startWith(u"text"_s, s.tags({ u"x"_s }));
        s.click(u"Make bullets"_s);
        s.click(u"rewrite"_s);
        s.answerRewrite(QByteArray(R"({"error": "model 'x' not found"})"));
        QCOMPARE(s.status().text(), u"Rewrite failed: model 'x' not found"_s);
        QCOMPARE(s.output().text(), u"• text"_s);
    }

    void whatIsSaidInSeveralLinesIsReadToItsEnd()
    {
        Setup s;
        s.startWith(u"text"_s, s.tags({ u"x"_s }));
        s.click(u"rewrite"_s);
        s.answerRewrite(QByteArray(R"({"error": "model requires more system memory (5.6 GiB) )"
                                   R"(than is available (3.1 GiB), and another one does not"})"));
        QCOMPARE(s.status().geometry(), QRect(14, 397, 372, 28));
        QCOMPARE(s.boxOf(s.output()).bottom() + 1, 387);
    }

    void whatIsSaidWithoutEndTakesFiveLines()
    {
        Setup s;
        s.startWith(u"text"_s, s.tags({ u"x"_s }));
        s.click(u"rewrite"_s);
        s.answerRewrite("{\"error\": \"" + QByteArray("on and ").repeated(100000) + "\"}");
        QCOMPARE(s.status().geometry(), QRect(14, 355, 372, 70));
    }

    void theKeyboardGoesToTheResultThatIsWaitedFor()
    {
        Setup s;
        s.startWith(u"text"_s, s.tags({ u"a"_s }));
        s.button(u"rewrite"_s).setFocus(Qt::TabFocusReason);
        QTest::keyClick(&s.button(u"rewrite"_s), Qt::Key_Space);
        s.settle();
        QVERIFY(s.output().hasFocus());
    }

    void theKeyboardReachesEverythingInOrder()
    {
        Setup s;
        s.startWith(u"text"_s, s.tags({ u"a"_s }));
        s.click(u"Make bullets"_s);
        QPushButton before(&s.window);
        before.show();
        QWidget::setTabOrder(&before, &s.view);
        QWidget::setTabOrder(&s.view, &s.button(u"read"_s));
        before.setFocus();
        QStringList reached;
        for (int step = 0; step < 11; ++step) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            reached << QApplication::focusWidget()->objectName();
        }
        const QStringList expected { u"read"_s, u"input"_s, u"Summarize"_s, u"Fix spacing & case"_s,
            u"Make bullets"_s, u"Count words"_s, u"models"_s, u"rewrite"_s, u"refresh"_s, u"copy"_s,
            u"output"_s };
        QCOMPARE(reached, expected);
    }

    void keystrokesGoToTheText()
    {
        Setup s;
        s.view.setFocus();
        QVERIFY(s.input().hasFocus());
    }

    void assistiveTechnologyHearsNames()
    {
        Setup s;
        const auto nameOf = [](QWidget& widget) {
            return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name);
        };
        QCOMPARE(nameOf(s.view), u"Actions"_s);
        QCOMPARE(nameOf(s.input()), u"Clipboard text"_s);
        QCOMPARE(nameOf(s.output()), u"Result"_s);
        QCOMPARE(nameOf(s.models()), u"Model"_s);
        QCOMPARE(nameOf(s.button(u"refresh"_s)), u"Check for Ollama again"_s);
        QCOMPARE(s.button(u"refresh"_s).toolTip(), u"Check for Ollama again"_s);
    }

    void everythingStandsInItsPlace()
    {
        Setup s;
        s.startWith(u"text"_s, s.tags({ u"a"_s }));
        QCOMPARE(s.boxOf(s.button(u"read"_s)).right() + 1, 386);
        QCOMPARE(s.boxOf(s.button(u"read"_s)).top(), 14);
        QCOMPARE(s.boxOf(s.input()), QRect(14, 44, 372, 100));
        QCOMPARE(s.boxOf(s.button(u"Summarize"_s)), QRect(14, 154, 120, 24));
        QCOMPARE(s.boxOf(s.button(u"Fix spacing & case"_s)), QRect(140, 154, 120, 24));
        QCOMPARE(s.boxOf(s.button(u"Make bullets"_s)), QRect(266, 154, 120, 24));
        QCOMPARE(s.boxOf(s.button(u"Count words"_s)), QRect(14, 184, 120, 24));
        QCOMPARE(s.boxOf(s.models()), QRect(14, 218, 160, 24));
        QCOMPARE(s.boxOf(s.button(u"rewrite"_s)), QRect(182, 218, 168, 24));
        QCOMPARE(s.boxOf(s.button(u"refresh"_s)), QRect(358, 218, 28, 24));
        QCOMPARE(s.boxOf(s.button(u"copy"_s)).top(), 252);
        QCOMPARE(s.boxOf(s.output()), QRect(14, 282, 372, 143));
    }

    void warningAndStatusTakeTheirRoomFromTheResult()
    {
        Setup s;
        s.startWith({}, s.stopped());
        QCOMPARE(s.warning().geometry(), QRect(14, 252, 372, 28));
        QCOMPARE(s.boxOf(s.button(u"copy"_s)).top(), 290);
        QCOMPARE(s.status().geometry(), QRect(14, 411, 372, 14));
        QCOMPARE(s.boxOf(s.output()), QRect(14, 320, 372, 81));
    }

    void fromRightToLeftAllIsMirrored()
    {
        Setup s;
        s.view.setLayoutDirection(Qt::RightToLeft);
        s.startWith(u"text"_s, s.tags({ u"a"_s }));
        QCOMPARE(s.boxOf(s.button(u"Summarize"_s)), QRect(266, 154, 120, 24));
        QCOMPARE(s.boxOf(s.models()), QRect(226, 218, 160, 24));
        QCOMPARE(s.boxOf(s.button(u"read"_s)).left(), 14);
    }
};

QTEST_MAIN(QuickActionsViewTest)
#include "QuickActionsViewTest.moc"
