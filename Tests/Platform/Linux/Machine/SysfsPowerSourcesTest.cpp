#include "App/Platform/Linux/Machine/SysfsPowerSources.h"
#include "Tests/Support/SysfsFolder.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct Setup {
    SysfsFolder folder;
    SysfsPowerSources sources { folder.path(), 10ms };
    QSignalSpy changes { &sources, &Followed::changed };

    qint64 capacity() const
    {
        const auto told = sources.sources().value_or(QList<PowerSource>());
        return told.value(0).currentCapacity.value_or(-1);
    }

    void setCapacity(const QByteArray& percent)
    {
        folder.write(u"BAT0/capacity"_s, percent);
        folder.write(u"BAT0/type"_s, "Battery");
    }
};

}

class SysfsPowerSourcesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void knowsNothingBeforeItIsFollowed()
    {
        Setup s;
        s.setCapacity("50");
        QVERIFY(!s.sources.sources());
    }

    void tellsOfChangesWhileFollowed()
    {
        Setup s;
        s.sources.follow();
        QTRY_COMPARE(s.sources.sources(), QList<PowerSource>());
        s.setCapacity("50");
        QTRY_COMPARE(s.capacity(), 50);
        s.folder.write(u"BAT0/capacity"_s, "49");
        QTRY_COMPARE(s.capacity(), 49);
        QVERIFY(s.changes.count() >= 3);
    }

    void tellsOfNoChangeWhereThereIsNone()
    {
        Setup s;
        Setup other;
        s.setCapacity("50");
        s.sources.follow();
        QTRY_COMPARE(s.changes.count(), 1);
        other.sources.follow();
        for (const auto* percent : { "40", "41", "42" }) {
            other.setCapacity(percent);
            QTRY_COMPARE(other.capacity(), QByteArray(percent).toLongLong());
        }
        QCOMPARE(s.changes.count(), 1);
    }

    void keepsWhatItKnewWhenNobodyFollows()
    {
        Setup s;
        s.setCapacity("50");
        s.sources.follow();
        QTRY_VERIFY(s.sources.sources());
        s.sources.unfollow();
        QCOMPARE(s.capacity(), 50);
    }
};

QTEST_GUILESS_MAIN(SysfsPowerSourcesTest)
#include "SysfsPowerSourcesTest.moc"
