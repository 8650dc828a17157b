#include "App/Platform/Linux/Calendar/IcsFolders.h"
#include "App/Platform/Linux/Files/FolderTree.h"
#include "Tests/Fakes/FakeEventExpander.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;

static const TimeSpan day { Moment(std::chrono::hours(24)), Moment(std::chrono::hours(48)) };

namespace {

struct Setup {
    QString path(const QString& name) const { return home.filePath(name); }
    bool makeFolder(const QString& name) const { return QDir(home.path()).mkpath(name); }

    bool write(const QString& name, const QByteArray& text = "BEGIN:VCALENDAR") const
    {
        QFile file(path(name));
        return file.open(QFile::WriteOnly) && file.write(text) == text.size();
    }

    bool link(const QString& target, const QString& name) const
    {
        return QFile::link(path(target), path(name));
    }

    // Looks, and is done with it.
    bool begins(qsizetype requests = 1)
    {
        folders.look(day);
        return QTest::qWaitFor([&] { return expander.requests.size() == requests; });
    }

    // The next request comes, and no other after it.
    bool asksOnceMore()
    {
        const auto before = expander.requests.size();
        if (!QTest::qWaitFor([&] { return expander.requests.size() > before; }))
            return false;
        folders.look(day);
        return QTest::qWaitFor([&] { return expander.requests.size() == before + 2; });
    }

    QTemporaryDir home;
    FakeEventExpander expander;
    IcsFolders folders { expander, { path(u"data/calendars"_s), path(u".calendars"_s) } };
    QSignalSpy changes { &folders, &CalendarSource::changed };
};

std::optional<bool> access(IcsFolders& folders)
{
    std::optional<bool> answered;
    folders.checkAccess(&folders, [&](bool isOpen) { answered = isOpen; });
    return QTest::qWaitFor([&] { return answered.has_value(); }) ? answered : std::nullopt;
}

}

class IcsFoldersTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void knowsWhereProgramsKeepCalendars()
    {
        const auto data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
        QCOMPARE(IcsFolders::usualFolders(),
            QStringList({ data + u"/calendars"_s, QDir::homePath() + u"/.calendars"_s,
                data + u"/khal/calendars"_s }));
    }

    void touchesNothingBeforeItIsToLook()
    {
        Setup s;
        QVERIFY(s.makeFolder(u".calendars"_s));
        QVERIFY(s.write(u".calendars/a.ics"_s));
        QCOMPARE(access(s.folders), true);
        QVERIFY(s.expander.requests.isEmpty());
    }

    void hasTheFoldersReadThatAreThere()
    {
        Setup s;
        QVERIFY(s.makeFolder(u".calendars"_s));
        QVERIFY(s.begins());
        QCOMPARE(s.expander.requests.constFirst().paths, QStringList { s.path(u".calendars"_s) });
        QCOMPARE(s.expander.requests.constFirst().start, day.start);
        QCOMPARE(s.expander.requests.constFirst().end, day.end);
        QTRY_COMPARE(s.changes.count(), 1);
        QCOMPARE(s.folders.events().size(), 1);
    }

    void isClosedWithoutFolders()
    {
        Setup s;
        QCOMPARE(access(s.folders), false);
        QVERIFY(s.makeFolder(u"data/calendars"_s));
        QCOMPARE(access(s.folders), true);
    }

    void isClosedWhereSomethingElseIsInAFoldersPlace()
    {
        Setup s;
        QVERIFY(s.write(u".calendars"_s));
        QCOMPARE(access(s.folders), false);
    }

    void isClosedWhereFoldersCannotBeRead()
    {
        if (::geteuid() == 0)
            QSKIP("Root reads everything: an unreadable folder was not tried");
        Setup s;
        QVERIFY(s.makeFolder(u".calendars"_s));
        QVERIFY(QFile::setPermissions(s.path(u".calendars"_s), {}));
        QCOMPARE(access(s.folders), false);
        QFile::setPermissions(s.path(u".calendars"_s), QFile::ReadOwner | QFile::ExeOwner);
    }

    void aFolderThatCannotBeReadKeepsItsEvents()
    {
        Setup s;
        QVERIFY(s.makeFolder(u".calendars"_s));
        QVERIFY(s.begins());
        QTRY_COMPARE(s.folders.events().size(), 1);
        QVERIFY(QDir().rename(s.path(u".calendars"_s), s.path(u"away"_s)));
        // By nobody, not even by root.
        QVERIFY(s.link(u".calendars"_s, u".calendars"_s));
        s.folders.look(day);
        QTest::qWait(500); // Only time shows that nothing changes.
        QCOMPARE(s.folders.events().size(), 1);
        QVERIFY(QFile::remove(s.path(u".calendars"_s)));
        s.folders.look(day);
        QTRY_VERIFY(s.folders.events().isEmpty());
    }

    void keepsWhatItKnowsUntilAllWasRead()
    {
        Setup s;
        QVERIFY(s.makeFolder(u".calendars"_s));
        QVERIFY(s.begins());
        QTRY_COMPARE(s.folders.events().size(), 1);
        s.expander.isPartial = true;
        QVERIFY(s.begins(2));
        QTRY_VERIFY(s.expander.pending.isEmpty());
        QCOMPARE(s.folders.events().size(), 1);
        QVERIFY(s.makeFolder(u"data/calendars"_s));
        s.expander.isPartial = false;
        // Without being told to.
        QTRY_COMPARE(s.folders.events().size(), 2);
    }

    void aPartIsBetterThanAnotherDay()
    {
        Setup s;
        QVERIFY(s.makeFolder(u".calendars"_s));
        QVERIFY(s.begins());
        QTRY_COMPARE(s.folders.events().size(), 1);
        s.expander.isPartial = true;
        s.folders.look({ day.end, day.end + std::chrono::hours(24) });
        QTRY_VERIFY(s.folders.events().isEmpty());
    }

    void noticesFiles_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::newRow("in the folder") << u".calendars"_s;
        QTest::newRow("below") << u".calendars/office"_s;
        QTest::newRow("deep below") << u".calendars/a/b/c/d/e/f"_s;
    }

    void noticesFiles()
    {
        QFETCH(QString, folder);
        Setup s;
        QVERIFY(s.makeFolder(folder));
        QVERIFY(s.begins());
        QVERIFY(s.write(folder + u"/a.ics"_s));
        QVERIFY(s.asksOnceMore());
        QVERIFY(QFile::rename(s.path(folder + u"/a.ics"_s), s.path(u"elsewhere"_s)));
        QVERIFY(s.asksOnceMore());
        QVERIFY(QFile::rename(s.path(u"elsewhere"_s), s.path(folder + u"/b.ics"_s)));
        QVERIFY(s.asksOnceMore());
        QVERIFY(::link(s.path(folder + u"/b.ics"_s).toLocal8Bit().constData(),
                    s.path(folder + u"/c.ics"_s).toLocal8Bit().constData())
            == 0);
        QVERIFY(s.asksOnceMore());
        QVERIFY(QFile::remove(s.path(folder + u"/c.ics"_s)));
        QVERIFY(s.asksOnceMore());
    }

    void noticesFoldersThatAppear_data()
    {
        QTest::addColumn<QStringList>("folders");
        QTest::newRow("below") << QStringList { u".calendars/office"_s };
        QTest::newRow("step by step") << QStringList { u"data"_s, u"data/calendars"_s };
        QTest::newRow("at once") << QStringList { u"data/calendars/office"_s };
    }

    void noticesFoldersThatAppear()
    {
        QFETCH(QStringList, folders);
        Setup s;
        QVERIFY(s.makeFolder(u".calendars"_s));
        QVERIFY(s.begins());
        for (const auto& folder : folders)
            QVERIFY(s.makeFolder(folder));
        QTRY_VERIFY(s.expander.requests.size() > 1);
        const auto before = s.expander.requests.size();
        QVERIFY(s.write(folders.constLast() + u"/a.ics"_s));
        QTRY_VERIFY(s.expander.requests.size() > before);
    }

    void aFolderThatIsGoneHasNoEvents()
    {
        Setup s;
        QVERIFY(s.makeFolder(u".calendars/office"_s));
        QVERIFY(s.begins());
        QTRY_COMPARE(s.folders.events().size(), 1);
        QVERIFY(QFile::rename(s.path(u".calendars"_s), s.path(u"old"_s)));
        QTRY_VERIFY(s.folders.events().isEmpty());
        QCOMPARE(s.changes.count(), 2);
        QVERIFY(s.makeFolder(u".calendars"_s));
        QTRY_COMPARE(s.folders.events().size(), 1);
    }

    void manyFilesAreReadFewTimes()
    {
        Setup s;
        QVERIFY(s.makeFolder(u".calendars"_s));
        QVERIFY(s.begins());
        for (int number = 0; number < 500; ++number) {
            QVERIFY(s.write(u".calendars/%1.ics"_s.arg(number)));
            QCoreApplication::processEvents();
        }
        QVERIFY(s.asksOnceMore());
        QVERIFY2(s.expander.requests.size() <= 6, QByteArray::number(s.expander.requests.size()));
    }

    void otherFilesAreOfNoInterest()
    {
        Setup s;
        QVERIFY(s.makeFolder(u".calendars"_s));
        QVERIFY(s.begins());
        Setup witness;
        QVERIFY(witness.makeFolder(u".calendars"_s));
        QVERIFY(witness.begins());
        QVERIFY(s.write(u".calendars/.temporary"_s));
        QVERIFY(s.write(u"beside"_s));
        QVERIFY(QFile::remove(s.path(u".calendars/.temporary"_s)));
        QCoreApplication::processEvents();
        // What happens later elsewhere is noticed.
        QVERIFY(witness.write(u".calendars/a.ics"_s));
        QVERIFY(witness.asksOnceMore());
        QCOMPARE(s.expander.requests.size(), 1);
    }

    void linksInACircleEnd()
    {
        Setup s;
        QVERIFY(s.makeFolder(u".calendars/office"_s));
        QVERIFY(s.link(u".calendars"_s, u".calendars/office/up"_s));
        QVERIFY(s.link(u".calendars/self"_s, u".calendars/self"_s));
        const auto plan = FolderTree::plan({ s.path(u".calendars"_s).toLocal8Bit() });
        QCOMPARE(plan.folders.size(), 2);
        QVERIFY(s.begins());
        QVERIFY(s.write(u".calendars/office/a.ics"_s));
        QVERIFY(s.asksOnceMore());
    }

    void aLinkedFolderIsFollowed()
    {
        Setup s;
        QVERIFY(s.makeFolder(u"elsewhere"_s));
        QVERIFY(s.link(u"elsewhere"_s, u".calendars"_s));
        QVERIFY(s.begins());
        QVERIFY(s.write(u"elsewhere/a.ics"_s));
        QVERIFY(s.asksOnceMore());
    }

    void keepsWhatItKnowsWhenTheReadingFails()
    {
        Setup s;
        QVERIFY(s.makeFolder(u".calendars"_s));
        QVERIFY(s.begins());
        QTRY_COMPARE(s.changes.count(), 1);
        s.expander.fails = true;
        QVERIFY(s.begins(2));
        QTRY_VERIFY(s.expander.pending.isEmpty());
        QCOMPARE(s.folders.events().size(), 1);
        QCOMPARE(s.changes.count(), 1);
        s.expander.fails = false;
        QTRY_COMPARE(s.expander.requests.size(), 3);
    }

    void isSilentWhenNothingIsDifferent()
    {
        Setup s;
        QVERIFY(s.makeFolder(u".calendars"_s));
        QVERIFY(s.begins());
        QTRY_COMPARE(s.changes.count(), 1);
        QVERIFY(s.begins(2));
        QTRY_VERIFY(s.expander.pending.isEmpty());
        QCOMPARE(s.changes.count(), 1);
    }

    void hasOneReadingAtATimeAndAnotherAfterChanges()
    {
        Setup s;
        s.expander.isSlow = true;
        QVERIFY(s.makeFolder(u".calendars"_s));
        QVERIFY(s.begins());
        const auto walked = [&] {
            s.folders.look(day);
            return QTest::qWaitFor([&] { return access(s.folders).has_value(); });
        };
        QVERIFY(walked());
        QVERIFY(walked());
        QCOMPARE(s.expander.requests.size(), 1);
        s.expander.answerNext();
        QTRY_COMPARE(s.expander.requests.size(), 2);
    }
};

QTEST_GUILESS_MAIN(IcsFoldersTest)
#include "IcsFoldersTest.moc"
