#include "App/Meetings/MeetingsView.h"
#include "App/Meetings/AccessPrompt.h"
#include "App/Meetings/EventList.h"
#include "App/Meetings/EventRow.h"
#include "App/Meetings/NextMeetingCard.h"
#include "App/Ui/Button.h"
#include "App/Ui/ControlBox.h"
#include "App/Ui/Label.h"
#include "App/Ui/ScrollArea.h"
#include "App/Ui/Theme.h"
#include "Tests/Fakes/FakeAddressOpener.h"
#include "Tests/Fakes/FakeAudioInput.h"
#include "Tests/Fakes/FakeUserDefaults.h"
#include "Tests/Meetings/TodaySetup.h"
#include "Tests/Ui/Painted.h"

#include <QAccessible>
#include <QScrollBar>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

// Before anybody asks for it: a day of 24 hours.
static const bool isBritish = qputenv("LC_ALL", "en_GB.UTF-8");

struct Setup : TodaySetup {
    Setup()
    {
        Theme::apply({});
        window.resize(400, 439);
        input.switches = { { mainElement, {} } };
    }

    // As it is once the user has allowed access, some time before.
    void grant() { store.status = AuthorizationStatus::fullAccess; }

    void show()
    {
        view = std::make_unique<MeetingsView>(model, input, defaults, opener);
        view->setParent(&window);
        view->setGeometry(window.rect());
        window.show();
        window.activateWindow();
        view->show();
        settle();
    }

    void showTypicalDay()
    {
        addTypicalDay();
        grant();
        show();
    }

    void minuteAt(int hour, int minute)
    {
        clock.time = at(hour, minute);
        minutes.fire();
        settle();
    }

    static void settle() { QCoreApplication::processEvents(); }

    // As the window system asks for it, some time after a change.
    void paintWhatIsDue()
    {
        QEvent request(QEvent::UpdateRequest);
        QCoreApplication::sendEvent(&window, &request);
    }

    template <typename T>
    T& find(const QString& name) const
    {
        return *view->findChild<T*>(name);
    }

    Button& mute() const { return find<Button>(u"mute"_s); }
    Label& note() const { return find<Label>(u"note"_s); }
    NextMeetingCard& card() const { return find<NextMeetingCard>(u"card"_s); }
    Button& cardJoin() const { return find<Button>(u"join"_s); }
    ScrollArea& scroll() const { return find<ScrollArea>(u"scroll"_s); }
    EventList& list() const { return *view->findChild<EventList*>(); }
    EventRow& row(qsizetype index) const { return static_cast<EventRow&>(list().cell(index)); }

    QStringList shownRows() const
    {
        QStringList shown;
        for (const auto* const cell : list().cells()) {
            const auto* const row = static_cast<const EventRow*>(cell);
            if (row && row->isVisible())
                shown << row->line().title + u'|' + row->line().time;
        }
        return shown;
    }

    // Which of the bodies is to be seen.
    QStringList bodies() const
    {
        QStringList shown;
        for (const auto& name : { u"denied"_s, u"noEvents"_s, u"scroll"_s, u"notAsked"_s }) {
            if (find<QWidget>(name).isVisible())
                shown << name;
        }
        return shown;
    }

    // Of what the eye sees, in the view's coordinates.
    QRect placeOf(const QWidget& widget) const
    {
        const QRect place(widget.mapTo(view.get(), QPoint()), widget.size());
        const int m = qobject_cast<const Button*>(&widget) ? ControlBox::margin : 0;
        return place.adjusted(m, m, -m, -m);
    }

    QColor colorAt(int x, int y) const { return view->grab().toImage().pixelColor(x, y); }

    QAccessibleInterface& accessible(QWidget& widget) const
    {
        return *QAccessible::queryAccessibleInterface(&widget);
    }

    FakeAudioInput input;
    FakeUserDefaults defaults;
    FakeAddressOpener opener;
    QWidget window;
    std::unique_ptr<MeetingsView> view;
};

class MeetingsViewTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void beforeAccessWasAskedForItIsOffered()
    {
        Setup s;
        s.show();
        QCOMPARE(s.bodies(), QStringList { u"notAsked"_s });
        auto& prompt = s.find<AccessPrompt>(u"notAsked"_s);
        QCOMPARE(prompt.findChild<Label*>(u"text"_s)->text(),
            u"Corvella shows today's events and finds meeting links."_s);
        QCOMPARE(prompt.button().text(), u"Allow calendar access"_s);
        QVERIFY(s.card().isHidden());
        QCOMPARE(s.find<Label>(u"heading"_s).text(), u"Today"_s);
    }

    void onceGrantedTheListIsThereWithoutReopening()
    {
        Setup s;
        s.addTypicalDay();
        s.show();
        QTest::mouseClick(&s.find<AccessPrompt>(u"notAsked"_s).button(), Qt::LeftButton);
        QCOMPARE(s.bodies(), QStringList { u"notAsked"_s });
        s.store.pendingRequest(true);
        s.settle();
        QCOMPARE(s.bodies(), QStringList { u"scroll"_s });
        QCOMPARE(s.shownRows().size(), 5);
        QVERIFY(s.card().isVisible());
    }

    void onceRefusedTheSettingsAreOffered()
    {
        Setup s;
        s.show();
        QTest::mouseClick(&s.find<AccessPrompt>(u"notAsked"_s).button(), Qt::LeftButton);
        s.store.pendingRequest(false);
        s.settle();
        QCOMPARE(s.bodies(), QStringList { u"denied"_s });
        auto& prompt = s.find<AccessPrompt>(u"denied"_s);
        QCOMPARE(prompt.findChild<Label*>(u"text"_s)->text(),
            u"Calendar access is off. Allow it in System Settings → Privacy & Security → Calendars."_s);
        QCOMPARE(prompt.button().text(), u"Open Settings"_s);
        QTest::mouseClick(&prompt.button(), Qt::LeftButton);
        QCOMPARE(s.opener.opened,
            QStringList(
                u"x-apple.systempreferences:com.apple.preference.security?Privacy_Calendars"_s));
    }

    void aDayWithoutEventsSaysSo()
    {
        Setup s;
        s.grant();
        s.show();
        QCOMPARE(s.bodies(), QStringList { u"noEvents"_s });
        QCOMPARE(s.find<Label>(u"noEvents"_s).text(), u"No events today."_s);
        QVERIFY(s.card().isHidden());
    }

    void accessThatIsTakenAwayLeavesTheCard()
    {
        Setup s;
        s.showTypicalDay();
        s.store.status = AuthorizationStatus::denied;
        s.window.hide();
        s.window.show();
        s.settle();
        QCOMPARE(s.bodies(), QStringList { u"denied"_s });
        QVERIFY(s.card().isVisible());
    }

    void everyAppearanceAsksForAccessAndTheMicrophone()
    {
        Setup s;
        s.show();
        QCOMPARE(s.store.checks, 1);
        QCOMPARE(s.mute().text(), u"Mute microphone"_s);
        s.window.hide();
        s.input.switches[mainElement].value = 1;
        s.grant();
        s.window.show();
        QCOMPARE(s.store.checks, 2);
        QCOMPARE(s.mute().text(), u"Unmute microphone"_s);
        s.settle();
        QCOMPARE(s.bodies(), QStringList { u"noEvents"_s });
    }

    void nothingIsAskedBeforeTheViewIsSeen()
    {
        Setup s;
        s.view = std::make_unique<MeetingsView>(s.model, s.input, s.defaults, s.opener);
        QCOMPARE(s.store.checks, 0);
        QVERIFY(!s.mute().isEnabled());
    }

    void theRowsAreTheEventsInTheirOrder()
    {
        Setup s;
        s.showTypicalDay();
        QCOMPARE(s.shownRows(),
            (QStringList { u"Release week|All day"_s, u"Standup|09:15"_s, u"Design review|10:30"_s,
                u"Lunch with Ana|12:30"_s, u"Hiring sync|14:00"_s }));
        QCOMPARE(s.row(0).join(), nullptr);
        QCOMPARE(s.row(1).join()->text(), u"Meet"_s);
        QCOMPARE(s.row(2).join()->text(), u"Zoom"_s);
        QCOMPARE(s.row(3).join(), nullptr);
        QCOMPARE(s.row(4).join()->text(), u"Teams"_s);
        QCOMPARE(s.row(4).join()->kind(), Button::Kind::small);
    }

    void theCardShowsTheNextMeeting()
    {
        Setup s;
        s.showTypicalDay();
        QCOMPARE(s.find<Label>(u"nextTitle"_s).text(), u"Next: Design review"_s);
        QCOMPARE(s.find<Label>(u"nextTime"_s).text(), u"10:30 – 11:15"_s);
        QCOMPARE(s.cardJoin().text(), u"Join Zoom"_s);
        QCOMPARE(s.cardJoin().kind(), Button::Kind::prominent);
        s.minuteAt(11, 15);
        QCOMPARE(s.find<Label>(u"nextTitle"_s).text(), u"Next: Lunch with Ana"_s);
        QVERIFY(s.cardJoin().isHidden());
        s.minuteAt(13, 31);
        QCOMPARE(s.cardJoin().text(), u"Join Teams"_s);
        QVERIFY(s.cardJoin().isVisible());
        s.minuteAt(15, 0);
        QVERIFY(s.card().isHidden());
    }

    void anAllDayEventIsNeverOnTheCard()
    {
        Setup s;
        s.addAllDay(u"Release week"_s);
        s.grant();
        s.show();
        QCOMPARE(s.shownRows(), QStringList(u"Release week|All day"_s));
        QVERIFY(s.card().isHidden());
    }

    void joiningOpensTheLinkAsItStands()
    {
        Setup s;
        s.showTypicalDay();
        QTest::mouseClick(&s.cardJoin(), Qt::LeftButton);
        QTest::mouseClick(s.row(4).join(), Qt::LeftButton);
        QTest::mouseClick(s.row(1).join(), Qt::LeftButton); // Over, and yet to be joined.
        QCOMPARE(s.opener.opened, (QStringList { s.zoom, s.teams, s.meet }));
    }

    void anInputThatIsFoundLateIsShown()
    {
        Setup s;
        s.input.isThere = false;
        s.show();
        QVERIFY(!s.mute().isEnabled());
        s.input.isThere = true;
        QTRY_VERIFY(s.mute().isEnabled());
        QVERIFY(s.note().isHidden());
    }

    void theMuteButtonMutesAndUnmutes()
    {
        Setup s;
        s.show();
        QCOMPARE(s.mute().symbol(), u"mic.fill"_s);
        QCOMPARE(s.mute().kind(), Button::Kind::normal);
        QTest::mouseClick(&s.mute(), Qt::LeftButton);
        QCOMPARE(s.input.switches[mainElement].value, 1.0F);
        QCOMPARE(s.mute().text(), u"Unmute microphone"_s);
        QCOMPARE(s.mute().symbol(), u"mic.slash.fill"_s);
        QCOMPARE(s.mute().kind(), Button::Kind::tinted);
        QVERIFY(s.note().isHidden());
        QTest::mouseClick(&s.mute(), Qt::LeftButton);
        QCOMPARE(s.input.switches[mainElement].value, 0.0F);
        QCOMPARE(s.mute().text(), u"Mute microphone"_s);
        QCOMPARE(s.mute().kind(), Button::Kind::normal);
    }

    void mutingByVolumeRemembersIt()
    {
        Setup s;
        s.input.switches.clear();
        s.input.volumes = { { mainElement, { .value = 0.5F } } };
        s.show();
        QTest::mouseClick(&s.mute(), Qt::LeftButton);
        QCOMPARE(s.input.volumes[mainElement].value, 0.0F);
        QCOMPARE(s.defaults.real(u"micVolumeBeforeMute"_s), 0.5);
        QTest::mouseClick(&s.mute(), Qt::LeftButton);
        QCOMPARE(s.input.volumes[mainElement].value, 0.5F);
    }

    void theRealStateIsShownWhereMutingFails()
    {
        Setup s;
        s.input.switches[mainElement].canBeWritten = false;
        s.show();
        QTest::mouseClick(&s.mute(), Qt::LeftButton);
        QCOMPARE(s.mute().text(), u"Mute microphone"_s);
    }

    void anInputThatIsGoneChangesNothingOnScreen()
    {
        Setup s;
        s.input.switches[mainElement].value = 1;
        s.show();
        s.input.isThere = false;
        QTest::mouseClick(&s.mute(), Qt::LeftButton);
        QCOMPARE(s.mute().text(), u"Unmute microphone"_s);
        QVERIFY(s.mute().isEnabled());
        QVERIFY(s.note().isHidden());
    }

    void anInputThatCannotBeMutedSaysSo()
    {
        Setup s;
        s.input.switches.clear();
        s.show();
        QCOMPARE(s.mute().text(), u"Mute microphone"_s);
        QVERIFY(!s.mute().isEnabled());
        QVERIFY(s.note().isVisible());
        QCOMPARE(s.note().text(), u"Input can't be muted"_s);
        QTest::mouseClick(&s.mute(), Qt::LeftButton);
        QVERIFY(s.input.writes.isEmpty());
        s.window.hide();
        s.input.switches = { { mainElement, {} } };
        s.window.show();
        QVERIFY(s.mute().isEnabled());
        QVERIFY(s.note().isHidden());
    }

    void everythingStandsInItsPlace()
    {
        Setup s;
        Theme::apply({ .fontFamily = u"Inter"_s });
        s.showTypicalDay();
        QCOMPARE(s.placeOf(s.mute()), QRect(14, 14, 142, 24));
        QCOMPARE(s.placeOf(s.card()), QRect(14, 48, 372, 52));
        QCOMPARE(s.placeOf(s.find<Label>(u"nextTitle"_s)).topLeft(), QPoint(24, 58));
        QCOMPARE(s.placeOf(s.find<Label>(u"nextTitle"_s)).height(), 16);
        QCOMPARE(s.placeOf(s.find<Label>(u"nextTime"_s)).topLeft(), QPoint(24, 76));
        QCOMPARE(s.placeOf(s.cardJoin()), QRect(292, 62, 84, 24));
        QCOMPARE(s.placeOf(s.find<Label>(u"heading"_s)), QRect(14, 110, 372, 14));
        QCOMPARE(s.placeOf(s.scroll()), QRect(0, 134, 400, 305));
        QCOMPARE(s.placeOf(s.row(0)), QRect(0, 134, 400, 39));
        QCOMPARE(s.placeOf(s.row(1)).top(), 179);
        QCOMPARE(s.placeOf(*s.row(1).join()), QRect(340, 185, 46, 20));
        QCOMPARE(s.placeOf(*s.row(4).join()).right(), 385);
        QCOMPARE(s.list().height(), 5 * 45 - 6 + 14);
    }

    void withoutACardAllElseStandsHigher()
    {
        Setup s;
        s.show();
        QCOMPARE(s.placeOf(s.mute()).topLeft(), QPoint(14, 14));
        QCOMPARE(s.placeOf(s.find<Label>(u"heading"_s)).top(), 48);
        auto& notAsked = s.find<AccessPrompt>(u"notAsked"_s);
        QCOMPARE(s.placeOf(*notAsked.findChild<Label*>(u"text"_s)), QRect(14, 72, 372, 15));
        QCOMPARE(s.placeOf(notAsked.button()).top(), 95);
        QCOMPARE(s.placeOf(notAsked.button()).center().x(), 199);
        s.model.handle(false);
        s.settle();
        auto& denied = s.find<AccessPrompt>(u"denied"_s);
        QCOMPARE(s.placeOf(*denied.findChild<Label*>(u"text"_s)), QRect(52, 72, 296, 30));
        QCOMPARE(s.placeOf(denied.button()).top(), 110);
        s.model.handle(true);
        s.settle();
        QCOMPARE(s.placeOf(s.find<Label>(u"noEvents"_s)), QRect(14, 92, 372, 16));
    }

    void theNoteStandsBesideTheButton()
    {
        Setup s;
        s.input.isThere = false;
        s.show();
        const auto button = s.placeOf(s.mute());
        const auto note = s.placeOf(s.note());
        QCOMPARE(note.left(), button.right() + 1 + 8);
        QCOMPARE(note.center().y(), button.center().y());
    }

    void fromTheRightEverythingIsMirrored()
    {
        QApplication::setLayoutDirection(Qt::RightToLeft);
        const auto back = qScopeGuard([] { QApplication::setLayoutDirection(Qt::LeftToRight); });
        Setup s;
        s.showTypicalDay();
        QCOMPARE(s.placeOf(s.mute()).right(), 385);
        QCOMPARE(s.placeOf(s.cardJoin()).left(), 24);
        QCOMPARE(s.placeOf(*s.row(1).join()).left(), 14);
        // Neither a heading nor a title at the left.
        const auto picture = s.view->grab().toImage();
        const auto left = picture.copy(14, 110, 60, 60);
        QCOMPARE(left, picture.copy(200, 110, 60, 60));
    }

    void whatIsOverIsFaintAndItsLineIsNot()
    {
        Setup s;
        s.add(u"█████"_s, s.at(10, 0), s.at(10, 30), s.meet);
        s.add(u"█████"_s, s.at(11, 0), s.at(11, 30), s.meet);
        s.grant();
        s.show();
        const auto ink = [&](int row) { return s.colorAt(20, 134 + 45 * row + 8); };
        const auto line = [&](int row) { return s.colorAt(20, 134 + 45 * row + 38); };
        const auto ring = [&](int row) { return s.colorAt(363, 134 + 45 * row + 25); };
        QCOMPARE(ink(0), Theme::current().colors.text);
        s.minuteAt(10, 31);
        const auto& colors = Theme::current().colors;
        const auto ground = s.colorAt(5, 300);
        const auto expected = [&](const QColor& whole, int channel) {
            const auto part = [&](const QColor& color) {
                return channel == 0 ? color.red() : channel == 1 ? color.green() : color.blue();
            };
            return part(ground) + 0.45 * (part(whole) - part(ground));
        };
        QVERIFY(std::abs(ink(0).red() - expected(colors.text, 0)) < 3);
        QVERIFY(std::abs(ring(0).green() - expected(ring(1), 1)) < 3);
        QCOMPARE(ink(1), colors.text);
        QCOMPARE(line(0), line(1));
    }

    void onlyWhatChangedIsPainted()
    {
        Setup s;
        s.showTypicalDay();
        const Painted whole(*s.view);
        QTRY_VERIFY(whole.count);
        const Painted mute(s.mute());
        const Painted card(s.card());
        const Painted title(s.find<Label>(u"nextTitle"_s));
        const Painted over(s.row(2));
        const Painted other(s.row(3));
        const Painted button(*s.row(1).join());
        s.minuteAt(10, 1);
        s.paintWhatIsDue();
        QCOMPARE(card.count + title.count + over.count + other.count + button.count, 0);
        s.minuteAt(11, 16);
        s.paintWhatIsDue();
        QCOMPARE(over.count, 1);
        QCOMPARE(title.count, 1);
        QCOMPARE(mute.count + button.count, 0);
    }

    void nothingIsDoneOverAClosedPopover()
    {
        Setup s;
        s.showTypicalDay();
        s.window.hide();
        s.minuteAt(15, 0);
        QCOMPARE(s.row(4).line().isOver, false);
        s.window.show();
        QCOMPARE(s.row(4).line().isOver, true);
    }

    void aRowStaysWithItsEvent()
    {
        Setup s;
        s.showTypicalDay();
        auto* const row = &s.row(2);
        row->join()->setFocus(Qt::TabFocusReason);
        s.store.stored.removeFirst();
        s.add(u"Early"_s, s.at(9, 0), s.at(9, 10), s.zoom);
        s.minuteAt(10, 1);
        QCOMPARE(s.shownRows(),
            (QStringList { u"Early|09:00"_s, u"Standup|09:15"_s, u"Design review|10:30"_s,
                u"Lunch with Ana|12:30"_s, u"Hiring sync|14:00"_s }));
        QCOMPARE(&s.row(2), row);
        QVERIFY(row->join()->hasFocus());
        QCOMPARE(s.placeOf(s.row(0)).top(), 134);
        QCOMPARE(s.placeOf(*row).top(), 134 + 2 * 45);
    }

    void whatGoesTakesTheKeyboardToNoOtherButton_data()
    {
        QTest::addColumn<QString>("what");
        for (const char* what : { "row", "link", "card", "card's link", "access", "prompt" })
            QTest::newRow(what) << QString::fromLatin1(what);
    }

    void whatGoesTakesTheKeyboardToNoOtherButton()
    {
        QFETCH(QString, what);
        Setup s;
        s.addTypicalDay();
        if (what != u"prompt"_s)
            s.grant();
        s.show();
        Button& button = what == u"prompt"_s ? s.find<AccessPrompt>(u"notAsked"_s).button()
            : what.startsWith(u"card"_s)     ? s.cardJoin()
                                             : *s.row(2).join();
        button.setFocus(Qt::TabFocusReason);
        QVERIFY(button.hasFocus());
        if (what == u"row"_s)
            s.store.stored.removeAt(2);
        if (what == u"link"_s || what == u"card's link"_s)
            s.store.stored[2].url.reset();
        if (what == u"access"_s)
            s.model.handle(false);
        if (what == u"prompt"_s)
            s.model.handle(true);
        else
            s.minuteAt(what == u"card"_s ? 15 : 10, 1);
        s.settle();
        auto* const focused = QApplication::focusWidget();
        QVERIFY(focused == s.view.get() || s.view->isAncestorOf(focused));
        QVERIFY(!qobject_cast<Button*>(focused));
        QTest::keyClick(focused, Qt::Key_Return);
        QCOMPARE(s.opener.opened, QStringList());
    }

    void eventsOfOneNameAreAllShown()
    {
        Setup s;
        for (int hour = 11; hour < 14; ++hour)
            s.add(u"Same"_s, s.at(hour, 0), s.at(hour, 30));
        s.grant();
        s.show();
        const auto rows = s.list().cells();
        s.minuteAt(10, 1);
        QCOMPARE(s.list().cells(), rows);
        QCOMPARE(
            s.shownRows(), (QStringList { u"Same|11:00"_s, u"Same|12:00"_s, u"Same|13:00"_s }));
    }

    void aLinkThatComesAndGoesTakesItsButtonAlong()
    {
        Setup s;
        s.add(u"a"_s, s.at(11, 0), s.at(12, 0));
        s.add(u"b"_s, s.at(12, 0), s.at(13, 0), s.teams);
        s.grant();
        s.show();
        s.store.stored[0].url = s.zoom;
        s.store.stored[1].url.reset();
        s.minuteAt(10, 1);
        QVERIFY(s.row(0).join()->isVisible());
        QCOMPARE(s.row(1).join(), nullptr);
        QCOMPARE(s.row(1).findChild<Button*>(), nullptr);
        QTest::mouseClick(s.row(0).join(), Qt::LeftButton);
        QCOMPARE(s.opener.opened, QStringList(s.zoom));
        // The keyboard finds it too.
        s.cardJoin().setFocus(Qt::TabFocusReason);
        QTest::keyClick(&s.window, Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), s.row(0).join());
    }

    void theKeyboardReachesEveryButtonInOrderAndPressesIt()
    {
        Setup s;
        s.showTypicalDay();
        s.view->setFocus();
        QStringList reached;
        for (int i = 0; i < 5; ++i) {
            QTest::keyClick(&s.window, Qt::Key_Tab);
            reached << qobject_cast<Button*>(QApplication::focusWidget())->text();
            if (i > 0)
                QTest::keyClick(
                    QApplication::focusWidget(), i % 2 ? Qt::Key_Return : Qt::Key_Space);
        }
        QCOMPARE(reached,
            (QStringList {
                u"Mute microphone"_s, u"Join Zoom"_s, u"Meet"_s, u"Zoom"_s, u"Teams"_s }));
        QCOMPARE(s.opener.opened, (QStringList { s.zoom, s.meet, s.zoom, s.teams }));
    }

    void theOrderOfTheKeyboardFollowsTheList()
    {
        Setup s;
        s.showTypicalDay();
        s.add(u"Early"_s, s.at(9, 0), s.at(9, 10), s.teams);
        s.minuteAt(10, 1);
        s.cardJoin().setFocus(Qt::TabFocusReason);
        QTest::keyClick(&s.window, Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), s.row(1).join());
        QCOMPARE(s.row(1).line().title, u"Early"_s);
        QTest::keyClick(&s.window, Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), s.row(2).join());
    }

    void aLinkThatComesLaterGetsItsPlaceInTheOrder()
    {
        Setup s;
        s.add(u"a"_s, s.at(9, 0), s.at(9, 10));
        s.add(u"b"_s, s.at(11, 0), s.at(12, 0), s.teams);
        s.add(u"c"_s, s.at(12, 0), s.at(13, 0));
        s.grant();
        s.show();
        s.store.stored[0].url = s.zoom;
        s.store.stored[2].url = s.zoom;
        s.minuteAt(10, 1);
        s.cardJoin().setFocus(Qt::TabFocusReason);
        for (int i = 0; i < 3; ++i) {
            QTest::keyClick(&s.window, Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), s.row(i).join());
        }
        QTest::keyClick(&s.window, Qt::Key_Backtab);
        QCOMPARE(QApplication::focusWidget(), s.row(1).join());
    }

    void ofManyEventsOnlyThoseInSightCost()
    {
        Setup s;
        for (int i = 0; i < 5000; ++i)
            s.add(u"Meeting %1"_s.arg(i), s.at(11, 0), s.at(12, 0), s.zoom);
        s.grant();
        s.show();
        const auto made = [&] {
            Setup::settle();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            return s.list().findChildren<EventRow*>().size();
        };
        QVERIFY2(made() < 20, QByteArray::number(made()));
        auto& bar = *s.scroll().verticalScrollBar();
        for (int part = 1; part <= 10; ++part) {
            bar.setValue(bar.maximum() * part / 10);
            QVERIFY2(made() < 20, QByteArray::number(made()));
        }
        QCOMPARE(s.shownRows().last(), u"Meeting 4999|11:00"_s);
        s.store.stored.resize(1);
        s.minuteAt(10, 1);
        QCOMPARE(made(), 1);
    }

    void theKeyboardFindsWhatIsFarOutOfSight()
    {
        Setup s;
        for (int i = 0; i < 300; ++i)
            s.add(u"Meeting %1"_s.arg(i), s.at(11, 0), s.at(12, 0),
                i % 100 == 50 ? s.zoom : QString());
        s.grant();
        s.show();
        const auto reached = [&] {
            auto* const row = qobject_cast<EventRow*>(QApplication::focusWidget()->parent());
            const bool isSeen = row && s.scroll().geometry().contains(s.placeOf(*row));
            return isSeen ? row->line().title : QString();
        };
        s.mute().setFocus(Qt::TabFocusReason);
        for (const auto& title : { u"Meeting 50"_s, u"Meeting 150"_s, u"Meeting 250"_s }) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(reached(), title);
        }
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), &s.mute());
        for (const auto& title : { u"Meeting 250"_s, u"Meeting 150"_s, u"Meeting 50"_s }) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
            QCOMPARE(reached(), title);
        }
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
        QCOMPARE(QApplication::focusWidget(), &s.mute());
    }

    void aTallerViewShowsMoreRows()
    {
        Setup s;
        for (int i = 0; i < 300; ++i)
            s.add(u"Meeting %1"_s.arg(i), s.at(11, 0), s.at(12, 0));
        s.grant();
        s.show();
        s.view->resize(400, 2000);
        s.settle();
        QVERIFY(s.shownRows().size() > 40);
    }

    void whereTheKeyboardGoesTheListFollows()
    {
        Setup s;
        for (int i = 0; i < 200; ++i)
            s.add(u"Meeting %1"_s.arg(i), s.at(11, 0), s.at(12, 0), s.zoom);
        s.grant();
        s.show();
        s.cardJoin().setFocus(Qt::TabFocusReason);
        const auto isSeen = [&](qsizetype index) {
            return s.scroll().geometry().contains(s.placeOf(s.row(index)));
        };
        for (int i = 0; i < 20; ++i) {
            QTest::keyClick(&s.window, Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), s.row(i).join());
            QVERIFY(isSeen(i));
        }
        s.row(199).join()->setFocus(Qt::BacktabFocusReason);
        QVERIFY(isSeen(199));
    }

    void theKeysTurnThePages()
    {
        Setup s;
        for (int i = 0; i < 50; ++i)
            s.add(u"Meeting %1"_s.arg(i), s.at(11, 0), s.at(12, 0));
        s.grant();
        s.show();
        const auto& bar = *s.scroll().verticalScrollBar();
        s.view->setFocus();
        QTest::keyClick(s.view.get(), Qt::Key_End);
        QCOMPARE(bar.value(), bar.maximum());
        QCOMPARE(s.placeOf(s.row(49)).bottom() + 1, 439 - 14);
        QTest::keyClick(s.view.get(), Qt::Key_PageUp);
        QVERIFY(bar.value() < bar.maximum());
        QTest::keyClick(s.view.get(), Qt::Key_Home);
        QCOMPARE(bar.value(), 0);
        QTest::keyClick(s.view.get(), Qt::Key_Down);
        QVERIFY(bar.value() > 0);
    }

    void theListStaysWhereItWasScrolledTo()
    {
        Setup s;
        for (int i = 0; i < 50; ++i)
            s.add(u"Meeting %1"_s.arg(i), s.at(11, 0), s.at(12, 0), s.zoom);
        s.grant();
        s.show();
        s.scroll().verticalScrollBar()->setValue(500);
        s.minuteAt(10, 1);
        QCOMPARE(s.scroll().verticalScrollBar()->value(), 500);
    }

    void aLongTitleLeavesTheButtonItsPlace()
    {
        Setup s;
        s.add(QString(100'000, u'█'), s.at(11, 0), s.at(12, 0), s.zoom);
        s.grant();
        s.show();
        const int left = s.placeOf(*s.row(0).join()).left();
        QVERIFY(left > 300);
        QCOMPARE(s.colorAt(20, 134 + 8), Theme::current().colors.text);
        QCOMPARE(s.colorAt(left - 5, 134 + 8), s.colorAt(5, 134 + 8));
        QVERIFY(s.find<Label>(u"nextTitle"_s).geometry().right() < s.cardJoin().geometry().left());
    }

    void markupIsShownAsItIs()
    {
        Setup s;
        s.add(u"<b>a</b> &amp; &b"_s, s.at(11, 0), s.at(12, 0));
        s.grant();
        s.show();
        QCOMPARE(s.find<Label>(u"nextTitle"_s).text(), u"Next: <b>a</b> &amp; &b"_s);
        QCOMPARE(s.find<Label>(u"nextTitle"_s).textFormat(), Qt::PlainText);
        QCOMPARE(s.row(0).line().title, u"<b>a</b> &amp; &b"_s);
    }

    void theFontOfTheDesktopMovesWhatItMust()
    {
        Setup s;
        s.showTypicalDay();
        const int before = s.placeOf(s.mute()).width();
        Theme::apply({ .fontFamily = u"DejaVu Sans"_s });
        QTRY_VERIFY(s.placeOf(s.mute()).width() != before);
        s.settle();
        QCOMPARE(s.placeOf(s.cardJoin()).right(), 375);
        for (auto* const button : s.view->findChildren<Button*>())
            QCOMPARE(s.placeOf(*button).size(), button->boxSize());
        for (const int row : { 1, 2, 4 })
            QCOMPARE(s.placeOf(*s.row(row).join()).right(), 385);
    }

    void assistiveTechnologyHearsTheMicrophone()
    {
        Setup s;
        s.show();
        auto& mute = s.accessible(s.mute());
        QCOMPARE(mute.role(), QAccessible::Button);
        QCOMPARE(mute.text(QAccessible::Name), u"Mute microphone"_s);
        QCOMPARE(mute.text(QAccessible::Description), u"Not muted"_s);
        QTest::mouseClick(&s.mute(), Qt::LeftButton);
        QCOMPARE(mute.text(QAccessible::Name), u"Unmute microphone"_s);
        QCOMPARE(mute.text(QAccessible::Description), u"Muted"_s);
        s.window.hide();
        s.input.isThere = false;
        s.window.show();
        QCOMPARE(mute.text(QAccessible::Description), u"Input can't be muted"_s);
        QVERIFY(mute.state().disabled);
        QVERIFY(mute.actionInterface()->actionNames().isEmpty());
    }

    void assistiveTechnologyHearsTheListInItsOrder()
    {
        Setup s;
        s.showTypicalDay();
        s.store.stored.removeFirst();
        s.add(u"Early"_s, s.at(9, 0), s.at(9, 10));
        s.minuteAt(10, 1);
        auto& list = s.accessible(s.list());
        QCOMPARE(list.role(), QAccessible::List);
        QCOMPARE(list.text(QAccessible::Name), u"Today"_s);
        QStringList rows;
        for (int i = 0; i < list.childCount(); ++i) {
            QCOMPARE(list.child(i)->role(), QAccessible::ListItem);
            rows << list.child(i)->text(QAccessible::Name);
        }
        QCOMPARE(rows,
            (QStringList { u"Early, 09:00, over"_s, u"Standup, 09:15, over"_s,
                u"Design review, 10:30, next"_s, u"Lunch with Ana, 12:30"_s,
                u"Hiring sync, 14:00"_s }));
        auto* const button = list.child(2)->child(0);
        QCOMPARE(button->text(QAccessible::Name), u"Zoom"_s);
        QCOMPARE(button->text(QAccessible::Description), u"Join Design review"_s);
        auto& card = s.accessible(s.card());
        QCOMPARE(card.role(), QAccessible::Grouping);
        QCOMPARE(card.text(QAccessible::Name), u"Next meeting"_s);
        QCOMPARE(card.child(0)->text(QAccessible::Name), u"Next: Design review"_s);
    }

    void assistiveTechnologyFindsTheRowsThatAreOutOfSight()
    {
        Setup s;
        for (int i = 0; i < 300; ++i)
            s.add(u"Meeting %1"_s.arg(i), s.at(11, 0), s.at(12, 0), s.zoom);
        s.grant();
        s.show();
        auto& list = s.accessible(s.list());
        QCOMPARE(list.childCount(), 300);
        auto* const row = list.child(200);
        QCOMPARE(row->role(), QAccessible::ListItem);
        QCOMPARE(row->text(QAccessible::Name), u"Meeting 200, 11:00"_s);
        QCOMPARE(list.indexOfChild(row), 200);
        QCOMPARE(row->parent(), &list);
        QVERIFY(!row->state().invisible);
        QCOMPARE(list.child(300), nullptr);
        row->child(0)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
        QVERIFY(s.scroll().geometry().contains(s.placeOf(s.row(200))));
        QCOMPARE(QApplication::focusWidget(), s.row(200).join());
    }

    void theModelOutlivesTheView()
    {
        Setup s;
        s.showTypicalDay();
        s.view.reset();
        s.minuteAt(15, 0);
        QCOMPARE(s.model.events().size(), 5);
    }
};

QTEST_MAIN(MeetingsViewTest)
#include "MeetingsViewTest.moc"
