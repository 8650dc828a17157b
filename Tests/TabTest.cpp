#include "App/Tab.h"
#include "App/Ui/Symbols.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TabTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tabsStandInTheirOrder()
    {
        QStringList titles;
        for (const auto tab : allTabs)
            titles << rawValue(tab);
        QCOMPARE(titles,
            (QStringList { u"Focus"_s, u"Actions"_s, u"Meetings"_s, u"System"_s, u"Shortcuts"_s }));
    }

    void tabsAreKnownByTheirTitles()
    {
        for (const auto tab : allTabs)
            QCOMPARE(tabFromRawValue(rawValue(tab)), tab);
    }

    void noTabHasAnotherTitle()
    {
        QVERIFY(!tabFromRawValue(u"focus"_s));
        QVERIFY(!tabFromRawValue(QString()));
        QVERIFY(!tabFromRawValue(u"Settings"_s));
    }

    void everyTabHasASymbolOfItsOwn()
    {
        QStringList symbols;
        for (const auto tab : allTabs) {
            QVERIFY(Symbols::contains(symbolName(tab)));
            QVERIFY(!symbols.contains(symbolName(tab)));
            symbols << symbolName(tab);
        }
    }
};

QTEST_GUILESS_MAIN(TabTest)
#include "TabTest.moc"
