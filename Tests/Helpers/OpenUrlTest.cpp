#include "App/Helpers/Launch/FileStart.h"
#include "App/Platform/Linux/Launch/HelperWorkspace.h"
#include "Tests/Support/DesktopEntries.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/RunHelper.h"

#include <QElapsedTimer>
#include <QTest>
#include <QUrl>

#include <memory>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using FileStart::Kind;

static const auto helper = QStringLiteral(CORVELLA_HELPERS_DIR "/open");

class OpenUrlTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_user = std::make_unique<DesktopEntries>(); }

    void everySchemeHasItsProgram_data()
    {
        QTest::addColumn<QUrl>("url");
        QTest::addColumn<QByteArray>("arguments");
        const auto row = [](const QUrl& url, const QByteArray& arguments) {
            QTest::newRow(arguments) << url << arguments;
        };
        row(QUrl(u"https://example.org/ä b?c=d&e='f'#g"_s),
            "https://example.org/%C3%A4%20b?c=d&e='f'#g\n");
        row(QUrl(u"mailto:a@example.org?subject=b c"_s), "mailto:a@example.org?subject=b%20c\n");
        row(QUrl(u"X-Odd+One.2:-a"_s), "x-odd+one.2:-a\n");
    }

    void everySchemeHasItsProgram()
    {
        QFETCH(QUrl, url);
        QFETCH(QByteArray, arguments);
        m_user->add(u"program"_s);
        m_user->choose(u"program"_s, "https mailto x-odd+one.2");
        HelperWorkspace(helper).open(url);
        QTRY_COMPARE(m_user->arguments(u"program"_s), arguments);
    }

    void aProgramIsRun()
    {
        m_user->add(u"pen"_s);
        const auto program = m_user->path(u"my pen #1 %u"_s);
        QVERIFY(QFile::rename(m_user->path(u"bin/pen"_s), program));
        HelperWorkspace(helper).open(QUrl::fromLocalFile(program));
        QTRY_COMPARE(m_user->arguments(u"pen"_s), QByteArray("\n"));
    }

    void anApplicationIsStartedByItsEntry()
    {
        m_user->add(u"pen"_s);
        QVERIFY(QFile::rename(
            m_user->path(u"data/applications/pen.desktop"_s), m_user->path(u"my pen.desktop"_s)));
        HelperWorkspace(helper).open(QUrl::fromLocalFile(m_user->path(u"my pen.desktop"_s)));
        QTRY_COMPARE(m_user->arguments(u"pen"_s), QByteArray("\n"));
    }

    // Browsers make such entries: the first line is for shells.
    void anEntryThatCanBeRunIsAnEntryStill()
    {
        m_user->add(u"pen"_s);
        const auto entry = m_user->path(u"pen.desktop"_s);
        m_user->write(u"pen.desktop"_s,
            "#!/bin/false\n[Desktop Entry]\nType=Application\nName=Pen\nExec=pen new\n");
        QVERIFY(QFile::setPermissions(entry, QFile::ReadOwner | QFile::ExeOwner));
        HelperWorkspace(helper).open(QUrl::fromLocalFile(entry));
        QTRY_COMPARE(m_user->arguments(u"pen"_s), QByteArray("new\n"));
    }

    void otherFilesAreOpenedByWhatIsChosenForThem_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("text") << u"text"_s;
        QTest::newRow("empty") << u"empty"_s;
        QTest::newRow("a script that may not run") << u"script"_s;
        QTest::newRow("folder") << u"bin"_s;
    }

    void otherFilesAreOpenedByWhatIsChosenForThem()
    {
        QFETCH(QString, file);
        m_user->add(u"editor"_s, "Exec=editor %f\n");
        m_user->write(u"config/mimeapps.list"_s,
            "[Default Applications]\ntext/plain=editor.desktop\n"
            "application/x-shellscript=editor.desktop\ninode/directory=editor.desktop\n");
        m_user->write(u"text"_s, "A text\n");
        m_user->write(u"script"_s, "#!/bin/sh\n");
        m_user->write(u"empty"_s, {});
        HelperWorkspace(helper).open(QUrl::fromLocalFile(m_user->path(file)));
        QTRY_COMPARE(m_user->arguments(u"editor"_s), m_user->path(file).toUtf8() + '\n');
    }

    void filesAreKnownByTheirStart()
    {
        const auto kind = [&](const QString& name) {
            return FileStart::kind(m_user->path(name).toStdString());
        };
        m_user->add(u"script"_s);
        QCOMPARE(kind(u"bin/script"_s), Kind::program);
        QVERIFY(QFile::copy(QStringLiteral("/bin/true"), m_user->path(u"true"_s)));
        QCOMPARE(kind(u"true"_s), Kind::program);
        QVERIFY(QFile::setPermissions(m_user->path(u"true"_s), QFile::ReadOwner));
        QCOMPARE(kind(u"true"_s), Kind::document);
        m_user->write(u"text"_s, "A text\n");
        QVERIFY(QFile::setPermissions(m_user->path(u"text"_s), QFile::ReadOwner | QFile::ExeOwner));
        QCOMPARE(kind(u"text"_s), Kind::document);
        QVERIFY(QFile::link(u"bin"_s, m_user->path(u"link"_s)));
        QCOMPARE(kind(u"link"_s), Kind::folder);
        QVERIFY(QFile::link(u"self"_s, m_user->path(u"self"_s)));
        QCOMPARE(kind(u"self"_s), Kind::missing);
    }

    void whatCannotBeOpenedIsAnError_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<QByteArray>("reason");
        QTest::newRow("missing") << u"file:///nonexistent"_s << QByteArray("there is no such file");
        QTest::newRow("device") << u"file:///dev/null"_s << QByteArray("it is no file or folder");
        QTest::newRow("pipe") << u"FILE:///%1/pipe"_s << QByteArray("it is no file or folder");
        QTest::newRow("no application")
            << u"file:///%1/odd.desktop"_s << QByteArray("it is no application that can run here");
        QTest::newRow("another machine")
            << u"file://elsewhere/etc/hostname"_s << QByteArray("it is no address of a file here");
        QTest::newRow("zero") << u"file:///etc%00/hostname"_s
                              << QByteArray("it is no address of a file here");
        QTest::newRow("no program")
            << u"nothing:at-all"_s << QByteArray("no program is installed that opens it");
        QTest::newRow("no address") << u"/etc/hostname"_s << QByteArray("it is no address");
        QTest::newRow("empty") << QString() << QByteArray("it is no address");
        QTest::newRow("option") << u"--help"_s << QByteArray("it is no address");
    }

    void whatCannotBeOpenedIsAnError()
    {
        QFETCH(QString, url);
        QFETCH(QByteArray, reason);
        m_user->write(u"odd.desktop"_s, "[Desktop Entry]\nType=Link\nURL=https://a\nName=a\n");
        QCOMPARE(::mkfifo(m_user->path(u"pipe"_s).toUtf8(), 0600), 0);
        url.replace(u"/%1"_s, m_user->path());
        const auto end = runHelper(helper, { u"-u"_s, url });
        QCOMPARE(end.status, 1);
        QCOMPARE(end.said, url.toUtf8() + ": " + reason + '\n');
    }

    void aHelperThatIsMissingIsIgnored()
    {
        QElapsedTimer elapsed;
        elapsed.start();
        HelperWorkspace(u"/nonexistent/open"_s).open(QUrl(u"https://example.org"_s));
        QVERIFY(elapsed.elapsed() < 150);
    }

    void aHungBusHoldsNobodyUp()
    {
        m_user->add(u"org.corvella.Pen"_s, "DBusActivatable=true\n");
        m_user->choose(u"org.corvella.Pen"_s, "https");
        PrivateBus bus;
        QVERIFY(bus.hang());
        const auto address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
        qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address());
        QElapsedTimer elapsed;
        elapsed.start();
        HelperWorkspace(helper).open(QUrl(u"https://example.org"_s));
        const auto taken = elapsed.elapsed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        QVERIFY2(taken < 150, QByteArray::number(taken));
        QTRY_COMPARE(m_user->arguments(u"org.corvella.Pen"_s), QByteArray("https://example.org\n"));
    }

private:
    std::unique_ptr<DesktopEntries> m_user;
};

QTEST_GUILESS_MAIN(OpenUrlTest)
#include "OpenUrlTest.moc"
