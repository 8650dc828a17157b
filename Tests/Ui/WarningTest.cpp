#include "App/Ui/Warning.h"
#include "App/Ui/Label.h"
#include "App/Ui/Theme.h"

#include <QTest>

using namespace Qt::StringLiterals;

struct Setup {
    Setup()
    {
        warning.resize(372, warning.heightForWidth(372));
        warning.show();
    }

    bool hasInk(const QRect& part)
    {
        const auto image = warning.grab(part).toImage();
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y) != image.pixelColor(0, 0))
                    return true;
            }
        }
        return false;
    }

    const bool isThemed = (Theme::apply({}), true);
    Warning warning {
        u"Something is wrong with what the program needs, and this text has to say so "
        "in more than one line"_s
    };
};

class WarningTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void itsWordsHangBehindItsSign()
    {
        Setup s;
        QCOMPARE(s.warning.height(), 28);
        QCOMPARE(s.warning.findChild<Label*>()->geometry(), QRect(19, 0, 353, 28));
        QVERIFY(s.hasInk({ 0, 0, 14, 14 }));
        QVERIFY(!s.hasInk({ 0, 15, 19, 13 }));
    }

    void aWiderOneTakesFewerLines()
    {
        Setup s;
        QCOMPARE(s.warning.heightForWidth(1000), 14);
    }

    void fromRightToLeftTheSignIsAtTheRight()
    {
        Setup s;
        s.warning.setLayoutDirection(Qt::RightToLeft);
        s.warning.resize(371, 28);
        QVERIFY(s.hasInk({ 357, 0, 14, 14 }));
        QCOMPARE(s.warning.findChild<Label*>()->x(), 0);
    }
};

QTEST_MAIN(WarningTest)
#include "WarningTest.moc"
