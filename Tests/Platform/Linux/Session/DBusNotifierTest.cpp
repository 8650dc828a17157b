#include "App/Platform/Linux/Session/DBusNotifier.h"
#include "Tests/Fakes/FakeNotifier.h"
#include "Tests/Support/VirtualScreen.h"

#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

static bool isServed()
{
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(
        u"org.freedesktop.Notifications"_s);
}

// What dunst keeps of the notifications it has shown or shows, the newest first.
struct Shown {
    QString title;
    QString body;
    QString program;

    bool operator==(const Shown&) const = default;
};

class DBusNotifierTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(!m_screen.name().isEmpty());
        // A server that the bus starts by itself must not find the screen of whoever runs this.
        auto call
            = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                u"org.freedesktop.DBus"_s, u"UpdateActivationEnvironment"_s);
        QMap<QString, QString> screens { { u"DISPLAY"_s, {} }, { u"WAYLAND_DISPLAY"_s, {} } };
        qDBusRegisterMetaType<QMap<QString, QString>>();
        call << QVariant::fromValue(screens);
        QCOMPARE(QDBusConnection::sessionBus().call(call).errorMessage(), QString());
    }

    void cleanup()
    {
        m_server.reset();
        QTRY_VERIFY(!isServed());
    }

    void showsTextsToTheLetter_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("body");
        QTest::newRow("plain") << u"Focus session complete"_s << u"Time for a break"_s;
        QTest::newRow("markup") << u"<b>1 & 2</b>"_s << u"<i>a</i> < b && c > d &amp;"_s;
        QTest::newRow("quotes") << u"\"it's\""_s << u"\"it's\" \\n"_s;
        QTest::newRow("beyond ASCII") << u"Über 🎉"_s << u"Größe – “ok”"_s;
    }

    void showsTextsToTheLetter()
    {
        QFETCH(QString, title);
        QFETCH(QString, body);
        startDunst();
        DBusNotifier notifier(m_fallback);
        notifier.notify(title, body);
        QTRY_COMPARE(history().size(), 1);
        const auto shown = history().first();
        QCOMPARE(shown.title, title);
        auto markup = body;
        markup.replace(u"&"_s, u"&amp;"_s).replace(u"<"_s, u"&lt;"_s).replace(u">"_s, u"&gt;"_s);
        QCOMPARE(shown.body, markup);
        QCOMPARE(shown.program, u"Corvella"_s);
        QVERIFY(m_fallback.notifications.isEmpty());
    }

    void sendsPlainTextToAServerWithoutMarkup()
    {
        startPlainServer();
        DBusNotifier notifier(m_fallback);
        notifier.notify(u"a < b"_s, u"<i> & \"x\""_s);
        QByteArray seen;
        QTRY_VERIFY((seen += m_server->output(), seen.contains("Notify \"Corvella\"")));
        QVERIFY2(seen.contains("\"a < b\" \"<i> & \"x\"\" []"), seen);
        QVERIFY2(seen.contains("\"desktop-entry\": \"org.corvella.Corvella\""), seen);
        QVERIFY2(seen.contains("\"suppress-sound\": True"), seen);
        QVERIFY2(seen.contains("-1"), seen);
    }

    void keepsTheOrderWhileTheServerIsAsked()
    {
        startDunst();
        DBusNotifier notifier(m_fallback);
        notifier.notify(u"1"_s, QString());
        notifier.notify(u"2"_s, QString());
        notifier.notify(u"3"_s, QString());
        QTRY_COMPARE(history().size(), 3);
        QCOMPARE(history().first().title, u"3"_s);
        QCOMPARE(history().last().title, u"1"_s);
    }

    void fallsBackWithoutAServer()
    {
        DBusNotifier notifier(m_fallback);
        notifier.notify(u"a < b"_s, u"c & d"_s);
        QVERIFY(m_fallback.notifications.isEmpty());
        QTRY_COMPARE(m_fallback.notifications.size(), 1);
        QCOMPARE(m_fallback.notifications.first(), std::pair(u"a < b"_s, u"c & d"_s));
    }

    void fallsBackWithoutABus()
    {
        DBusNotifier notifier(m_fallback, QDBusConnection(u"nowhere"_s));
        notifier.notify(u"a"_s, u"b"_s);
        QCOMPARE(m_fallback.notifications.size(), 1);
    }

    void fallsBackWhenTheServerIsGone()
    {
        startDunst();
        DBusNotifier notifier(m_fallback);
        notifier.notify(u"a"_s, u"b"_s);
        QTRY_COMPARE(history().size(), 1);
        m_server.reset();
        QTRY_VERIFY(!isServed());
        notifier.notify(u"c"_s, u"d"_s);
        QTRY_COMPARE(m_fallback.notifications.size(), 1);
    }

    void asksAServerThatReplacesAnother()
    {
        startDunst();
        DBusNotifier notifier(m_fallback);
        notifier.notify(u"a"_s, u"<"_s);
        QTRY_COMPARE(history().size(), 1);
        m_server.reset();
        QTRY_VERIFY(!isServed());
        startPlainServer();
        notifier.notify(u"b"_s, u"<"_s);
        QByteArray seen;
        QTRY_VERIFY((seen += m_server->output(), seen.contains("Notify \"Corvella\"")));
        QVERIFY2(seen.contains("\"b\" \"<\""), seen);
        QVERIFY(m_fallback.notifications.isEmpty());
    }

    void aHungServerNeitherFreezesNorDoubles()
    {
        startDunst();
        DBusNotifier notifier(m_fallback);
        QVERIFY(m_server->hang());
        QElapsedTimer elapsed;
        elapsed.start();
        for (int i = 0; i < 40; ++i)
            notifier.notify(QString::number(i), u"&"_s);
        QVERIFY2(elapsed.elapsed() < 150, QByteArray::number(elapsed.elapsed()));
        QCoreApplication::processEvents();
        m_server->resume();
        QTRY_COMPARE(history().size(), 16);
        QCOMPARE(history().first().title, u"39"_s);
        QCOMPARE(history().first().body, u"&amp;"_s);
        QVERIFY(m_fallback.notifications.isEmpty());
    }

    void aServerThatDiesWhileHungIsReplaced()
    {
        startDunst();
        DBusNotifier notifier(m_fallback);
        QVERIFY(m_server->hang());
        notifier.notify(u"a"_s, u"b"_s);
        QCoreApplication::processEvents();
        m_server->crash();
        QTRY_COMPARE(m_fallback.notifications.size(), 1);
    }

    void init() { m_fallback.notifications.clear(); }

