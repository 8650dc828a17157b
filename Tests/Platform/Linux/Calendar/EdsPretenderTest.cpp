#include "App/Platform/Linux/Calendar/EdsCalendars.h"
#include "App/Platform/Linux/Calendar/EdsSources.h"
#include "Tests/Fakes/FakeEventExpander.h"
#include "Tests/Support/Daemon.h"
#include "Tests/Support/PretendedCalendars.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

static const TimeSpan day { Moment(std::chrono::seconds(1'795'215'600)),
    Moment(std::chrono::seconds(1'795'302'000)) };
static const auto viewInterface = u"org.gnome.evolution.dataserver.CalendarView"_s;

namespace {

struct Setup {
    QStringList titles() const
    {
        QStringList titles;
        for (const auto& event : calendars.events())
            titles.append(*event.title);
        return titles;
    }

    bool begins()
    {
        if (!service.appear())
            return false;
        calendars.look(day);
        return QTest::qWaitFor([&] { return titles() == QStringList { u"One"_s }; });
    }

    // Whatever was sent before is heard when this returns.
    void hearAll()
    {
        QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
            u"org.freedesktop.DBus"_s, u"/"_s, u"org.freedesktop.DBus.Peer"_s, u"Ping"_s));
        QCoreApplication::processEvents();
    }

    PretendedCalendars service;
    FakeEventExpander expander;
    EdsCalendars calendars { expander };
    QSignalSpy changes { &calendars, &CalendarSource::changed };
};

std::optional<bool> access(EdsCalendars& calendars)
{
    std::optional<bool> answered;
    calendars.checkAccess(&calendars, [&](bool isOpen) { answered = isOpen; });
    return QTest::qWaitFor([&] { return answered.has_value(); }) ? answered : std::nullopt;
}

using Sources = QHash<QString, QString>;

QString source(const QString& parent, const QString& more = u"[Calendar]\nBackendName=local\n"_s,
    const QString& enabled = u"true"_s)
{
    return u"[Data Source]\nDisplayName=A\nEnabled=%1\nParent=%2\n\n%3"_s.arg(
        enabled, parent, more);
}

}

class EdsPretenderTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // First, since what another test makes known to the type system would hide what is missing.
    void isClosedWhereThereIsNoService()
    {
        Setup s;
        QCOMPARE(access(s.calendars), false);
        s.calendars.look(day);
        s.hearAll();
        QVERIFY(s.titles().isEmpty());
        QVERIFY(s.begins());
        QCOMPARE(access(s.calendars), true);
    }

    void aServiceThatComesLateIsHeardOf()
    {
        Setup s;
        s.calendars.look(day);
        s.hearAll();
        QVERIFY(s.service.appear());
        QTRY_COMPARE(s.titles(), QStringList { u"One"_s });
    }

    void isClosedWithoutABus()
    {
        const auto nowhere = QDBusConnection::connectToBus(u"unix:path=/nonexistent"_s, u"no"_s);
        FakeEventExpander expander;
        EdsCalendars calendars(expander, nowhere);
        QCOMPARE(access(calendars), false);
        calendars.look(day);
        QCoreApplication::processEvents();
        QVERIFY(calendars.events().isEmpty());
        QDBusConnection::disconnectFromBus(u"no"_s);
    }

    void isClosedInASandboxThatHidesTheService()
    {
        QTemporaryDir folder;
        const auto socket = folder.filePath(u"bus"_s);
        Daemon proxy(u"xdg-dbus-proxy"_s,
            { qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), socket, u"--filter"_s });
        QTRY_VERIFY(QFile::exists(socket));
        Setup s;
        QVERIFY(s.service.appear());
        const auto inside = QDBusConnection::connectToBus(u"unix:path="_s + socket, u"in"_s);
        QVERIFY(inside.isConnected());
        {
            EdsCalendars calendars(s.expander, inside);
            QCOMPARE(access(s.calendars), true);
            QCOMPARE(access(calendars), false);
            calendars.look(day);
            s.hearAll();
            QVERIFY(calendars.events().isEmpty());
        }
        QDBusConnection::disconnectFromBus(u"in"_s);
    }

    void nonsenseHarmsNobody_data()
    {
        QTest::addColumn<QString>("method");
        QTest::addColumn<QVariantList>("answer");
        for (const auto& method : PretendedCalendars().honest().keys()) {
            // What is done without does no harm.
            if (method == u"GetObject"_s || method == u"GetTimezone"_s)
                continue;
            const auto name = method.toLatin1();
            QTest::addRow("%s number", name.constData()) << method << QVariantList { 7 };
            QTest::addRow("%s texts", name.constData())
                << method << QVariantList { u"a"_s, u"b"_s, u"c"_s };
        }
        QTest::newRow("no path") << u"OpenCalendar"_s << QVariantList { u"no path"_s, u"a.b"_s };
        QTest::newRow("no name") << u"OpenCalendar"_s << QVariantList { u"/a"_s, u"no name"_s };
        QTest::newRow("empty") << u"OpenCalendar"_s << QVariantList { u""_s, u""_s };
    }

    void nonsenseHarmsNobody()
    {
        QFETCH(QString, method);
        QFETCH(QVariantList, answer);
        Setup s;
        s.service.answers[method] = answer;
        QVERIFY(s.service.appear());
        s.calendars.look(day);
        QTRY_VERIFY(s.service.asked.value(method) > 0);
        s.hearAll();
        QVERIFY(s.titles().isEmpty());
        s.service.answers = s.service.honest();
        // Once all that was nonsense has been understood as such.
        QTRY_VERIFY((s.calendars.look(day), s.titles() == QStringList { u"One"_s }));
    }

    void anErrorIsTriedAgainAndKeepsWhatIsKnown()
    {
        Setup s;
        QVERIFY(s.begins());
        s.service.answers.remove(u"GetObjectList"_s);
        s.calendars.look(day);
        QTRY_COMPARE(s.service.asked.value(u"GetObjectList"_s), 2);
        s.hearAll();
        QCOMPARE(s.titles(), QStringList { u"One"_s });
        s.service.event.replace(u"One"_s, u"Two"_s);
        s.service.answers = s.service.honest();
        QTRY_COMPARE(s.titles(), QStringList { u"Two"_s });
        QCOMPARE(s.changes.count(), 2);
    }

    void aReadingThatFailsIsTriedAgain()
    {
        Setup s;
        s.expander.fails = true;
        QVERIFY(s.service.appear());
        s.calendars.look(day);
        QTRY_COMPARE(s.expander.requests.size(), 1);
        QTRY_VERIFY(s.expander.pending.isEmpty());
        s.expander.fails = false;
        QTRY_COMPARE(s.titles(), QStringList { u"One"_s });
    }

    void aSeriesThatIsGoneMeanwhileIsLeftOut()
    {
        Setup s;
        s.service.event = u"BEGIN:VEVENT\nUID:1\nRRULE:FREQ=DAILY\nSUMMARY:Gone\nEND:VEVENT\n"_s;
        s.service.answers = s.service.honest();
        s.service.answers[u"GetObjectList"_s] = { QStringList {
            s.service.event, u"BEGIN:VEVENT\nUID:2\nSUMMARY:One\nEND:VEVENT\n"_s } };
        s.service.answers.remove(u"GetObject"_s);
        s.service.error
            = u"org.gtk.GDBus.UnmappedGError.Quark._e_2dcal_2dclient_2derror_2dquark.Code1"_s;
        QVERIFY(s.begins());
        QCOMPARE(s.service.asked.value(u"GetObject"_s), 1);
    }

    void aSeriesThatCannotBeHadKeepsWhatIsKnown()
    {
        Setup s;
        QVERIFY(s.begins());
        s.service.answers[u"GetObjectList"_s]
            = { QStringList { u"BEGIN:VEVENT\nUID:1\nRRULE:FREQ=DAILY\nEND:VEVENT\n"_s } };
        s.service.answers.remove(u"GetObject"_s);
        s.calendars.look(day);
        // Closed after the failure, and opened for another try.
        QTRY_COMPARE(s.service.asked.value(u"GetObject"_s), 2);
        QCOMPARE(s.titles(), QStringList { u"One"_s });
        QCOMPARE(s.changes.count(), 1);
    }

    void keepsWhatItKnowsUntilAllWasRead()
    {
        Setup s;
        QVERIFY(s.begins());
        s.expander.isPartial = true;
        s.calendars.look(day);
        QTRY_COMPARE(s.expander.requests.size(), 3);
        QCOMPARE(s.titles(), QStringList { u"One"_s });
        s.service.event.replace(u"One"_s, u"Two"_s);
        s.service.answers = s.service.honest();
        s.expander.isPartial = false;
        QTRY_COMPARE(s.titles(), QStringList { u"Two"_s });
    }

    void aPartIsBetterThanAnotherDay()
    {
        Setup s;
        QVERIFY(s.begins());
        s.expander.isPartial = true;
        s.calendars.look({ day.end, day.end + std::chrono::hours(24) });
        QTRY_VERIFY(s.titles().isEmpty());
    }

    void whatIsTooLongIsLeftOut()
    {
        Setup s;
        const auto longOne = u"BEGIN:VEVENT\nUID:2\nSUMMARY:Long\nDESCRIPTION:"_s
            + QString(300'000, u'x') + u"\nEND:VEVENT\n"_s;
        s.service.answers[u"GetObjectList"_s] = { QStringList { longOne, s.service.event } };
        QVERIFY(s.begins());
    }

    void signalsOfOthersAreIgnored()
    {
        Setup s;
        QVERIFY(s.begins());
        PretendedCalendars forger;
        forger.signal(u"/view"_s, viewInterface, u"ObjectsAdded"_s, { QStringList { u"x"_s } });
        forger.signal(u"/org/gnome/evolution/dataserver/SourceManager"_s,
            u"org.freedesktop.DBus.ObjectManager"_s, u"InterfacesRemoved"_s,
            { QVariant::fromValue(QDBusObjectPath(u"/source"_s)), QStringList() });
        forger.signal(u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"NameOwnerChanged"_s,
            { u"org.gnome.evolution.dataserver.Calendar8"_s, u":1.1"_s, u""_s });
        s.service.signal(u"/view"_s, viewInterface, u"ObjectsAdded"_s, { QStringList { u"x"_s } });
        QTRY_COMPARE(s.service.asked.value(u"GetObjectList"_s), 2);
        QTRY_VERIFY(s.expander.pending.isEmpty());
        QCOMPARE(s.service.asked.value(u"GetManagedObjects"_s), 1);
        QCOMPARE(s.service.asked.value(u"OpenCalendar"_s), 1);
    }

    void signalsOfOtherTypesHarmNobody()
    {
        Setup s;
        QVERIFY(s.begins());
        for (const auto& nonsense :
            { QVariantList(), QVariantList { 7 }, QVariantList { u"a"_s, QVariantMap() } }) {
            for (const auto& name : { u"ObjectsAdded"_s, u"ObjectsRemoved"_s })
                s.service.signal(u"/view"_s, viewInterface, name, nonsense);
            s.service.signal(u"/source"_s, u"org.freedesktop.DBus.Properties"_s,
                u"PropertiesChanged"_s, nonsense);
        }
        s.service.signal(u"/view"_s, viewInterface, u"ObjectsAdded"_s, { QStringList { u"x"_s } });
        QTRY_COMPARE(s.service.asked.value(u"GetObjectList"_s), 2);
    }

    void aServiceThatHangsIsAskedOnce()
    {
        Setup s;
        s.service.mute = u"Open"_s;
        QVERIFY(s.service.appear());
        s.calendars.look(day);
        QTRY_COMPARE(s.service.unanswered.size(), 1);
        for (int time = 0; time < 10; ++time) {
            s.calendars.look(day);
            s.hearAll();
        }
        QCOMPARE(s.service.asked.value(u"OpenCalendar"_s), 1);
        QCOMPARE(s.service.asked.value(u"Open"_s), 1);
        QCOMPARE(s.service.asked.value(u"GetObjectList"_s), 0);
        s.service.bus.send(s.service.unanswered.first().createReply(QVariant(QStringList())));
        QTRY_COMPARE(s.titles(), QStringList { u"One"_s });
    }

    void changesDuringAReadingLeadToAnother()
    {
        Setup s;
        s.expander.isSlow = true;
        QVERIFY(s.service.appear());
        s.calendars.look(day);
        QTRY_COMPARE(s.expander.pending.size(), 1);
        for (int time = 0; time < 5; ++time) {
            s.service.signal(
                u"/view"_s, viewInterface, u"ObjectsModified"_s, { QStringList { u"x"_s } });
        }
        s.hearAll();
        s.calendars.look(day);
        for (int time = 0; time < 3; ++time)
            s.hearAll();
        QCOMPARE(s.service.asked.value(u"GetObjectList"_s), 1);
        s.expander.isSlow = false;
        s.expander.answerNext();
        QTRY_COMPARE(s.service.asked.value(u"GetObjectList"_s), 2);
        QTRY_VERIFY(s.expander.pending.isEmpty());
        QCOMPARE(s.changes.count(), 1);
    }

    void nothingIsAskedAtRest()
    {
        Setup s;
        QVERIFY(s.begins());
        QTRY_VERIFY(s.expander.pending.isEmpty());
        s.hearAll();
        const auto asked = s.service.asked;
        // Longer than anything is put off; that nothing comes is told by no event.
        QTest::qWait(500);
        QCOMPARE(s.service.asked, asked);
        QCOMPARE(s.expander.requests.size(), 1);
    }

    void knowsWhichSourcesAreCalendars_data()
    {
        QTest::addColumn<Sources>("sources");
        QTest::addColumn<QStringList>("calendars");
        QTest::newRow("none") << Sources() << QStringList();
        QTest::newRow("sorted") << Sources { { u"b"_s, source({}) }, { u"a"_s, source({}) } }
                                << QStringList { u"a"_s, u"b"_s };
        QTest::newRow("no calendar")
            << Sources { { u"a"_s, source({}, u"[Task List]\n"_s) } } << QStringList();
        QTest::newRow("disabled") << Sources {
            { u"a"_s, source({}, u"[Calendar]\n"_s, u"false"_s) }
        } << QStringList();
        QTest::newRow("not said") << Sources { { u"a"_s, u"[Calendar]"_s } }
                                  << QStringList { u"a"_s };
        QTest::newRow("enabled elsewhere")
            << Sources { { u"a"_s, source({}, u"[Calendar]\n[Refresh]\nEnabled=false\n"_s) } }
            << QStringList { u"a"_s };
        QTest::newRow("disabled account") << Sources { { u"a"_s, source(u"b"_s) },
            { u"b"_s, source(u"c"_s, {}) }, { u"c"_s, source({}, {}, u"false"_s) } }
                                          << QStringList();
        QTest::newRow("lost parent")
            << Sources { { u"a"_s, source(u"gone"_s) } } << QStringList { u"a"_s };
        QTest::newRow("circle") << Sources { { u"a"_s, source(u"b"_s) },
            { u"b"_s, source(u"a"_s, {}) } }
                                << QStringList();
        QTest::newRow("nonsense") << Sources { { u"a"_s, u"[\n=\n[]\n\n==[Calendar]=\n"_s } }
                                  << QStringList();
    }

    void knowsWhichSourcesAreCalendars()
    {
        QFETCH(Sources, sources);
        QFETCH(QStringList, calendars);
        QCOMPARE(EdsSources::calendarsAmong(sources), calendars);
    }
};

QTEST_GUILESS_MAIN(EdsPretenderTest)
#include "EdsPretenderTest.moc"
