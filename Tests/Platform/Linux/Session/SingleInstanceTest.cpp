#include "App/Platform/Linux/Session/SingleInstance.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QElapsedTimer>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>
#include <QTextStream>

#include <csignal>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

static const auto role = u"--as-instance"_s;

// The test program run again as an instance: prints "first" and stays, or "second" and ends.
static int runAsInstance()
{
    SingleInstance instance;
    QTextStream out(stdout);
    const bool first = instance.claim();
    out << (first ? "first" : "second") << Qt::endl;
    QObject::connect(&instance, &SingleInstance::activated, [&out] { out << "*" << Qt::flush; });
    return first ? QCoreApplication::exec() : 0;
}

struct Instance {
    explicit Instance()
    {
        process.start(QCoreApplication::applicationFilePath(), { role });
        process.waitForStarted();
    }

    ~Instance()
    {
        process.kill();
        process.waitForFinished();
    }

    const QByteArray& printed()
    {
        process.waitForReadyRead(1);
        return output += process.readAll();
    }

    QProcess process;
    QByteArray output;
};

static QDBusMessage callFirst(const QString& method, const QVariantList& arguments)
{
    auto call = QDBusMessage::createMethodCall(u"org.corvella.Corvella"_s,
        u"/org/corvella/Corvella"_s, u"org.freedesktop.Application"_s, method);
    call.setArguments(arguments);
    return QDBusConnection::sessionBus().call(call);
}

class SingleInstanceTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        const auto* bus = QDBusConnection::sessionBus().interface();
        QTRY_VERIFY(!bus->isServiceRegistered(u"org.corvella.Corvella"_s));
    }

    void theSecondStartBringsTheFirstForward()
    {
        Instance first;
        QTRY_COMPARE(first.printed(), "first\n"_qba);
        Instance second;
        QTRY_COMPARE(second.printed(), "second\n"_qba);
        QTRY_COMPARE(second.process.state(), QProcess::NotRunning);
        QTRY_COMPARE(first.printed(), "first\n*"_qba);
        Instance third;
        QTRY_COMPARE(third.printed(), "second\n"_qba);
        QTRY_COMPARE(first.printed(), "first\n**"_qba);
    }

    void aStartAfterTheFirstHasQuitIsFirst()
    {
        {
            Instance first;
            QTRY_COMPARE(first.printed(), "first\n"_qba);
        }
        Instance next;
        QTRY_COMPARE(next.printed(), "first\n"_qba);
    }

    void doesNotInheritTheNameByQueueing()
    {
        SingleInstance second;
        {
            Instance first;
            QTRY_COMPARE(first.printed(), "first\n"_qba);
            QVERIFY(!second.claim());
        }
        const auto* bus = QDBusConnection::sessionBus().interface();
        QTRY_VERIFY(!bus->isServiceRegistered(u"org.corvella.Corvella"_s));
    }

    void aHungFirstHoldsTheSecondUpForASecondOnly()
    {
        Instance first;
        QTRY_COMPARE(first.printed(), "first\n"_qba);
        kill(static_cast<pid_t>(first.process.processId()), SIGSTOP);
        QElapsedTimer elapsed;
        elapsed.start();
        SingleInstance second;
        QVERIFY(!second.claim());
        QVERIFY2(elapsed.elapsed() < 1500, QByteArray::number(elapsed.elapsed()));
    }

    void isFirstWithoutABus()
    {
        SingleInstance alone(QDBusConnection(u"nowhere"_s));
        QVERIFY(alone.claim());
    }

    void ofManyStartsAtOnceOneIsFirst()
    {
        std::vector<std::unique_ptr<Instance>> starts(8);
        for (auto& start : starts)
            start = std::make_unique<Instance>();
        int firsts = 0;
        for (auto& start : starts) {
            QTRY_VERIFY_WITH_TIMEOUT(start->printed().contains('\n'), 10'000);
            firsts += start->output.startsWith("first");
        }
        QCOMPARE(firsts, 1);
    }

    void desktopsMayActivateAndOpen()
    {
        Instance first;
        QTRY_COMPARE(first.printed(), "first\n"_qba);
        const QVariantMap none;
        QCOMPARE(callFirst(u"Activate"_s, { none }).errorMessage(), QString());
        QTRY_COMPARE(first.printed(), "first\n*"_qba);
        const QStringList locations { u"file:///a"_s };
        QCOMPARE(callFirst(u"Open"_s, { locations, none }).errorMessage(), QString());
        QTRY_COMPARE(first.printed(), "first\n**"_qba);
        QCOMPARE(callFirst(u"ActivateAction"_s, { u"unknown"_s, QVariantList(), none }).errorName(),
            QString());
        QCOMPARE(callFirst(u"Activate"_s, { none }).errorMessage(), QString());
        QTRY_COMPARE(first.printed(), "first\n***"_qba);
    }

    void describesTheStandardsInterface()
    {
        Instance first;
        QTRY_COMPARE(first.printed(), "first\n"_qba);
        const QDBusReply<QString> described = QDBusConnection::sessionBus().call(
            QDBusMessage::createMethodCall(u"org.corvella.Corvella"_s, u"/org/corvella/Corvella"_s,
                u"org.freedesktop.DBus.Introspectable"_s, u"Introspect"_s));
        const auto standard = described.value()
                                  .section(u"org.freedesktop.Application"_s, 1)
                                  .section(u"</interface>"_s, 0, 0);
        for (const auto& method : { u"Activate"_s, u"Open"_s, u"ActivateAction"_s })
            QVERIFY2(
                standard.contains(u"<method name=\"%1\">"_s.arg(method)), qPrintable(standard));
        QCOMPARE(standard.count(u"type=\"a{sv}\""_s), 3);
    }
};

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (app.arguments().contains(role))
        return runAsInstance();
    SingleInstanceTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "SingleInstanceTest.moc"