private:
    void startDunst()
    {
        QFile configuration(m_dir.filePath(u"dunstrc"_s));
        QVERIFY(configuration.open(QIODevice::WriteOnly));
        configuration.write("[global]\nmarkup = full\n");
        configuration.close();
        m_server = std::make_unique<Daemon>(u"dunst"_s,
            QStringList { u"-conf"_s, configuration.fileName() },
            QList { std::pair(u"DISPLAY"_s, m_screen.name()) });
        QTRY_VERIFY_WITH_TIMEOUT(isServed(), 20'000);
    }

    void startPlainServer()
    {
        m_server = std::make_unique<Daemon>(u"/usr/bin/python3"_s,
            QStringList { u"-u"_s, u"-m"_s, u"dbusmock"_s, u"--session"_s, u"-t"_s,
                u"notification_daemon"_s, u"-p"_s, u"{\"capabilities\":\"body actions\"}"_s });
        QTRY_VERIFY_WITH_TIMEOUT(isServed(), 20'000);
    }

    // Closes what is on display, since dunst lists only what is closed.
    static QList<Shown> history()
    {
        QProcess::execute(u"dunstctl"_s, { u"close-all"_s });
        QProcess list;
        list.start(u"dunstctl"_s, { u"history"_s });
        list.waitForFinished();
        const auto entries
            = QJsonDocument::fromJson(list.readAll())[u"data"_s].toArray().first().toArray();
        QList<Shown> found;
        for (const auto& entry : entries) {
            const auto text = [&entry](const QString& key) {
                return entry.toObject()[key].toObject()[u"data"_s].toString();
            };
            found << Shown { text(u"summary"_s), text(u"body"_s), text(u"appname"_s) };
        }
        return found;
    }

    QTemporaryDir m_dir;
    VirtualScreen m_screen;
    FakeNotifier m_fallback;
    std::unique_ptr<Daemon> m_server;
};

QTEST_GUILESS_MAIN(DBusNotifierTest)
#include "DBusNotifierTest.moc"
