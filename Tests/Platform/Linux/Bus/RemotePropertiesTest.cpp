#include "App/Platform/Linux/Bus/RemoteProperties.h"
#include "App/Platform/Linux/Bus/SystemBus.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/PropertiesService.h"

#include <QDBusConnectionInterface>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

using State = RemoteProperties::State;

static const auto service = u"org.corvella.Test"_s;
static const auto path = u"/org/corvella/Test"_s;
static const auto interface = u"org.corvella.Test.Thing"_s;

namespace {

struct Setup {
    explicit Setup(const QByteArray& address = qgetenv("DBUS_SESSION_BUS_ADDRESS"))
        : real(address, path, interface)
        , other(address, path, interface)
        , bus(address)
    {
    }

    // Whatever the bus has sent to the subject is heard when this returns.
    void hearAll()
    {
        bus.whenConnected(&properties, [](const QDBusConnection& connection) {
            connection.call(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s,
                u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus.Peer"_s, u"Ping"_s));
        });
        QCoreApplication::processEvents();
    }

    bool own() { return real.bus.registerService(service); }

    // The service is there and followed, and its level is known to be 1.
    bool learnsLevelOne()
    {
        real.values = QVariantMap { { u"Level"_s, 1 } };
        if (!own())
            return false;
        properties.follow();
        return QTest::qWaitFor([this] { return level() == 1; });
    }

    PropertiesService real;
    PropertiesService other; // That never owns the name.
    SystemBus bus;
    RemoteProperties properties { bus,
        {
            .service = service,
            .path = path,
            .interface = interface,
            .names = { u"Level"_s, u"Name"_s },
        } };
    QSignalSpy changes { &properties, &Followed::changed };

    QVariant level() const { return properties.values().value(u"Level"_s); }
};

QVariantMap level(const QVariant& value)
{
    return { { u"Level"_s, value } };
}

// Of everyone on the bus, for the object.
qsizetype matchRules(const QDBusConnection& bus)
{
    auto call = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s,
        u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus.Debug.Stats"_s, u"GetAllMatchRules"_s);
    const auto all = qdbus_cast<QMap<QString, QStringList>>(bus.call(call).arguments().value(0));
    qsizetype count = all.isEmpty() ? -1 : 0;
    for (const auto& rules : all)
        count += rules.filter(u"corvella"_s).size();
    return count;
}

}

class RemotePropertiesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // First, since what another test makes known to the type system would hide what is missing.
    void followsAService()
    {
        Setup s;
        s.real.values = level(1.5);
        QVERIFY(s.own());
        QCOMPARE(s.properties.state(), State::unknown);
        s.properties.follow();
        QTRY_COMPARE(s.properties.state(), State::known);
        QCOMPARE(s.level(), 1.5);
        s.real.change({ { u"Level"_s, 2.5 }, { u"Of no interest"_s, 1 } });
        QTRY_COMPARE(s.level(), 2.5);
        QCOMPARE(s.properties.values().size(), 1);
        QCOMPARE(s.changes.count(), 2);
        QCOMPARE(s.real.asked, 1);
    }

    void knowsWhenAServiceComesAndGoes()
    {
        Setup s;
        s.real.values = level(1);
        s.properties.follow();
        QTRY_COMPARE(s.properties.state(), State::absent);
        QVERIFY(s.own());
        QTRY_COMPARE(s.level(), 1);
        QVERIFY(s.real.bus.unregisterService(service));
        QTRY_COMPARE(s.properties.state(), State::absent);
        QVERIFY(s.properties.values().isEmpty());
    }

    void takesTheWordOfANewOwnerOnly()
    {
        Setup s;
        s.real.values = level(1);
        s.other.values = level(2);
        s.properties.follow();
        QVERIFY(s.own());
        QTRY_COMPARE(s.level(), 1);
        QVERIFY(s.real.bus.unregisterService(service));
        QVERIFY(s.other.bus.registerService(service));
        QTRY_COMPARE(s.level(), 2);
        s.real.change(level(3));
        s.other.change(level(4));
        QTRY_COMPARE(s.level(), 4);
        QCOMPARE(s.other.asked, 1);
    }

    void ignoresForgedSignals()
    {
        Setup s;
        QVERIFY(s.learnsLevelOne());
        s.other.change(level(66));
        s.real.change({ { u"Name"_s, u"true"_s } });
        QTRY_COMPARE(s.properties.values().value(u"Name"_s), u"true"_s);
        QCOMPARE(s.level(), 1);
        QCOMPARE(s.changes.count(), 2);
        QCOMPARE(s.real.asked, 1);
    }

    void aForgerDoesNotBringAServiceToLife()
    {
        Setup s;
        s.properties.follow();
        QTRY_COMPARE(s.properties.state(), State::absent);
        s.other.change(level(66));
        s.real.values = level(1);
        QVERIFY(s.own());
        QTRY_COMPARE(s.level(), 1);
        QCOMPARE(s.changes.count(), 2);
    }

