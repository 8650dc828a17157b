#include "App/Platform/Linux/Session/AutostartLoginItem.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;
using Status = LoginItem::Status;

static const auto entryName = u"/autostart/org.corvella.Corvella.desktop"_s;

struct Setup {
    Setup()
    {
        qputenv("HOME", folder.path().toUtf8());
        qputenv("XDG_CONFIG_HOME", config().toUtf8());
        qputenv("XDG_CONFIG_DIRS", system().toUtf8());
        qputenv("XDG_CURRENT_DESKTOP", "Vendor:Here");
        write(program(), "#!/bin/sh\n");
        QFile::setPermissions(program(), QFile::ReadOwner | QFile::ExeOwner);
    }

    QString config() const { return folder.filePath(u"config"_s); }
    QString system() const { return folder.filePath(u"system"_s); }
    QString program() const { return folder.filePath(u"a \"$5\" `x` folder/corvella"_s); }
    QString own() const { return config() + entryName; }

    static void write(const QString& path, const QByteArray& text)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (!file.open(QFile::WriteOnly) || file.write(text) < 0)
            qFatal("No file to be had");
    }

    static QByteArray read(const QString& path)
    {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

    // An entry for this program with more lines.
    QByteArray entry(const QByteArray& lines)
    {
        item.registerItem();
        const auto text = read(own());
        QFile::remove(own());
        return text + lines;
    }

    // What systemd makes of the autostart folders at login; absent where it is not installed.
    std::optional<QString> unit() const
    {
        const auto generator
            = u"/usr/lib/systemd/user-generators/systemd-xdg-autostart-generator"_s;
        if (!QFileInfo::exists(generator))
            return std::nullopt;
        const auto out = folder.filePath(u"units"_s);
        QDir(out).removeRecursively();
        QDir().mkpath(out);
        QProcess::execute(generator, { out, out, out });
        return QString::fromUtf8(read(out + u"/app-org.corvella.Corvella@autostart.service"_s));
    }

    QTemporaryDir folder;
    AutostartLoginItem item { program() };
};

class AutostartLoginItemTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void atFirstItIsNotRegistered()
    {
        Setup s;
        QCOMPARE(s.item.status(), Status::notRegistered);
        QVERIFY(!s.item.unregisterItem());
        QVERIFY(!QFile::exists(s.own()));
    }

    void whatIsRegisteredIsEnabled()
    {
        Setup s;
        QVERIFY(!s.item.registerItem());
        QCOMPARE(s.item.status(), Status::enabled);
        QVERIFY(!s.item.unregisterItem());
        QCOMPARE(s.item.status(), Status::notRegistered);
        QVERIFY(!QFile::exists(s.own()));
    }

    void theSessionStartsWhatIsRegistered()
    {
        Setup s;
        s.item.registerItem();
        const auto unit = s.unit();
        if (!unit)
            QSKIP("systemd is not installed: what it makes of the entry was not tried");
        QVERIFY2(unit->contains("corvella"_L1), qPrintable(*unit));
        s.item.unregisterItem();
        QCOMPARE(s.unit(), QString());
    }

    void anEntryThatIsSwitchedOffIsNotEnabled_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::newRow("hidden") << QByteArray("Hidden=true\n");
        QTest::newRow("hidden by a number") << QByteArray("Hidden=1\n");
        QTest::newRow("hidden in other words") << QByteArray("Hidden=Yes\n");
        QTest::newRow("no program's") << QByteArray("Type=Link\n");
        QTest::newRow("switched off by a number") << QByteArray("X-GNOME-Autostart-enabled=0\n");
        QTest::newRow("switched off") << QByteArray("X-GNOME-Autostart-enabled=false\n");
        QTest::newRow("not installed") << QByteArray("TryExec=/nonexistent/corvella\n");
        QTest::newRow("switched off in MATE") << QByteArray("X-MATE-Autostart-enabled=false\n");
        QTest::newRow("another desktop's") << QByteArray("OnlyShowIn=GNOME;Unity;\n");
        QTest::newRow("any desktop's but this") << QByteArray("NotShowIn=GNOME;Here;\n");
        QTest::newRow("another program") << QByteArray("Exec=/bin/true\n");
        QTest::newRow("a program that is gone") << QByteArray("Exec=/nonexistent/corvella\n");
        QTest::newRow("no program") << QByteArray("Exec=\n");
        QTest::newRow("half a quoted program") << QByteArray("Exec=\"\n");
    }

    void anEntryThatIsSwitchedOffIsNotEnabled()
    {
        QFETCH(QByteArray, lines);
        Setup s;
        s.write(s.own(), s.entry(lines));
        QCOMPARE(s.item.status(), Status::requiresApproval);
        QVERIFY(!s.item.registerItem());
        QCOMPARE(s.item.status(), Status::enabled);
    }

    void anEntryMadeElsewhereIsEnabled_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::newRow("with more lines") << QByteArray("Comment=Hidden=true\n# Hidden=true\n");
        QTest::newRow("switched on") << QByteArray("Hidden=false\nX-MATE-Autostart-enabled=true\n");
        QTest::newRow("this desktop's") << QByteArray("OnlyShowIn=GNOME;Here;\n");
        QTest::newRow("not another's") << QByteArray("NotShowIn=GNOME;Her;Here too;\n");
        QTest::newRow("by its name") << QByteArray("Exec=corvella\nTryExec=corvella\n");
        QTest::newRow("with arguments") << QByteArray("Exec=corvella %U\n");
        QTest::newRow("with arguments behind a tab") << QByteArray("Exec=corvella\t%U\n");
        QTest::newRow("spaces around") << QByteArray(" Exec = corvella \r\n");
        QTest::newRow("an action of its own")
            << QByteArray("[Desktop Action x]\nExec=/bin/true\nHidden=true\n");
    }

    void anEntryMadeElsewhereIsEnabled()
    {
        QFETCH(QByteArray, lines);
        Setup s;
        qputenv("PATH", QFileInfo(s.program()).path().toUtf8());
        s.write(s.own(), s.entry(lines));
        QCOMPARE(s.item.status(), Status::enabled);
    }

    void aDesktopWithoutANameTakesNoOnesOwnEntry()
    {
        Setup s;
        qunsetenv("XDG_CURRENT_DESKTOP");
        s.write(s.own(), s.entry("OnlyShowIn=GNOME;;\n"));
        QCOMPARE(s.item.status(), Status::requiresApproval);
        s.write(s.own(), s.entry("NotShowIn=GNOME;;\n"));
        QCOMPARE(s.item.status(), Status::enabled);
    }

    void aProgramThatIsGoneStartsNothing()
    {
        Setup s;
        s.item.registerItem();
        QFile::remove(s.program());
        QCOMPARE(s.item.status(), Status::requiresApproval);
    }

    // GLib and systemd differ from the standard, and from each other, in what they make of it.
    void aPathWithAPercentSignIsNotRegistered()
    {
        Setup s;
        AutostartLoginItem item(s.folder.filePath(u"100%u/corvella"_s));
        QCOMPARE(item.registerItem(), u"No login can start a program whose path has a % in it"_s);
        QCOMPARE(item.status(), Status::notRegistered);
    }

    void oddCharactersOfThePathAreKept_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("line feed") << u"a\nb"_s;
        QTest::newRow("carriage return") << u"a\rb"_s;
        QTest::newRow("tab") << u"a\tb"_s;
        QTest::newRow("backslash") << u"a\\nb"_s;
    }

    void oddCharactersOfThePathAreKept()
    {
        QFETCH(QString, name);
        Setup s;
        const auto program = s.folder.filePath(name);
        QVERIFY(QFile::copy(s.program(), program));
        AutostartLoginItem item(program);
        QVERIFY(!item.registerItem());
        QCOMPARE(item.status(), Status::enabled);
        for (const char character : { '\r', '\t' })
            QVERIFY(!s.read(s.own()).contains(character));
    }

    void aLinkIsReplacedAndNotWhatItLeadsTo()
    {
        Setup s;
        const auto target = s.folder.filePath(u"target"_s);
        QDir().mkpath(QFileInfo(s.own()).path());
        s.write(target, "theirs");
        QVERIFY(QFile::link(target, s.own()));
        QVERIFY(!s.item.registerItem());
        QCOMPARE(s.item.status(), Status::enabled);
        QCOMPARE(s.read(target), "theirs");
        QVERIFY(!QFileInfo(s.own()).isSymLink());
    }

    void aLinkToTheEntryForAllUsersLeavesThatAlone()
    {
        Setup s;
        const auto text = s.entry({});
        s.write(s.system() + entryName, text);
        QVERIFY(QFile::link(s.system() + entryName, s.own()));
        QCOMPARE(s.item.status(), Status::enabled);
        QVERIFY(!s.item.unregisterItem());
        QCOMPARE(s.item.status(), Status::requiresApproval);
        QCOMPARE(s.read(s.system() + entryName), text);
    }

    void aLinkToThisProgramIsThisProgram()
    {
        Setup s;
        const auto link = s.folder.filePath(u"link"_s);
        QVERIFY(QFile::link(s.program(), link));
        s.write(s.own(), s.entry("Exec=" + link.toUtf8() + '\n'));
        QCOMPARE(s.item.status(), Status::enabled);
    }

    void aLinkThatLeadsNowhereIsTakenAway()
    {
        Setup s;
        QDir().mkpath(QFileInfo(s.own()).path());
        QVERIFY(QFile::link(u"/nonexistent/entry"_s, s.own()));
        QVERIFY(!s.item.unregisterItem());
        QVERIFY(!QFileInfo(s.own()).isSymLink());
    }

    void whatCannotBeTakenAwayIsSaid()
    {
        Setup s;
        s.write(s.own() + u"/x"_s, "in the way");
        QVERIFY(s.item.unregisterItem());
        QVERIFY(!s.item.unregisterItem()->isEmpty());
    }

    void anEntryForAllUsersIsHiddenByOneOfTheUser()
    {
        Setup s;
        s.write(s.system() + entryName, s.entry({}));
        QCOMPARE(s.item.status(), Status::enabled);
        QVERIFY(!s.item.unregisterItem());
        QCOMPARE(s.item.status(), Status::requiresApproval);
        QVERIFY(s.read(s.own()).contains("\nHidden=true\n"));
        if (const auto unit = s.unit())
            QCOMPARE(*unit, QString());
        QVERIFY(!s.item.registerItem());
        QCOMPARE(s.item.status(), Status::enabled);
    }

    void whatCannotBeWrittenIsSaid_data()
    {
        QTest::addColumn<QString>("way");
        QTest::newRow("a file where the folder should be") << u"config"_s;
        QTest::newRow("a folder where the file should be") << u"config"_s + entryName + u"/x"_s;
    }

    void whatCannotBeWrittenIsSaid()
    {
        QFETCH(QString, way);
        Setup s;
        s.write(s.folder.filePath(way), "in the way");
        const auto failure = s.item.registerItem();
        QVERIFY(failure);
        QVERIFY(!failure->isEmpty());
        QVERIFY(s.item.status() != Status::enabled);
    }

    void aReadOnlyFolderIsSaid()
    {
        if (geteuid() == 0)
            QSKIP("Root may write anywhere: a folder without permission was not tried");
        Setup s;
        QDir().mkpath(s.config());
        QFile::setPermissions(s.config(), QFile::ReadOwner | QFile::ExeOwner);
        QCOMPARE(s.item.registerItem(), u"Permission denied"_s);
        QFile::setPermissions(s.config(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    void garbageIsNoEntry_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("binary") << QByteArray("\0\xff\xfe=[", 5);
        QTest::newRow("another group") << QByteArray("[Desktop Action x]\nExec=corvella\n");
        QTest::newRow("large") << QByteArray(200'000, 'x');
    }

    void garbageIsNoEntry()
    {
        QFETCH(QByteArray, text);
        Setup s;
        s.write(s.own(), text);
        QCOMPARE(s.item.status(), Status::requiresApproval);
    }
};

QTEST_GUILESS_MAIN(AutostartLoginItemTest)
#include "AutostartLoginItemTest.moc"
