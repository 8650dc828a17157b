#include "App/Platform/Linux/Audio/DeadlineThread.h"

#include <QDir>
#include <QSemaphore>
#include <QTest>
#include <QThread>

#include <atomic>
#include <csignal>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using std::chrono::steady_clock;

namespace {

// Shared with threads that may outlive the test's slot.
struct Gate {
    QSemaphore opened;
    std::atomic<bool> isPassed = false;
};

DeadlineThread::Work workBehind(const std::shared_ptr<Gate>& gate)
{
    return [gate] {
        gate->opened.acquire();
        gate->isPassed = true;
    };
}

DeadlineThread::Deadline soon()
{
    return steady_clock::now() + 20ms;
}

DeadlineThread::Deadline farOff()
{
    return steady_clock::now() + 20s;
}

void nothing() { }

QStringList threads()
{
    return QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
}

}

class DeadlineThreadTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_threads = threads(); }

    void waitsForWorkThatIsDoneElsewhere()
    {
        DeadlineThread thread;
        QThread* worked = nullptr;
        QVERIFY(thread.run([&] { worked = QThread::currentThread(); }, farOff()));
        QVERIFY(worked);
        QVERIFY(worked != QThread::currentThread());
    }

    void doesAllOnOneThread()
    {
        DeadlineThread thread;
        pthread_t first {};
        pthread_t second {};
        QVERIFY(thread.run([&] { first = pthread_self(); }, farOff()));
        QVERIFY(thread.run([&] { second = pthread_self(); }, farOff()));
        QVERIFY(pthread_equal(first, second));
    }

    void waitsNoLongerThanTheDeadline()
    {
        const auto gate = std::make_shared<Gate>();
        DeadlineThread thread;
        const auto deadline = steady_clock::now() + 50ms;
        QVERIFY(!thread.run(workBehind(gate), deadline));
        const auto late = steady_clock::now() - deadline;
        gate->opened.release();
        QVERIFY(late >= 0ms);
        QVERIFY2(late < 500ms, QByteArray::number(qint64(late / 1ms)));
    }

    void waitsOnceOnlyForWhatIsLate()
    {
        const auto gate = std::make_shared<Gate>();
        DeadlineThread thread;
        QVERIFY(!thread.run(workBehind(gate), soon()));
        const auto asked = steady_clock::now();
        QVERIFY(!thread.run(nothing, asked + 20s));
        QVERIFY(steady_clock::now() - asked < 10s);
        gate->opened.release();
        QTRY_VERIFY(thread.run(nothing, farOff()));
        QVERIFY(gate->isPassed);
    }

    void beginsNothingAfterTheDeadline()
    {
        const auto begun = std::make_shared<std::atomic<bool>>(false);
        DeadlineThread thread;
        QVERIFY(!thread.run([begun] { *begun = true; }, steady_clock::now() - 1ms));
        QVERIFY(thread.run(nothing, farOff()));
        QVERIFY(!*begun);
    }

    void leavesWorkWithoutWaiting()
    {
        const auto gate = std::make_shared<Gate>();
        DeadlineThread thread;
        thread.leave(workBehind(gate));
        QVERIFY(!gate->isPassed);
        gate->opened.release();
        // Done in turn.
        QVERIFY(thread.run(nothing, farOff()));
        QVERIFY(gate->isPassed);
    }

    void workThatHangsHoldsUpNoEnd()
    {
        const auto gate = std::make_shared<Gate>();
        {
            DeadlineThread thread;
            QVERIFY(!thread.run(workBehind(gate), soon()));
        }
        QVERIFY(!gate->isPassed);
        gate->opened.release();
        QTRY_COMPARE(threads(), m_threads);
        QVERIFY(gate->isPassed);
    }

    void endsWhatTheWorkOwnsOnTheThread()
    {
        struct Owned {
            QThread*& ended;
            ~Owned() { ended = QThread::currentThread(); }
        };
        DeadlineThread thread;
        QThread* ended = nullptr;
        QThread* worked = nullptr;
        auto owned = std::make_shared<Owned>(ended);
        const auto gate = std::make_shared<Gate>();
        thread.leave(workBehind(gate));
        thread.leave([&worked, held = owned] { worked = QThread::currentThread(); });
        owned.reset();
        gate->opened.release();
        QVERIFY(thread.run(nothing, farOff()));
        QCOMPARE(ended, worked);
    }

    void theProgramsSignalsStayWithItsMainThread()
    {
        DeadlineThread thread;
        bool isBlocked = false;
        const auto look = [&] {
            sigset_t mask;
            pthread_sigmask(SIG_SETMASK, nullptr, &mask);
            isBlocked = sigismember(&mask, SIGTERM) == 1;
        };
        QVERIFY(thread.run(look, farOff()));
        QVERIFY(isBlocked);
    }

private:
    QStringList m_threads; // Those that were there before.
};

QTEST_GUILESS_MAIN(DeadlineThreadTest)
#include "DeadlineThreadTest.moc"