    void believesTheBusAloneAboutOwners()
    {
        Setup s;
        QVERIFY(s.learnsLevelOne());
        auto forged = QDBusMessage::createSignal(
            u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"NameOwnerChanged"_s);
        forged << service << s.real.bus.baseService() << QString();
        QVERIFY(s.other.bus.send(forged));
        s.other.change({});
        s.real.change(level(2));
        QTRY_COMPARE(s.level(), 2);
        QCOMPARE(s.changes.count(), 2);
    }

    void asksAgainForWhatIsInvalidated()
    {
        Setup s;
        QVERIFY(s.learnsLevelOne());
        s.real.values = level(2);
        s.real.change({}, { u"Of no interest"_s });
        s.real.change({}, { u"Level"_s });
        QTRY_COMPARE(s.level(), 2);
        QCOMPARE(s.real.asked, 2);
    }

    void asksAgainForAnObjectThatComesLate()
    {
        Setup s;
        s.real.values = {};
        QVERIFY(s.own());
        s.properties.follow();
        QTRY_COMPARE(s.properties.state(), State::absent);
        s.real.values = level(1);
        s.real.change(level(1));
        QTRY_COMPARE(s.level(), 1);
    }

    void asksAgainWhenAChangeMayHaveOvertakenTheAnswer()
    {
        Setup s;
        s.real.isMute = true;
        QVERIFY(s.own());
        s.properties.follow();
        QTRY_COMPARE(s.real.unanswered.size(), 1);
        s.real.values = level(1);
        s.real.change(level(2));
        s.hearAll();
        s.real.answerLate();
        QTRY_COMPARE(s.real.unanswered.size(), 1);
        QCOMPARE(s.level(), 1);
        s.real.values = level(2);
        s.real.answerLate();
        QTRY_COMPARE(s.level(), 2);
    }

    void isSilentAboutWhatStaysTheSame()
    {
        Setup s;
        QVERIFY(s.learnsLevelOne());
        s.real.change(level(1));
        s.real.change({ { u"Of no interest"_s, 1 } });
        s.real.change(level(2));
        QTRY_COMPARE(s.level(), 2);
        QCOMPARE(s.changes.count(), 2);
    }

    void survivesOtherTypes_data()
    {
        QTest::addColumn<QVariantList>("arguments");
        const QVariant none = QStringList();
        QTest::newRow("nothing") << QVariantList {};
        QTest::newRow("interface only") << QVariantList { interface };
        QTest::newRow("text") << QVariantList { interface, u"text"_s, none };
        QTest::newRow("text twice") << QVariantList { interface, QVariantMap(), u"text"_s };
        QTest::newRow("list") << QVariantList { interface, QStringList { u"text"_s }, none };
        QTest::newRow("more") << QVariantList { interface, QVariantMap(), none, 1 };
    }

    void survivesOtherTypes()
    {
        QFETCH(QVariantList, arguments);
        Setup s;
        QVERIFY(s.learnsLevelOne());
        s.real.signal(arguments);
        s.real.change(level(2));
        QTRY_COMPARE(s.level(), 2);
        QCOMPARE(s.changes.count(), 2);
    }

    void dropsWhatIsNoPlainValue()
    {
        Setup s;
        QVERIFY(s.learnsLevelOne());
        s.real.change(level(QVariantMap { { u"Level"_s, 1 } }));
        QTRY_VERIFY(!s.level().isValid());
        QCOMPARE(s.properties.state(), State::known);
        s.real.change(level(u"text"_s));
        QTRY_COMPARE(s.level(), u"text"_s);
    }

    void anAnswerOfAnotherTypeIsNone()
    {
        Setup s;
        s.real.values = u"text"_s;
        QVERIFY(s.own());
        s.properties.follow();
        QTRY_COMPARE(s.properties.state(), State::absent);
    }

    void givesUpOnAServiceThatHangsButTakesItsLateAnswer()
    {
        Setup s;
        s.real.isMute = true;
        s.real.values = level(1);
        QVERIFY(s.own());
        QElapsedTimer taken;
        taken.start();
        s.properties.follow();
        QTRY_COMPARE(s.properties.state(), State::absent);
        QVERIFY2(
            taken.elapsed() >= 2800 && taken.elapsed() < 4000, QByteArray::number(taken.elapsed()));
        s.real.answerLate();
        QTRY_COMPARE(s.level(), 1);
        QCOMPARE(s.real.asked, 1);
    }

    void asksAServiceThatHangsOnlyOnce()
    {
        Setup s;
        s.real.isMute = true;
        QVERIFY(s.own());
        s.properties.follow();
        QTRY_COMPARE(s.real.asked, 1);
        for (int time = 0; time < 10; ++time) {
            s.properties.unfollow();
            s.properties.follow();
        }
        s.hearAll();
        QTRY_COMPARE(s.properties.state(), State::absent);
        QCOMPARE(s.real.asked, 1);
        s.real.values = level(1);
        s.real.isMute = false;
        s.real.answerLate();
        QTRY_COMPARE(s.level(), 1);
        QTRY_COMPARE(s.real.asked, 2);
    }

