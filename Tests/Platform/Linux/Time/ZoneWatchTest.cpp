#include "App/Platform/Linux/Time/ZoneWatch.h"

#include <QDateTime>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

#include <cstdio>
#include <ctime>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

struct Setup {
    Setup() { point("Europe/Berlin"); }

    QByteArray path(const char* name) const
    {
        return folder.filePath(QLatin1String(name)).toLocal8Bit();
    }

    // As the programs do that set it.
    void point(const QByteArray& zone)
    {
        const auto target = "/usr/share/zoneinfo/" + zone;
        if (::symlink(target.constData(), path("new").constData()) != 0
            || ::rename(path("new").constData(), path("localtime").constData()) != 0)
            qFatal("No link to be had");
    }

    bool remove() { return ::unlink(path("localtime").constData()) == 0; }

    QTemporaryDir folder;
};

struct Watched : Setup {
    ZoneWatch watch { folder.filePath(u"localtime"_s) };
    QSignalSpy changes { &watch, &ZoneWatch::zoneChanged };
};

// As the C library has it, which Qt would otherwise remind of the zone.
int hourOfTheEpoch()
{
    const time_t epoch = 0;
    tm local {};
    ::localtime_r(&epoch, &local);
    return local.tm_hour;
}

}

class ZoneWatchTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { qunsetenv("TZ"); }

    void tellsOfALinkThatIsReplacedEachTime()
    {
        Watched s;
        s.point("Asia/Tokyo");
        QTRY_COMPARE(s.changes.count(), 1);
        s.point("Asia/Tehran");
        QTRY_COMPARE(s.changes.count(), 2);
        QCoreApplication::processEvents();
        QCOMPARE(s.changes.count(), 2);
    }

    void tellsOfALinkThatIsRemovedAndMadeAnew()
    {
        Watched s;
        QVERIFY(s.remove());
        QTRY_COMPARE(s.changes.count(), 1);
        s.point("Asia/Tokyo");
        QTRY_COMPARE(s.changes.count(), 2);
        s.point("Asia/Tehran");
        QTRY_COMPARE(s.changes.count(), 3);
    }

    void tellsOfACopyInPlaceOfTheLink()
    {
        Watched s;
        QVERIFY(s.remove());
        QTRY_COMPARE(s.changes.count(), 1);
        QVERIFY(
            QFile::copy(u"/usr/share/zoneinfo/Asia/Tokyo"_s, s.folder.filePath(u"localtime"_s)));
        QTRY_VERIFY(s.changes.count() >= 2);
    }

    void otherFilesAreOfNoInterest()
    {
        Watched s;
        QVERIFY(s.remove());
        QTRY_COMPARE(s.changes.count(), 1);
        QFile other(s.folder.filePath(u"other"_s));
        QVERIFY(other.open(QFile::WriteOnly));
        other.close();
        QVERIFY(other.remove());
        s.point("Asia/Tokyo");
        QTRY_COMPARE(s.changes.count(), 2);
    }

    void aZoneOfTheEnvironmentCountsAlone()
    {
        qputenv("TZ", "Europe/Berlin");
        Watched s;
        s.point("Asia/Tokyo");
        QCoreApplication::processEvents();
        QCOMPARE(s.changes.count(), 0);
    }

    void aMissingFolderHarmsNobody()
    {
        ZoneWatch watch(u"/nonexistent/localtime"_s);
        QSignalSpy changes(&watch, &ZoneWatch::zoneChanged);
        QCoreApplication::processEvents();
        QCOMPARE(changes.count(), 0);
    }

    // In a process whose /etc is another: this one's zone is the machine's.
    void localTimeFollows()
    {
        const auto etc = qgetenv("CORVELLA_TEST_ETC");
        if (!etc.isEmpty()) {
            followsIn(QString::fromLocal8Bit(etc));
            return;
        }
        Setup s;
        QStringList arguments { u"--mount"_s, u"sh"_s, u"-c"_s,
            u"mount --bind \"$CORVELLA_TEST_ETC\" /etc || exit 77; exec \"$0\" localTimeFollows"_s,
            QCoreApplication::applicationFilePath() };
        if (::geteuid() != 0)
            arguments.prepend(u"--map-root-user"_s);
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"CORVELLA_TEST_ETC"_s, s.folder.path());
        QProcess child;
        child.setProcessEnvironment(environment);
        child.setProcessChannelMode(QProcess::MergedChannels);
        child.start(u"unshare"_s, arguments);
        QVERIFY(child.waitForFinished());
        const auto printed = child.readAll();
        if (child.exitCode() == 77 || printed.startsWith("unshare: "))
            QSKIP("No namespace to be had: local time was not seen to follow the machine's zone");
        QVERIFY2(child.exitStatus() == QProcess::NormalExit && child.exitCode() == 0, printed);
    }

private:
    static void followsIn(const QString& etc)
    {
        QCOMPARE(QTimeZone::systemTimeZoneId(), QByteArray("Europe/Berlin"));
        QCOMPARE(hourOfTheEpoch(), 1);
        ZoneWatch watch;
        QSignalSpy changes(&watch, &ZoneWatch::zoneChanged);
        const auto link = etc.toLocal8Bit() + "/localtime";
        QVERIFY(::unlink(link.constData()) == 0);
        QVERIFY(::symlink("/usr/share/zoneinfo/Asia/Tokyo", link.constData()) == 0);
        QTRY_VERIFY(changes.count() > 0);
        QCOMPARE(hourOfTheEpoch(), 9);
        QCOMPARE(QTimeZone::systemTimeZoneId(), QByteArray("Asia/Tokyo"));
        QCOMPARE(QDateTime::fromSecsSinceEpoch(0).time().hour(), 9);
    }
};

QTEST_GUILESS_MAIN(ZoneWatchTest)
#include "ZoneWatchTest.moc"
