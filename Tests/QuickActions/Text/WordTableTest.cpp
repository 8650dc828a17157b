#include "App/QuickActions/Text/WordTable.h"

#include <QStringList>
#include <QTest>

using namespace Qt::StringLiterals;

class WordTableTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aNewTextHasNoNumbers()
    {
        WordTable table;
        QCOMPARE(table[u"word"].ofToken, 0u);
        QCOMPARE(table[u"word"].ofLemma, 0u);
        QCOMPARE(table[u""].ofToken, 0u);
    }

    void aTextKeepsItsNumbersWhereverItStands()
    {
        WordTable table;
        const auto text = u"one two one"_s;
        table[QStringView(text).first(3)].ofToken = 1;
        table[QStringView(text).sliced(4, 3)].ofToken = 2;
        QCOMPARE(table[QStringView(text).last(3)].ofToken, 1u);
        QCOMPARE(table[QStringView(text).last(3)].ofLemma, 0u);
        QCOMPARE(table[u"two"].ofToken, 2u);
        QCOMPARE(table[u"on"].ofToken, 0u);
        QCOMPARE(table[u"One"].ofToken, 0u);
    }

    void nothingIsLostWhenTheTableGrows()
    {
        QStringList texts;
        for (int i = 0; i < 20'000; ++i)
            texts << QString::number(i);
        WordTable table;
        for (int i = 0; i < texts.size(); ++i)
            table[texts[i]].ofLemma = static_cast<std::uint32_t>(i) + 1;
        for (int i = 0; i < texts.size(); ++i)
            QCOMPARE(table[texts[i]].ofLemma, static_cast<std::uint32_t>(i) + 1);
    }
};

QTEST_GUILESS_MAIN(WordTableTest)
#include "WordTableTest.moc"
