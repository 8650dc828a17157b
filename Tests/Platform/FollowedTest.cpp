#include "App/Platform/Followed.h"

#include <QTest>

struct Watched final : Followed {
    void begin() override { ++begins; }
    void end() override { ++ends; }

    int begins = 0;
    int ends = 0;
};

class FollowedTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theFirstFollowerBeginsAndTheLastOneEnds()
    {
        Watched watched;
        watched.follow();
        watched.follow();
        QCOMPARE(watched.begins, 1);
        watched.unfollow();
        QCOMPARE(watched.ends, 0);
        watched.unfollow();
        QCOMPARE(watched.ends, 1);
    }

    void itCanBeFollowedAgain()
    {
        Watched watched;
        watched.follow();
        watched.unfollow();
        watched.follow();
        QCOMPARE(watched.begins, 2);
        QCOMPARE(watched.ends, 1);
    }
};

QTEST_GUILESS_MAIN(FollowedTest)
#include "FollowedTest.moc"
