#include "App/Shortcuts/ShortcutsView.h"
#include "App/Shortcuts/ShortcutEditor.h"
#include "App/Shortcuts/ShortcutGrid.h"
#include "App/Shortcuts/ShortcutTile.h"
#include "App/Ui/Button.h"
#include "App/Ui/ControlBox.h"
#include "App/Ui/Label.h"
#include "App/Ui/ScrollArea.h"
#include "App/Ui/SegmentedPicker.h"
#include "App/Ui/TextField.h"
#include "App/Ui/Theme.h"
#include "Tests/Fakes/FakeClipboard.h"
#include "Tests/Shortcuts/ShortcutsSetup.h"
#include "Tests/Ui/Painted.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QScrollBar>
#include <QTest>
#include <QToolTip>

#include <algorithm>

using namespace Qt::StringLiterals;

struct Setup : ShortcutsSetup {
    template <typename... T>
    explicit Setup(const T&... stored)
        : ShortcutsSetup(stored...)
    {
        Theme::apply({});
        window.resize(400, 439);
        view.setParent(&window);
        view.setGeometry(window.rect());
        window.show();
        window.activateWindow();
        settle();
    }

    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    template <typename T>
    T& find(const QString& name)
    {
        return *view.findChild<T*>(name);
    }

    Button& button(const QString& name) { return find<Button>(name); }
    TextField& field(const QString& name) { return find<TextField>(name); }
    QString text(const QString& name) { return find<Label>(name).text(); }
    Label& error() { return find<Label>(u"error"_s); }
    SegmentedPicker& kind() { return find<SegmentedPicker>(u"kind"_s); }
    ScrollArea& scroll() { return find<ScrollArea>(u"scroll"_s); }
    ShortcutGrid& grid() { return find<ShortcutGrid>(u"grid"_s); }
    ShortcutTile& tile(qsizetype index) { return static_cast<ShortcutTile&>(grid().cell(index)); }
    bool isEditorShown() { return view.findChild<ShortcutEditor*>(); }

    QStringList captions()
    {
        QStringList all;
        for (qsizetype i = 0; i < grid().count(); ++i)
            all << tile(i).text();
        return all;
    }

    void click(const QString& name)
    {
        QTest::mouseClick(&button(name), Qt::LeftButton);
        settle();
    }

    void tap(qsizetype index)
    {
        QTest::mouseClick(&tile(index), Qt::LeftButton);
        settle();
    }

    void press(Qt::Key key)
    {
        QTest::keyClick(QApplication::focusWidget(), key);
        settle();
    }

    // In edit mode, on the button at this place.
    void edit(qsizetype index)
    {
        click(u"edit"_s);
        tap(index);
    }

    void add()
    {
        click(u"edit"_s);
        click(u"add"_s);
    }

    void type(const QString& name, const QString& text)
    {
        field(name).clear();
        QTest::keyClicks(&field(name), text);
        settle();
    }

    void fail(const QByteArray& errors)
    {
        store.run(shortcut(u"Any"_s));
        runner.end({ false, errors });
        settle();
    }

    // In the view's coordinates.
    QRect boxOf(QWidget& control)
    {
        constexpr int margin = ControlBox::margin;
        return { control.mapTo(&view, QPoint(margin, margin)),
            control.size() - QSize(2 * margin, 2 * margin) };
    }

    QWidget window;
    FakeClipboard clipboard;
    ShortcutsView& view = *new ShortcutsView(store, clipboard);
};

static QList<ShortcutItem> many(int count)
{
    QList<ShortcutItem> items;
    for (int i = 0; i < count; ++i)
        items << Setup::app(QString::number(i));
    return items;
}

class ShortcutsViewTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsPastedIsAskedOfTheClipboard()
    {
        Setup s;
        s.add();
        s.clipboard.text = u"pasted"_s;
        for (const auto& name : { u"name"_s, u"target"_s, u"symbol"_s }) {
            s.field(name).clear();
            QTest::keySequence(&s.field(name), QKeySequence::Paste);
            QCOMPARE(s.field(name).text(), QString());
            s.clipboard.answer();
            QCOMPARE(s.field(name).text(), u"pasted"_s);
        }
        QTest::keySequence(&s.field(u"name"_s), QKeySequence::Paste);
        s.click(u"cancel"_s);
        s.clipboard.answer(); // The editor is gone.
        QVERIFY(s.clipboard.readings.isEmpty());
    }

    void aTapRunsTheButton()
    {
        Setup s;
        QCOMPARE(
            s.captions(), QStringList({ u"Safari"_s, u"Notes"_s, u"GitHub"_s, u"Terminal"_s }));
        s.tap(3);
        QCOMPARE(s.runner.commands.first().arguments, QStringList({ u"-a"_s, u"Terminal"_s }));
        s.tap(2);
        QCOMPARE(s.workspace.opened.size(), 1);
        QVERIFY(!s.isEditorShown());
    }

    void aTapBesideThePictureRunsItToo()
    {
        Setup s;
        QTest::mouseClick(
            &s.tile(0), Qt::LeftButton, {}, ControlBox::of(s.tile(0)).topLeft() + QPoint(1, 1));
        QCOMPARE(s.runner.commands.size(), 1);
    }

    void anAmpersandInACaptionMakesNoKey()
    {
        auto item = ShortcutsSetup::shortcut(u"Any"_s);
        item.name = u"R&Dept"_s;
        Setup s(QList { item });
        QVERIFY(s.tile(0).shortcut().isEmpty());
        QCOMPARE(s.captions(), QStringList { item.name });
    }

    void editModeIsEnteredAndLeft()
    {
        Setup s;
        QCOMPARE(s.text(u"heading"_s), u"Shortcuts"_s);
        QCOMPARE(s.button(u"edit"_s).text(), u"Edit"_s);
        QVERIFY(!s.button(u"add"_s).isVisible());
        s.click(u"edit"_s);
        QCOMPARE(s.text(u"heading"_s), u"Tap a button to edit it"_s);
        QCOMPARE(s.button(u"edit"_s).text(), u"Done"_s);
        QVERIFY(s.button(u"add"_s).isVisible());
        QVERIFY(s.tile(0).isEdited());
        s.click(u"edit"_s);
        QCOMPARE(s.text(u"heading"_s), u"Shortcuts"_s);
        QVERIFY(!s.button(u"add"_s).isVisible());
        QVERIFY(!s.tile(0).isEdited());
    }

    void aTapInEditModeOpensTheEditor()
    {
        Setup s;
        s.edit(2);
        QVERIFY(s.isEditorShown());
        QVERIFY(!s.scroll().isVisible());
        QVERIFY(s.workspace.opened.isEmpty());
        QCOMPARE(s.text(u"title"_s), u"Edit button"_s);
        QCOMPARE(s.field(u"name"_s).text(), u"GitHub"_s);
        QCOMPARE(s.field(u"target"_s).text(), u"https://github.com"_s);
        QCOMPARE(s.field(u"symbol"_s).text(), u"chevron.left.forwardslash.chevron.right"_s);
        QCOMPARE(s.kind().current(), 1);
        QVERIFY(s.button(u"delete"_s).isVisible());
        QVERIFY(s.field(u"name"_s).hasFocus());
    }

    void aNewButtonBeginsEmpty()
    {
        Setup s;
        s.add();
        QCOMPARE(s.text(u"title"_s), u"New button"_s);
        QCOMPARE(s.field(u"name"_s).text(), QString());
        QCOMPARE(s.field(u"target"_s).text(), QString());
        QCOMPARE(s.field(u"symbol"_s).text(), u"star"_s);
        QCOMPARE(s.kind().current(), 0);
        QVERIFY(!s.view.findChild<Button*>(u"delete"_s));
        QVERIFY(!s.button(u"save"_s).isEnabled());
    }

    void theTargetsPlaceholderFollowsTheKind()
    {
        Setup s;
        s.add();
        QStringList placeholders;
        for (const auto key : { Qt::Key_Home, Qt::Key_Right, Qt::Key_Right }) {
            QTest::keyClick(&s.kind(), key);
            placeholders << s.field(u"target"_s).placeholderText();
            QCOMPARE(s.field(u"target"_s).accessibleName(), placeholders.last());
        }
        QCOMPARE(placeholders,
            QStringList({ u"Safari or /Applications/Notes.app"_s, u"https://example.com"_s,
                u"Name of a Shortcuts shortcut"_s }));
        QCOMPARE(s.field(u"name"_s).placeholderText(), u"Label"_s);
        QCOMPARE(s.field(u"symbol"_s).placeholderText(), u"SF Symbol name"_s);
    }

    void aNewButtonGoesLastAndEditModeStays()
    {
        Setup s;
        s.add();
        s.type(u"name"_s, u"Timesheet"_s);
        QTest::keyClick(&s.kind(), Qt::Key_Right);
        s.type(u"target"_s, u"example.com/t"_s);
        s.type(u"symbol"_s, u"calendar"_s);
        s.click(u"save"_s);
        QVERIFY(!s.isEditorShown());
        QVERIFY(s.scroll().isVisible());
        QCOMPARE(s.names().last(), u"Timesheet"_s);
        const auto& item = s.store.items().last();
        QCOMPARE(item.kind, ShortcutKind::url);
        QCOMPARE(item.target, u"example.com/t"_s);
        QCOMPARE(item.symbol, u"calendar"_s);
        QVERIFY(s.stored() == s.store.items());
        QCOMPARE(s.tile(4).text(), u"Timesheet"_s);
        QCOMPARE(s.button(u"edit"_s).text(), u"Done"_s);
    }

    void anEditedButtonKeepsItsPlace()
    {
        Setup s;
        const auto id = s.store.items()[1].id;
        s.edit(1);
        s.type(u"name"_s, u"Paper"_s);
        s.click(u"save"_s);
        QCOMPARE(
            s.captions(), QStringList({ u"Safari"_s, u"Paper"_s, u"GitHub"_s, u"Terminal"_s }));
        QCOMPARE(s.store.items()[1].id, id);
    }

    void withoutALabelTheTargetIsTheCaption()
    {
        Setup s;
        s.add();
        s.type(u"target"_s, u"Notes"_s);
        s.click(u"save"_s);
        QCOMPARE(s.tile(4).text(), u"Notes"_s);
    }

    void anUnknownSymbolBecomesAStar()
    {
        Setup s;
        s.edit(0);
        s.type(u"symbol"_s, u"no.such.symbol"_s);
        s.click(u"save"_s);
        QCOMPARE(s.store.items()[0].symbol, u"star"_s);
        QCOMPARE(s.tile(0).symbol(), u"star"_s);
    }

    void onlyAnEmptyTargetCannotBeSaved()
    {
        Setup s;
        s.edit(0);
        s.type(u"target"_s, {});
        QVERIFY(!s.button(u"save"_s).isEnabled());
        QTest::keyClick(&s.field(u"name"_s), Qt::Key_Return);
        QVERIFY(s.isEditorShown());
        s.type(u"target"_s, u" "_s);
        QVERIFY(s.button(u"save"_s).isEnabled());
    }

    void returnSaves()
    {
        Setup s;
        s.edit(0);
        s.type(u"name"_s, u"Browser"_s);
        QTest::keyClick(&s.field(u"symbol"_s), Qt::Key_Return);
        QCOMPARE(s.names().first(), u"Browser"_s);
        Setup::settle();
        QVERIFY(!s.isEditorShown());
    }

    void cancelDropsTheChanges()
    {
        Setup s;
        s.edit(0);
        s.type(u"name"_s, u"Browser"_s);
        s.click(u"cancel"_s);
        QVERIFY(!s.isEditorShown());
        QCOMPARE(s.names().first(), u"Safari"_s);
        QCOMPARE(s.defaults.writes, 0);
    }

    void cancelAfterAddAddsNothing()
    {
        Setup s;
        s.add();
        s.type(u"target"_s, u"Mail"_s);
        s.click(u"cancel"_s);
        QCOMPARE(s.names().size(), 4);
        QCOMPARE(s.defaults.writes, 0);
        QVERIFY(s.button(u"add"_s).isVisible());
    }

    void deleteRemovesTheButton()
    {
        Setup s;
        s.edit(1);
        s.click(u"delete"_s);
        QVERIFY(!s.isEditorShown());
        QCOMPARE(s.names(), QStringList({ u"Safari"_s, u"GitHub"_s, u"Terminal"_s }));
        QVERIFY(s.stored() == s.store.items());
    }

    void aSecondPressOfTheEditorsButtonsDoesNothing_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("buttons");
        QTest::newRow("cancel") << u"cancel"_s << 4;
        QTest::newRow("delete") << u"delete"_s << 3;
        QTest::newRow("save") << u"save"_s << 4;
    }

    void aSecondPressOfTheEditorsButtonsDoesNothing()
    {
        QFETCH(const QString, name);
        Setup s;
        s.edit(1);
        auto& pressed = s.button(name);
        pressed.click();
        pressed.click(); // Out of sight, in the same turn.
        Setup::settle();
        QVERIFY(!s.isEditorShown());
        QTEST(int(s.store.items().size()), "buttons");
    }

    void anotherNewButtonTakesThePlaceOfTheDraft()
    {
        Setup s;
        s.edit(0);
        s.click(u"add"_s);
        QCOMPARE(s.text(u"title"_s), u"New button"_s);
        QCOMPARE(s.view.findChildren<ShortcutEditor*>().size(), 1);
    }

    void theDraftOutlivesEditModeAndChangesElsewhere()
    {
        Setup s;
        s.edit(0);
        s.type(u"name"_s, u"Mine"_s);
        s.click(u"edit"_s);
        s.storeElsewhere("[]");
        Setup::settle();
        QCOMPARE(s.field(u"name"_s).text(), u"Mine"_s);
        s.click(u"save"_s);
        QCOMPARE(s.names(), QStringList(u"Mine"_s));
    }

    void anEmptyGridShowsTheHeaderOnly()
    {
        Setup s(QByteArray("[]"));
        QCOMPARE(s.grid().findChildren<ShortcutTile*>().size(), 0);
        QVERIFY(s.button(u"edit"_s).isVisible());
        s.click(u"edit"_s);
        QVERIFY(s.button(u"add"_s).isVisible());
        s.view.setFocus();
        s.press(Qt::Key_Down);
        QCOMPARE(s.grid().current(), -1);
    }

    void aFailureIsShownUntilTheNextRun()
    {
        Setup s;
        QVERIFY(!s.error().isVisible());
        s.fail("No such application");
        QVERIFY(s.error().isVisible());
        QCOMPARE(s.error().text(), u"No such application"_s);
        const auto red = Theme::current().colors.redText;
        QCOMPARE(s.error().palette().color(QPalette::WindowText), red);
        s.tap(0);
        QVERIFY(!s.error().isVisible());
    }

    void theErrorStandsOnTheLastLine()
    {
        Setup s;
        s.fail("Command failed");
        QCOMPARE(s.error().geometry(), QRect(14, 439 - 14 - 14, 372, 14));
        QCOMPARE(s.scroll().geometry().bottom() + 1, 439 - 14 - 14 - 10);
        s.edit(0);
        QCOMPARE(s.error().geometry(), QRect(14, 240, 372, 14));
    }

    void anErrorThatGoesLeavesTheTilesUnderThePointer()
    {
        Setup s(many(100));
        auto& bar = *s.scroll().verticalScrollBar();
        s.fail("It failed\nin two lines");
        bar.setValue(bar.maximum());
        const auto before = s.boxOf(s.tile(98));
        s.store.run(Setup::shortcut(u"Good"_s));
        Setup::settle();
        QVERIFY(!s.error().isVisible());
        QCOMPARE(s.boxOf(s.tile(98)), before);
        bar.setValue(0);
        QCOMPARE(s.scroll().geometry().bottom() + 1, 439);
        s.fail("It failed");
        QCOMPARE(s.scroll().geometry().bottom() + 1, 439 - 14 - 14 - 10);
    }

    void onlyANameThatIsCutOffHasATooltip()
    {
        Setup s(QList<ShortcutItem> {
            Setup::app(u"Short"_s), Setup::app(u"A name that <i>no</i> tile can hold"_s) });
        const auto rest = [](ShortcutTile& tile) {
            QHelpEvent event(QEvent::ToolTip, {}, tile.mapToGlobal(QPoint(20, 20)));
            QApplication::sendEvent(&tile, &event);
            return QToolTip::isVisible() ? QToolTip::text() : QString();
        };
        QCOMPARE(
            rest(s.tile(1)), u"<span>A name that &lt;i&gt;no&lt;/i&gt; tile can hold</span>"_s);
        QTRY_COMPARE(rest(s.tile(0)), QString());
    }

    void aLongErrorIsCutAfterSixLines()
    {
        Setup s;
        const auto words = u"It failed and says so at length. "_s.repeated(1'000);
        s.fail(words.toUtf8());
        QCOMPARE(s.error().height(), 6 * 14);
        QCOMPARE(s.error().text(), words.trimmed());
    }

    void partsStandAsDrawn()
    {
        Setup s(many(7));
        QCOMPARE(s.boxOf(s.tile(0)), QRect(14, 44, 119, 66));
        QCOMPARE(s.boxOf(s.tile(1)), QRect(141, 44, 118, 66));
        QCOMPARE(s.boxOf(s.tile(2)), QRect(267, 44, 119, 66));
        QCOMPARE(s.boxOf(s.tile(3)), QRect(14, 118, 119, 66));
        s.click(u"edit"_s);
        const auto add = s.boxOf(s.button(u"add"_s));
        const auto done = s.boxOf(s.button(u"edit"_s));
        QCOMPARE(done.right(), 385);
        QCOMPARE(add.right() + 1 + 8, done.left());
        QCOMPARE(add.top(), 14);
    }

    void theEditorStandsAsDrawn()
    {
        Setup s;
        s.edit(0);
        const auto tops = [&](const QString& name) { return s.boxOf(s.find<QWidget>(name)).top(); };
        QCOMPARE(s.find<Label>(u"title"_s).mapTo(&s.view, QPoint()).y(), 44);
        QCOMPARE(tops(u"name"_s), 70);
        QCOMPARE(tops(u"kind"_s), 104);
        QCOMPARE(tops(u"target"_s), 138);
        QCOMPARE(tops(u"symbol"_s), 172);
        QCOMPARE(tops(u"save"_s), 206);
        QCOMPARE(s.boxOf(s.button(u"delete"_s)).left(), 14);
        QCOMPARE(s.boxOf(s.button(u"save"_s)), QRect(322, 206, 64, 24));
        QCOMPARE(s.boxOf(s.button(u"cancel"_s)).right() + 1 + 8, 322);
        QCOMPARE(s.boxOf(s.field(u"name"_s)), QRect(14, 70, 372, 24));
        // Also the rings around them are seen.
        auto& editor = s.find<ShortcutEditor>(u"editor"_s);
        QVERIFY(editor.rect().contains(s.field(u"name"_s).geometry()));
        QVERIFY(editor.rect().contains(s.button(u"save"_s).geometry()));
    }

    void fromRightToLeftAllIsMirrored()
    {
        Setup s(many(4));
        s.view.setLayoutDirection(Qt::RightToLeft);
        Setup::settle();
        QCOMPARE(s.boxOf(s.tile(0)), QRect(267, 44, 119, 66));
        QCOMPARE(s.boxOf(s.button(u"edit"_s)).left(), 14);
        s.tile(0).setFocus();
        s.press(Qt::Key_Left);
        QCOMPARE(s.grid().current(), 1);
    }

    void arrowsGoThroughTheTiles()
    {
        Setup s(many(7));
        s.view.setFocus();
        QList<qsizetype> way;
        for (const auto key : { Qt::Key_Down, Qt::Key_Down, Qt::Key_Right, Qt::Key_Up, Qt::Key_Left,
                 Qt::Key_Left, Qt::Key_End, Qt::Key_Down, Qt::Key_Home, Qt::Key_Up }) {
            s.press(key);
            way << s.grid().current();
        }
        QCOMPARE(way, QList<qsizetype>({ 0, 3, 4, 1, 0, 0, 6, 6, 0, 0 }));
    }

    void returnAndSpaceRunTheTile()
    {
        Setup s;
        s.tile(2).setFocus();
        s.press(Qt::Key_Return);
        s.press(Qt::Key_Space);
        QCOMPARE(s.workspace.opened.size(), 2);
    }

    void afterSavingTheKeyboardIsOnTheTile()
    {
        Setup s;
        s.click(u"edit"_s);
        s.tile(1).setFocus(Qt::TabFocusReason);
        s.press(Qt::Key_Return);
        QVERIFY(s.field(u"name"_s).hasFocus());
        s.press(Qt::Key_Return);
        QCOMPARE(s.grid().current(), 1);
        s.press(Qt::Key_Return);
        s.click(u"delete"_s);
        QCOMPARE(s.grid().current(), 1);
        QCOMPARE(s.tile(1).text(), u"GitHub"_s);
    }

    void afterCancelOfANewOneTheKeyboardIsOnAdd()
    {
        Setup s;
        s.add();
        s.click(u"cancel"_s);
        QVERIFY(s.button(u"add"_s).hasFocus());
    }

    void tenThousandTilesAreShownAndScrolled()
    {
        Setup s(many(10'000));
        QVERIFY(s.grid().findChildren<ShortcutTile*>().size() < 40);
        s.scroll().verticalScrollBar()->setValue(s.scroll().verticalScrollBar()->maximum());
        Setup::settle();
        QVERIFY(s.grid().findChildren<ShortcutTile*>().size() < 40);
        QVERIFY(s.scroll().viewport()->rect().contains(
            s.tile(9'999).mapTo(s.scroll().viewport(), s.tile(9'999).box().bottomLeft())));
        s.tile(9'999).setFocus();
        s.press(Qt::Key_Home);
        QCOMPARE(s.grid().current(), 0);
        QCOMPARE(s.scroll().verticalScrollBar()->value(), 0);
        s.view.setFocus();
        s.press(Qt::Key_PageDown);
        QVERIFY(s.scroll().verticalScrollBar()->value() > 0);
    }

    void theTileWithTheKeyboardKeepsItOutOfSight()
    {
        Setup s(many(100));
        s.tile(50).setFocus();
        s.scroll().verticalScrollBar()->setValue(0);
        Setup::settle();
        QCOMPARE(s.grid().current(), 50);
    }

    void tilesThatComeIntoSightAreInEditModeToo()
    {
        Setup s(many(100));
        s.click(u"edit"_s);
        s.scroll().verticalScrollBar()->setValue(s.scroll().verticalScrollBar()->maximum() / 2);
        Setup::settle();
        QVERIFY(s.tile(50).isEdited());
    }

    void assistiveTechnologyFindsEveryTile()
    {
        Setup s(many(100));
        auto* const list = QAccessible::queryAccessibleInterface(&s.grid());
        QCOMPARE(list->childCount(), 100);
        auto* const last = list->child(99);
        QCOMPARE(last->text(QAccessible::Name), u"99"_s);
        QCOMPARE(last->role(), QAccessible::Button);
        last->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(s.runner.commands.first().arguments.last(), u"99"_s);
    }

    void anUnchangedListIsNotPaintedAgain()
    {
        Setup s;
        const Painted tile(s.tile(0));
        s.store.setItems(s.store.items());
        Setup::settle();
        QCOMPARE(tile.count, 0);
    }

    void theStoreOutlivesTheView()
    {
        Setup s;
        delete &s.view;
        s.store.setItems({});
        Setup::settle();
        QVERIFY(s.names().isEmpty());
    }
};

QTEST_MAIN(ShortcutsViewTest)
#include "ShortcutsViewTest.moc"
