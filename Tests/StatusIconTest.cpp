#include "App/StatusIcon.h"

#include "App/Platform/StatusItem.h"

#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

StatusTitle idle()
{
    return { u"\u25CF"_s, {} };
}

StatusTitle focus(const QString& time)
{
    return { time, { .size = 13, .weight = QFont::Medium, .monospacedDigits = true } };
}

StatusTitle pause(const QString& time)
{
    return focus(u"\u2615\uFE0E "_s + time);
}

// The smallest rectangle around everything that is at least half opaque.
QRect inkOf(const QImage& image)
{
    QRegion region;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() >= 128)
                region += QRect(x, y, 1, 1);
        }
    }
    return region.boundingRect();
}

}

class StatusIconTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theIdleDiscIsTenOfTwentyTwo_data()
    {
        QTest::addColumn<int>("side");
        for (const int side : { 22, 33, 44, 66 })
            QTest::addRow("%d", side) << side;
    }

    void theIdleDiscIsTenOfTwentyTwo()
    {
        QFETCH(int, side);
        const auto ink = inkOf(StatusIcon::square(idle(), side, Qt::white));
        QVERIFY(std::abs(ink.width() - side * 10.0 / 22) <= 1);
        QCOMPARE(ink.width(), ink.height());
        QCOMPARE(ink.left(), side - 1 - ink.right());
        QCOMPARE(ink.top(), side - 1 - ink.bottom());
    }

    void theMinutesFitTheSquare_data()
    {
        QTest::addColumn<QString>("time");
        QTest::addRow("one digit") << u"04:59"_s;
        QTest::addRow("two digits") << u"24:59"_s;
        QTest::addRow("three digits") << u"120:00"_s;
    }

    void theMinutesFitTheSquare()
    {
        QFETCH(QString, time);
        const auto ink = inkOf(StatusIcon::square(focus(time), 44, Qt::white));
        QVERIFY(!ink.isEmpty());
        QVERIFY(QRect(2, 8, 40, 28).contains(ink));
        QVERIFY(std::abs(ink.center().x() - 22) <= 3);
        QVERIFY(std::abs(ink.center().y() - 22) <= 1);
    }

    void theSquareShowsMinutesOnly()
    {
        const auto first = StatusIcon::square(focus(u"24:59"_s), 22, Qt::white);
        QCOMPARE(StatusIcon::square(focus(u"24:00"_s), 22, Qt::white), first);
        QVERIFY(StatusIcon::square(focus(u"23:59"_s), 22, Qt::white) != first);
    }

    void theMinutesAreCutOutOfTheCup()
    {
        const auto cup = StatusIcon::square(pause(u"04:59"_s), 66, Qt::black);
        QCOMPARE(cup.pixelColor(9, 38), QColor(Qt::black));
        QVERIFY(cup.pixelColor(28, 42).alpha() < 128); // The bar of the 4.
        QVERIFY(cup.pixelColor(33, 17).alpha() == 0); // Between steam and rim.
    }

    void theSquareHasOneInk()
    {
        const auto image = StatusIcon::square(focus(u"24:59"_s), 22, Qt::red);
        for (int y = 0; y < 22; ++y) {
            for (int x = 0; x < 22; ++x)
                QCOMPARE(image.pixelColor(x, y).blue(), 0);
        }
    }

    void theBadgeStandsOnADarkGround()
    {
        const auto badge = StatusIcon::badge(idle(), 22);
        QCOMPARE(badge.pixelColor(11, 3), QColor(0x1C, 0x1C, 0x1F));
        QCOMPARE(badge.pixelColor(11, 11), QColor(Qt::white));
        QCOMPARE(badge.pixelColor(0, 0).alpha() < 128, true);
    }

    void anIdlePillIsRound()
    {
        const auto pill = StatusIcon::pill(idle(), 52, 2);
        QCOMPARE(pill.size(), QSize(52, 52));
        QCOMPARE(pill.pixelColor(26, 26), QColor(Qt::white));
        QCOMPARE(pill.pixelColor(26, 8), QColor(0x1C, 0x1C, 0x1F));
        QCOMPARE(pill.pixelColor(0, 0).alpha(), 0);
    }

    void aPillIsAsWideAsItsTitle()
    {
        const int time = StatusIcon::pill(focus(u"24:59"_s), 26, 1).width();
        const int cup = StatusIcon::pill(pause(u"04:59"_s), 26, 1).width();
        const int longer = StatusIcon::pill(focus(u"120:00"_s), 26, 1).width();
        QVERIFY(time > 50 && time < 72);
        QCOMPARE(cup - time, 17);
        QVERIFY(longer > time + 5);
    }

    void countingDoesNotMoveThePill()
    {
        const int width = StatusIcon::pill(focus(u"11:11"_s), 26, 1).width();
        QCOMPARE(StatusIcon::pill(focus(u"08:48"_s), 26, 1).width(), width);
    }

    void aLowTrayGetsALowPill()
    {
        const auto pill = StatusIcon::pill(focus(u"24:59"_s), 18, 1);
        QCOMPARE(pill.height(), 18);
        QVERIFY(pill.width() < StatusIcon::pill(focus(u"24:59"_s), 26, 1).width());
    }
};

QTEST_MAIN(StatusIconTest)
#include "StatusIconTest.moc"
