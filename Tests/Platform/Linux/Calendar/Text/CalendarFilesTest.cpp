#include "App/Platform/Linux/Calendar/Text/CalendarFiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class CalendarFilesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
    }

    void findsCalendarsInFoldersSmallOnesFirst()
    {
        write(u"large.ics"_s, 3);
        write(u"sub/folder/Medium.ICS"_s, 2);
        write(u"small.ics"_s, 1);
        write(u"notes.txt"_s, 1);
        write(u".hidden.ics"_s, 1);
        write(u".trash/old.ics"_s, 1);
        QCOMPARE(found({ m_dir->path() }),
            QStringList({ u"small.ics"_s, u"sub/folder/Medium.ICS"_s, u"large.ics"_s }));
    }

    void aFileIsReadWhateverItsName()
    {
        write(u"export.txt"_s, 1);
        QCOMPARE(found({ path(u"export.txt"_s) }), QStringList { u"export.txt"_s });
        QCOMPARE(found({ path(u"missing.ics"_s) }), QStringList());
    }

    void whatIsNoFileIsLeftAlone()
    {
        write(u"good.ics"_s, 1);
        QCOMPARE(mkfifo(QFile::encodeName(path(u"fifo.ics"_s)).constData(), 0600), 0);
        QVERIFY(QDir().mkdir(path(u"folder.ics"_s)));
        QVERIFY(QFile::link(u"loop.ics"_s, path(u"loop.ics"_s)));
        QVERIFY(QFile::link(u"missing.ics"_s, path(u"dangling.ics"_s)));
        QVERIFY(QFile::link(u"/dev/zero"_s, path(u"device.ics"_s)));
        QVERIFY(QFile::link(u"."_s, path(u"itself"_s)));
        QCOMPARE(found({ m_dir->path() }), QStringList { u"good.ics"_s });
        for (const auto* name : { "fifo.ics", "folder.ics", "loop.ics", "device.ics" })
            QVERIFY(!CalendarFiles::read(
                QFile::encodeName(path(QString::fromLatin1(name))), [](auto) { return true; }));
    }

    void linksAreFollowed()
    {
        QTemporaryDir other;
        QFile file(other.filePath(u"linked.ics"_s));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("x") == 1);
        file.close();
        QVERIFY(QFile::link(other.path(), path(u"folder"_s)));
        QVERIFY(QFile::link(file.fileName(), path(u"file.ics"_s)));
        QCOMPARE(found({ m_dir->path() }), QStringList({ u"file.ics"_s, u"folder/linked.ics"_s }));
    }

    void aFileThatMayNotBeReadIsNone()
    {
        write(u"secret.ics"_s, 1);
        QVERIFY(QFile::setPermissions(path(u"secret.ics"_s), QFile::Permissions()));
        if (access(QFile::encodeName(path(u"secret.ics"_s)).constData(), R_OK) == 0)
            QSKIP("Everything may be read here; a file without permission was not tried");
        QVERIFY(!CalendarFiles::read(
            QFile::encodeName(path(u"secret.ics"_s)), [](auto) { return true; }));
    }

    void whatMayNotBeLookedAtIsMissing()
    {
        write(u"good.ics"_s, 1);
        QVERIFY(isAll());
        QVERIFY(QFile::link(u"missing.ics"_s, path(u"dangling.ics"_s)));
        QVERIFY(isAll());
        write(u"closed/one.ics"_s, 1);
        QVERIFY(QFile::setPermissions(path(u"closed"_s), QFile::Permissions()));
        const bool isClosed = access(QFile::encodeName(path(u"closed"_s)).constData(), R_OK) != 0;
        const bool isSaid = !isAll();
        QFile::setPermissions(
            path(u"closed"_s), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        if (!isClosed)
            QSKIP("Everything may be read here; a folder without permission was not tried");
        QVERIFY(isSaid);
    }

    void readsUntilNoMoreIsWanted()
    {
        write(u"large.ics"_s, 1'000'000);
        std::size_t taken = 0;
        const auto file = QFile::encodeName(path(u"large.ics"_s));
        QVERIFY(CalendarFiles::read(
            file, [&](std::string_view bytes) { return (taken += bytes.size()) > 0; }));
        QCOMPARE(taken, 1'000'000U);
        taken = 0;
        QVERIFY(CalendarFiles::read(file, [&](std::string_view bytes) {
            taken += bytes.size();
            return false;
        }));
        QVERIFY(taken > 0 && taken < 1'000'000U);
    }

private:
    QString path(const QString& name) const { return m_dir->filePath(name); }

    void write(const QString& name, int size)
    {
        QFile file(path(name));
        QVERIFY(QDir().mkpath(path(name).section(u'/', 0, -2)));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray(size, 'x')) == size);
    }

    QStringList found(const QStringList& paths) const
    {
        QStringList names;
        constexpr TimeBudget enough { TimeBudget::Seconds(1e9), TimeBudget::Seconds(1e9) };
        for (const auto& file : CalendarFiles::find(paths, enough).files)
            names << QFile::decodeName(file).sliced(m_dir->path().size() + 1);
        return names;
    }

    bool isAll() const
    {
        constexpr TimeBudget enough { TimeBudget::Seconds(1e9), TimeBudget::Seconds(1e9) };
        return CalendarFiles::find({ m_dir->path() }, enough).isComplete;
    }

    std::unique_ptr<QTemporaryDir> m_dir;
};

QTEST_GUILESS_MAIN(CalendarFilesTest)
#include "CalendarFilesTest.moc"
