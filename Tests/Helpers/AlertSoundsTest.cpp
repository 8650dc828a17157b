#include "App/Helpers/AlertSounds.h"
#include "Tests/Support/Tone.h"

#include <QTest>

#include <algorithm>
#include <cstdlib>

using AlertSounds::Samples;

static int loudest(std::span<const std::int16_t> samples)
{
    int most = 0;
    for (const auto sample : samples)
        most = std::max(most, std::abs(int(sample)));
    return most;
}

class AlertSoundsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void lastsOnePointFourSeconds() { QCOMPARE(m_glass.size(), std::size_t(61'740)); }

    void isLoudWithoutClipping()
    {
        QVERIFY(loudest(m_glass) > 10'000);
        QVERIFY(loudest(m_glass) < 32'000);
    }

    void startsAndEndsWithoutAClick()
    {
        const std::span all(m_glass);
        QVERIFY(loudest(all.first(4)) < 500);
        QVERIFY(loudest(all.last(44)) < 20);
    }

    void decays()
    {
        const std::span all(m_glass);
        const auto third = all.size() / 3;
        const auto first = loudest(all.first(third));
        const auto second = loudest(all.subspan(third, third));
        const auto last = loudest(all.last(third));
        QVERIFY(second < first / 2);
        QVERIFY(last < second / 2);
    }

    void soundsHighestAtItsFundamental()
    {
        const auto at
            = [this](double hertz) { return Tone::power(m_glass, hertz, AlertSounds::sampleRate); };
        const auto fundamental = at(1318.5);
        QVERIFY(fundamental > 1e-4);
        for (double hertz = 100; hertz < 20'000; hertz += 50) {
            if (std::abs(hertz - 1318.5) > 20)
                QVERIFY2(at(hertz) < fundamental / 4, QByteArray::number(hertz));
        }
    }

    void holdsEveryPartial_data()
    {
        QTest::addColumn<double>("ratio");
        for (const double ratio : { 2.32, 4.25, 6.63, 9.38 })
            QTest::addRow("%g", ratio) << ratio;
    }

    void holdsEveryPartial()
    {
        QFETCH(double, ratio);
        const auto at = [this, ratio](double factor) {
            return Tone::power(m_glass, 1318.5 * ratio * factor, AlertSounds::sampleRate);
        };
        QVERIFY(at(1) > 10 * at(0.97));
        QVERIFY(at(1) > 10 * at(1.03));
    }

    void knowsItByName()
    {
        QVERIFY(AlertSounds::named("Glass") == m_glass);
        QVERIFY(!AlertSounds::named("glass"));
        QVERIFY(!AlertSounds::named(""));
    }

private:
    const Samples m_glass = AlertSounds::glass();
};

QTEST_GUILESS_MAIN(AlertSoundsTest)
#include "AlertSoundsTest.moc"