    void anAnswerThatNobodyWaitsForIsPassedOver()
    {
        Setup s;
        s.real.isMute = true;
        QVERIFY(s.own());
        s.properties.follow();
        QTRY_COMPARE(s.real.asked, 1);
        s.properties.unfollow();
        s.real.values = level(1);
        s.real.isMute = false;
        s.real.answerLate();
        s.real.change({});
        s.hearAll();
        QCOMPARE(s.properties.state(), State::unknown);
        s.properties.follow();
        QTRY_COMPARE(s.level(), 1);
        QCOMPARE(s.changes.count(), 1);
    }

    void asksAgainWhenAnOldQuestionEndsInAnError()
    {
        Setup s;
        s.real.isMute = true;
        QVERIFY(s.own());
        s.properties.follow();
        QTRY_COMPARE(s.real.asked, 1);
        s.properties.unfollow();
        s.properties.follow();
        s.real.values = {};
        s.real.isMute = false;
        s.real.answerLate();
        s.real.values = level(1);
        QTRY_COMPARE(s.level(), 1);
    }

    void isAbsentWithoutABus()
    {
        SystemBus nowhere("unix:path=/nonexistent");
        RemoteProperties properties(nowhere, { service, path, interface });
        properties.follow();
        QTRY_COMPARE(properties.state(), State::absent);
        properties.unfollow();
    }

    void aBusThatHangsHoldsUpNothing()
    {
        PrivateBus own;
        Setup s(own.address());
        QVERIFY(s.learnsLevelOne());
        QVERIFY(own.hang());
        QElapsedTimer taken;
        taken.start();
        for (int time = 0; time < 100; ++time) {
            s.properties.unfollow();
            s.properties.follow();
        }
        QVERIFY2(taken.elapsed() < 150, QByteArray::number(taken.elapsed()));
        QTRY_COMPARE(s.properties.state(), State::absent);
        own.resume();
        QTRY_COMPARE(s.level(), 1);
    }

    void aBusThatEndsTakesTheServiceWithIt()
    {
        auto own = std::make_unique<PrivateBus>();
        Setup s(own->address());
        s.real.isMute = true;
        QVERIFY(s.own());
        s.properties.follow();
        QTRY_COMPARE(s.real.unanswered.size(), 1);
        own.reset();
        QTRY_COMPARE(s.properties.state(), State::absent);
        s.properties.unfollow();
        s.properties.follow();
        QCOMPARE(s.properties.state(), State::absent);
    }

    void whatIsKnownEndsWithTheBus()
    {
        QTemporaryDir folder;
        const auto address = u"unix:path="_s + folder.filePath(u"bus"_s);
        auto own = std::make_unique<PrivateBus>(QList<std::pair<QString, QString>>(), address);
        Setup s(address.toLocal8Bit()); // Without the identity of the first bus.
        QVERIFY(s.learnsLevelOne());
        QSignalSpy ends(&s.bus, &SystemBus::ended);
        own->crash();
        QTRY_COMPARE(ends.count(), 1);
        QCOMPARE(s.properties.state(), State::absent);
        QVERIFY(s.properties.values().isEmpty());

        own = std::make_unique<PrivateBus>(QList<std::pair<QString, QString>>(), address);
        PropertiesService restarted(own->address(), path, interface);
        restarted.values = level(2);
        QVERIFY(restarted.bus.registerService(service));
        s.properties.unfollow();
        s.properties.follow();
        QTRY_COMPARE(s.level(), 2);
        restarted.change(level(3));
        QTRY_COMPARE(s.level(), 3);
    }

    void leavesNothingBehind()
    {
        Setup s;
        QVERIFY(s.learnsLevelOne());
        QTRY_COMPARE(matchRules(s.other.bus), 2);
        s.properties.unfollow();
        QTRY_COMPARE(matchRules(s.other.bus), 0);
        s.real.change(level(2));
        s.properties.follow();
        s.properties.unfollow();
        QTRY_COMPARE(matchRules(s.other.bus), 0);
        QCOMPARE(s.level(), 1);
        QCOMPARE(s.changes.count(), 1);
    }

    void startsAServiceOnlyIfToldTo()
    {
        QTemporaryDir data;
        const auto started = data.filePath(u"started"_s);
        QVERIFY(QDir(data.path()).mkpath(u"dbus-1/services"_s));
        QFile file(data.filePath(u"dbus-1/services/test.service"_s));
        QVERIFY(file.open(QFile::WriteOnly));
        file.write("[D-BUS Service]\nName=org.corvella.Test\nExec=/usr/bin/touch "
            + started.toLocal8Bit() + '\n');
        file.close();
        const PrivateBus own({ { u"XDG_DATA_HOME"_s, data.path() } });
        Setup s(own.address());
        s.properties.follow();
        QTRY_COMPARE(s.properties.state(), State::absent);
        QVERIFY(!QFile::exists(started));
        RemoteProperties other(s.bus,
            { .service = service, .path = path, .interface = interface, .startsService = true });
        other.follow();
        QTRY_COMPARE(other.state(), State::absent);
        QVERIFY(QFile::exists(started));
    }
};

QTEST_GUILESS_MAIN(RemotePropertiesTest)
#include "RemotePropertiesTest.moc"
