#include "App/Platform/Linux/Background/BackgroundWork.h"

#include <QElapsedTimer>
#include <QSemaphore>
#include <QTest>
#include <QThread>

#include <atomic>
#include <csignal>

namespace {

// Shared with threads that may outlive the test's slot.
struct Gate {
    QSemaphore entered;
    QSemaphore opened;
    std::atomic<int> rests = 0;
};

std::function<BackgroundWork::Finish()> workBehind(const std::shared_ptr<Gate>& gate)
{
    return [gate]() -> BackgroundWork::Finish {
        gate->entered.release();
        gate->opened.acquire();
        return [gate] { ++gate->rests; };
    };
}

}

class BackgroundWorkTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void worksElsewhereAndDoesTheRestHere()
    {
        BackgroundWork work;
        QThread* worked = nullptr;
        QThread* rested = nullptr;
        work.start([&]() -> BackgroundWork::Finish {
            worked = QThread::currentThread();
            return [&] { rested = QThread::currentThread(); };
        });
        QTRY_COMPARE(rested, thread());
        QVERIFY(worked != thread());
    }

    void doesOneThingAtATime()
    {
        const auto gate = std::make_shared<Gate>();
        BackgroundWork work;
        work.start(workBehind(gate));
        QVERIFY(gate->entered.tryAcquire(1, 5000));
        work.start(workBehind(gate));
        gate->opened.release(2);
        QTRY_COMPARE(gate->rests.load(), 1);
        work.start(workBehind(gate));
        QTRY_COMPARE(gate->rests.load(), 2);
        QCOMPARE(gate->entered.available(), 1);
    }

    void workThatHangsHoldsUpNoEnd()
    {
        const auto gate = std::make_shared<Gate>();
        QElapsedTimer taken;
        {
            BackgroundWork work;
            work.start(workBehind(gate));
            QVERIFY(gate->entered.tryAcquire(1, 5000));
            taken.start();
        }
        QVERIFY2(taken.elapsed() < 150, QByteArray::number(taken.elapsed()));
        gate->opened.release();
        // The thread lets go of its share when it has done all that it will do.
        QTRY_COMPARE(gate.use_count(), 1);
        QCoreApplication::processEvents();
        QCOMPARE(gate->rests.load(), 0);
    }

    void theProgramsSignalsStayWithItsMainThread()
    {
        BackgroundWork work;
        bool isDone = false;
        bool isBlocked = false;
        work.start([&]() -> BackgroundWork::Finish {
            sigset_t mask;
            pthread_sigmask(SIG_SETMASK, nullptr, &mask);
            isBlocked = sigismember(&mask, SIGTERM) == 1;
            return [&] { isDone = true; };
        });
        QTRY_VERIFY(isDone);
        QVERIFY(isBlocked);
        sigset_t mask;
        pthread_sigmask(SIG_SETMASK, nullptr, &mask);
        QCOMPARE(sigismember(&mask, SIGTERM), 0);
    }
};

QTEST_GUILESS_MAIN(BackgroundWorkTest)
#include "BackgroundWorkTest.moc"
