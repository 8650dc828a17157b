#include "App/QuickActions/Text/Lemmas.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// The word itself where it stands for itself.
QString lemma(const QString& word)
{
    Lemmas lemmas;
    const auto found = lemmas.of(word);
    return found ? found->toString() : word;
}

void addRows(const QString& pairs)
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<QString>("expected");
    for (const auto& pair : pairs.split(u' ')) {
        const auto parts = pair.split(u'>');
        QTest::newRow(qPrintable(parts[0])) << parts[0] << parts[1];
    }
}

void verifyLemma()
{
    QFETCH(QString, word);
    QFETCH(QString, expected);
    QCOMPARE(lemma(word), expected);
}

}

class LemmasTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void regularFormsAreFound_data()
    {
        addRows(u"houses>house boxes>box churches>church cities>city boys>boy heroes>hero "
                "photos>photo firemen>fireman runs>run tries>try goes>go passes>pass "
                "running>run making>make dying>die seeing>see panicking>panic visiting>visit "
                "tried>try played>play stopped>stop agreed>agree visited>visit traveled>travel "
                "travelled>travel bigger>big biggest>big nicer>nice happiest>happy "
                "narrower>narrow cleverer>clever"_s);
    }

    void regularFormsAreFound() { verifyLemma(); }

    void irregularFormsAreFound_data()
    {
        addRows(u"went>go ran>run was>be been>be is>be has>have did>do done>do bought>buy "
                "written>write mice>mouse feet>foot children>child women>woman knives>knife "
                "analyses>analysis criteria>criterion better>good best>good worse>bad worst>bad "
                "them>they others>other"_s);
    }

    void irregularFormsAreFound() { verifyLemma(); }

    void theMostFrequentLemmaIsTaken_data()
    {
        addRows(u"saw>see left>leave found>find leaves>leave lives>life used>use means>mean "
                "people>people data>data media>media building>building meeting>meeting "
                "evening>evening bed>bed number>number butter>butter owner>owner after>after "
                "news>news his>his thanks>thanks interesting>interesting following>follow"_s);
    }

    void theMostFrequentLemmaIsTaken() { verifyLemma(); }

    void contractionsAreCutOff_data()
    {
        addRows(u"don't>do didn't>do won't>will can't>can shan't>shall it's>it he'll>he "
                "they're>they I've>i she'd>she I'm>i Ann's>ann dogs's>dog don\u2019t>do "
                "WON\u2019T>will ISN'T>be n't>not 'll>will 's>be \u2019ve>have O'Brien>O'Brien "
                "rock'n'roll>rock'n'roll M\u00FCller's>m\u00FCller 's's>be"_s);
    }

    void contractionsAreCutOff() { verifyLemma(); }

    void capitalsMakeNoDifference()
    {
        QCOMPARE(lemma(u"Houses"_s), u"house"_s);
        QCOMPARE(lemma(u"RUNNING"_s), u"run"_s);
    }

    void otherWordsStandForThemselves_data()
    {
        QTest::addColumn<QString>("word");
        for (const auto& word : { u""_s, u"house"_s, u"the"_s, u"housess"_s, u"house s"_s,
                 u"hous"_s, u"runnin"_s, u"runningg"_s, u"houses2"_s, u"2houses"_s, u"houses-"_s,
                 u"-"_s, u"'"_s, u"xyzzies"_s, u"vixvixths"_s,
                 u"\u0445\u043E\u0434\u0438\u043B\u0438"_s, u"\uFF48ouses"_s, u"house\u017F"_s,
                 u"hou\u0301ses"_s, u"h\u00F6uses"_s, u"houses\u200B"_s, QString(QChar(0xD800)),
                 u"houses"_s + QChar(0xDC00), QString(QChar(0)), u"houses"_s + QChar(0) })
            QTest::newRow(qPrintable(word)) << word;
    }

    void otherWordsStandForThemselves()
    {
        QFETCH(QString, word);
        QVERIFY(!Lemmas().of(word));
    }

    void aLongWordIsNone()
    {
        const auto word = u"running"_s.repeated(100'000);
        QVERIFY(!Lemmas().of(word));
        QCOMPARE(lemma(word + u"'s"_s), word);
    }

    void oneFollowsAnother()
    {
        Lemmas lemmas;
        QCOMPARE(lemmas.of(u"characteristics").value_or(u""), u"characteristic");
        QCOMPARE(lemmas.of(u"went").value_or(u""), u"go");
        QVERIFY(!lemmas.of(u"xyzzies"));
        QCOMPARE(lemmas.of(u"Xyzzies's").value_or(u""), u"xyzzies");
        QCOMPARE(lemmas.of(u"churches").value_or(u""), u"church");
    }
};

QTEST_GUILESS_MAIN(LemmasTest)
#include "LemmasTest.moc"
