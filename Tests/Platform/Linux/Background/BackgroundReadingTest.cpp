#include "App/Platform/Linux/Background/BackgroundReading.h"

#include <QElapsedTimer>
#include <QSemaphore>
#include <QTest>

#include <atomic>

using namespace std::chrono_literals;

namespace {

// Shared with threads that may outlive the test's slot.
struct Source {
    std::atomic<int> reads = 0;
    std::atomic<bool> hangs = false;
    QSemaphore opened;

    int read()
    {
        const int number = ++reads;
        if (hangs)
            opened.acquire();
        return number;
    }
};

struct Setup {
    std::shared_ptr<Source> source = std::make_shared<Source>();
    QList<int> learnt;
    BackgroundReading<int> reading { [source = source] { return source->read(); },
        [this](int number) { learnt << number; }, 10ms };
};

}

class BackgroundReadingTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsAtOnceAndAgain()
    {
        Setup s;
        s.reading.begin();
        QTRY_VERIFY(s.learnt.size() >= 3);
        QCOMPARE(s.learnt.first(3), QList<int>({ 1, 2, 3 }));
    }

    void isStillBeforeItBeginsAndAfterItEnds()
    {
        Setup s;
        Setup other;
        other.reading.begin();
        QTRY_VERIFY(other.learnt.size() >= 5);
        QCOMPARE(s.source->reads.load(), 0);
        s.reading.begin();
        QTRY_VERIFY(!s.learnt.isEmpty());
        s.reading.end();
        const auto learnt = s.learnt;
        const int reads = s.source->reads;
        other.learnt.clear();
        QTRY_VERIFY(other.learnt.size() >= 5);
        QCOMPARE(s.learnt, learnt);
        // Another reading may have been on its way when it ended.
        QVERIFY(s.source->reads <= reads + 1);
    }

    void aReadingThatHangsIsTheOnlyOne()
    {
        Setup s;
        Setup other;
        s.source->hangs = true;
        s.reading.begin();
        other.reading.begin();
        QTRY_VERIFY(other.learnt.size() >= 5);
        s.reading.end();
        s.reading.begin();
        other.learnt.clear();
        QTRY_VERIFY(other.learnt.size() >= 5);
        QCOMPARE(s.source->reads.load(), 1);
        s.source->hangs = false;
        s.source->opened.release();
        QTRY_VERIFY(s.learnt.size() >= 2);
    }

    void aReadingThatHangsHoldsUpNoEnd()
    {
        const auto source = std::make_shared<Source>();
        source->hangs = true;
        QElapsedTimer taken;
        {
            BackgroundReading<int> reading([source] { return source->read(); }, [](int) {}, 10ms);
            reading.begin();
            QTRY_COMPARE(source->reads.load(), 1);
            taken.start();
            reading.end();
        }
        QVERIFY2(taken.elapsed() < 150, QByteArray::number(taken.elapsed()));
        source->opened.release();
        QTRY_COMPARE(source.use_count(), 1);
    }
};

QTEST_GUILESS_MAIN(BackgroundReadingTest)
#include "BackgroundReadingTest.moc"
