#include "App/StatusTitle.h"

#include <QTest>

using namespace Qt::StringLiterals;

class StatusTitleTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothingUnderWayIsACircleInThePlainFont()
    {
        const auto title = statusTitle(false, Phase::focus, u"25:00"_s);
        QCOMPARE(title.text, u"●"_s);
        QCOMPARE(title.font, (TitleFont { 13, QFont::Normal, false }));
    }

    void aBreakThatIsNotUnderWayIsACircleToo()
    {
        QCOMPARE(statusTitle(false, Phase::longBreak, u"15:00"_s).text, u"●"_s);
    }

    void aFocusShowsTheTimeInEqualDigits()
    {
        const auto title = statusTitle(true, Phase::focus, u"24:59"_s);
        QCOMPARE(title.text, u"24:59"_s);
        QCOMPARE(title.font, (TitleFont { 13, QFont::Medium, true }));
    }

    void eitherBreakShowsACupBeforeTheTime()
    {
        const QList<char32_t> expected { 0x2615, 0xFE0E, ' ', '0', '4', ':', '5', '9' };
        for (const auto phase : { Phase::shortBreak, Phase::longBreak }) {
            const auto text = statusTitle(true, phase, u"04:59"_s).text;
            QCOMPARE(text.toUcs4(), QList<uint>(expected.begin(), expected.end()));
        }
    }
};

QTEST_GUILESS_MAIN(StatusTitleTest)
#include "StatusTitleTest.moc"
