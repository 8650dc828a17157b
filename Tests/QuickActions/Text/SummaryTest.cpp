#include "App/QuickActions/Text/Summary.h"

#include "App/QuickActions/Text/Lemmas.h"

#include <QTest>

#include <unicode/uloc.h>

using namespace Qt::StringLiterals;

static QString summaryOf(const QStringList& sentences)
{
    QList<QStringView> views;
    for (const auto& sentence : sentences)
        views << sentence;
    return summary(views);
}

// The three of which the lead is kept anyway, and then either of the others.
static QString keptBesideLead(const QString& lead, const QString& earlier, const QString& later)
{
    return summaryOf({ lead, earlier, later }).sliced(lead.size() + 1);
}

class SummaryTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aThirdIsKeptButTwoToFive_data()
    {
        QTest::addColumn<int>("sentences");
        QTest::addColumn<int>("kept");
        const QMap<int, int> kept { { 0, 0 }, { 1, 1 }, { 2, 2 }, { 3, 2 }, { 4, 2 }, { 6, 2 },
            { 7, 3 }, { 9, 3 }, { 10, 4 }, { 12, 4 }, { 13, 5 }, { 15, 5 }, { 16, 5 }, { 99, 5 } };
        for (auto row = kept.begin(); row != kept.end(); ++row)
            QTest::addRow("of %d", row.key()) << row.key() << row.value();
    }

    void aThirdIsKeptButTwoToFive()
    {
        QFETCH(int, sentences);
        QFETCH(int, kept);
        QCOMPARE(summaryOf(QStringList(sentences, u"Same."_s)),
            QStringList(kept, u"Same."_s).join(u' '));
    }

    void theSecondBestMayStandFirst()
    {
        QCOMPARE(summaryOf({ u"Green hills rise slowly."_s, u"Nothing else happens here."_s,
                     u"Hills hills hills hills."_s }),
            u"Green hills rise slowly. Hills hills hills hills."_s);
    }

    void theLeadWinsAgainstItsEqual()
    {
        QCOMPARE(summaryOf({ u"Red birds sing loudly."_s, u"Green hills rise slowly."_s,
                     u"Red birds sing loudly."_s, u"Green hills rise slowly."_s }),
            u"Red birds sing loudly. Green hills rise slowly."_s);
    }

    void theLeadIsWorthAFifthMore()
    {
        const auto lead = u"Red birds sing loudly."_s;
        const auto words = u"one1 one2 one3 one4 one5 one6 one7 "_s;
        const auto others = u"two1 two2 two3 two4 two5 two6 two7 "_s;
        // 11 / 9 each, which is more than 1.2.
        QCOMPARE(summaryOf({ lead, words + u"top1 top1"_s, others + u"top2 top2"_s }),
            words + u"top1 top1 "_s + others + u"top2 top2"_s);
        // 12 / 10 each, which is not.
        QCOMPARE(summaryOf({ lead, words + u"one8 top1 top1"_s, others + u"two8 top2 top2"_s }),
            lead + u' ' + words + u"one8 top1 top1"_s);
    }

    void theEarlierOfTwoEqualsWins()
    {
        QCOMPARE(keptBesideLead(u"Quiet rivers bend westward."_s, u"Green hills rise slowly."_s,
                     u"Brown birds sing loudly."_s),
            u"Green hills rise slowly."_s);
    }

    void sentencesOfLessThanFourWordsCountLess()
    {
        // Twice 0.6 is less than once 1.25.
        QCOMPARE(keptBesideLead(u"Quiet rivers bend westward."_s, u"Hills hills rise."_s,
                     u"Brown birds sing bend."_s),
            u"Brown birds sing bend."_s);
        QCOMPARE(keptBesideLead(u"Quiet rivers bend westward."_s, u"Hills hills rise high."_s,
                     u"Brown birds sing bend."_s),
            u"Hills hills rise high."_s);
    }

    void withoutContentTheEarliestAreTakenLast()
    {
        QCOMPARE(summaryOf({ u"It is so."_s, u"And who are you?"_s, u"We do."_s, u"Go on."_s,
                     u"Trumpets resound."_s }),
            u"It is so. Trumpets resound."_s);
        QCOMPARE(summaryOf({ u"We do."_s, u"It is."_s, u"Go on."_s }), u"We do. It is."_s);
    }

    void theseWordsHaveNoContent_data()
    {
        QTest::addColumn<QString>("word");
        const auto words = u"the and that this with for are was were have has had but not you your "
                           "from they their will would can could there been which what when about "
                           "into than then also its our who"_s;
        for (const auto& word : words.split(u' '))
            QTest::newRow(qPrintable(word)) << word;
        QTest::newRow("of two letters") << u"go"_s;
        QTest::newRow("of two letters with marks") << u"e\u0301e\u0301"_s;
        QTest::newRow("of two pairs") << u"\U0001D51E\U0001D51E"_s;
        QTest::newRow("in capitals") << u"THE"_s;
        QTest::newRow("a number of two digits") << u"42"_s;
    }

    void theseWordsHaveNoContent()
    {
        QFETCH(QString, word);
        const auto four = QStringList(4, word).join(u' ') + u'.';
        const auto other = u"Brown birds sing loudly."_s;
        QCOMPARE(keptBesideLead(u"Quiet rivers bend westward."_s, four, other), other);
    }

    void theseHave_data()
    {
        QTest::addColumn<QString>("word");
        QTest::newRow("three letters") << u"sky"_s;
        QTest::newRow("three letters with marks") << u"e\u0301e\u0301e\u0301"_s;
        QTest::newRow("not all of it a stop word") << u"thus"_s;
        QTest::newRow("a number") << u"427"_s;
        QTest::newRow("Cyrillic") << u"\u0441\u043D\u0435\u0433"_s;
    }

    void theseHave()
    {
        QFETCH(QString, word);
        const auto four = QStringList(4, word).join(u' ') + u'.';
        QCOMPARE(
            keptBesideLead(u"Quiet rivers bend westward."_s, u"Brown birds sing loudly."_s, four),
            four);
    }

    void capitalsMakeNoOtherWord()
    {
        QCOMPARE(keptBesideLead(u"Quiet rivers bend westward."_s, u"Brown birds sing loudly."_s,
                     u"Green HILLS hills Hills."_s),
            u"Green HILLS hills Hills."_s);
    }

    void smallLettersAreThoseOfNoLanguage()
    {
        const QByteArray before = uloc_getDefault();
        UErrorCode status = U_ZERO_ERROR;
        uloc_setDefault("tr_TR", &status);
        const auto kept = keptBesideLead(u"Quiet rivers bend westward."_s,
            u"Brown birds sing loudly."_s, u"Green hills ZIRBIX zirbix."_s);
        uloc_setDefault(before.constData(), &status);
        QCOMPARE(kept, u"Green hills ZIRBIX zirbix."_s);
    }

    void wordsCountByTheirLemma()
    {
        QCOMPARE(keptBesideLead(u"Running rivers bend westward."_s, u"Brown birds sing loudly."_s,
                     u"They ran toward green hills."_s),
            u"They ran toward green hills."_s);
    }
};

QTEST_GUILESS_MAIN(SummaryTest)
#include "SummaryTest.moc"
