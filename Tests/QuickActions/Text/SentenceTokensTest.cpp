#include "App/QuickActions/Text/SentenceTokens.h"

#include <QTest>

#include <random>

using namespace Qt::StringLiterals;

namespace {

// With a bar at each end of a sentence, before the white space.
QString shown(const QString& text)
{
    QStringList trimmed;
    for (const auto token : sentenceTokens(text))
        trimmed << token.trimmed().toString();
    return trimmed.join(u"|"_s);
}

QString glued(const QStringList& pieces, std::mt19937& random)
{
    QString text;
    for (int left = 12; left > 0; --left)
        text += pieces[static_cast<qsizetype>(random() % static_cast<unsigned>(pieces.size()))];
    return text;
}

void addRow(const char* name, const QString& sentences)
{
    QTest::newRow(name) << sentences;
}

void verifySentences()
{
    QFETCH(QString, sentences);
    QCOMPARE(shown(QString(sentences).replace(u'|', u' ')), sentences);
}

}

class SentenceTokensTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void noTextHasNone() { QVERIFY(sentenceTokens({}).isEmpty()); }

    void tokensKeepTheSpaceAfterThem()
    {
        const auto text = u"  One.  Two!\n\n"_s;
        QCOMPARE(sentenceTokens(text), (QList<QStringView> { u"  One.  ", u"Two!\n", u"\n" }));
    }

    void aLineEndsASentence_data()
    {
        QTest::addColumn<QString>("end");
        for (const auto& end :
            { u"\n"_s, u"\r"_s, u"\r\n"_s, u"\u0085"_s, u"\u2028"_s, u"\u2029"_s })
            QTest::newRow(qPrintable(QString::number(end.back().unicode(), 16))) << end;
    }

    void aLineEndsASentence()
    {
        QFETCH(QString, end);
        QCOMPARE(sentenceTokens(u"Dr."_s + end + u"Who"_s),
            (QList<QStringView> { u"Dr."_s + end, u"Who" }));
    }

    void aNameFollowsItsTitle_data()
    {
        QTest::addColumn<QString>("sentences");
        addRow("Dr.", u"I saw Dr. Who today.|He is well."_s);
        addRow("two", u"It was Lt. Col. Smith.|And Mrs. May."_s);
        addRow("capitals", u"DR. SMITH CAME.|HE LEFT."_s);
        addRow("a saint", u"Near St. Thomas it rains."_s);
        addRow("a street", u"It is in Main St.|The shop is shut."_s);
        addRow("a verb", u"They gen.|Ann agrees."_s);
        addRow("a sentence of short words", u"Get Up.|Sit Down.|Go Out."_s);
    }

    void aNameFollowsItsTitle() { verifySentences(); }

    void aNameFollowsItsInitials_data()
    {
        QTest::addColumn<QString>("sentences");
        addRow("between", u"My name is Jonas E. Smith.|Hello."_s);
        addRow("first", u"A. Noel Kramer came."_s);
        addRow("several", u"It is by J. R. R. Tolkien."_s);
        addRow("glued", u"It is by J.R.R. Tolkien, a guy."_s);
        addRow("other letters", u"Это А. С. Пушкин."_s);
        addRow("a letter at the end", u"Take vitamin C.|The rest is up to you."_s);
        addRow("I", u"So do I.|Ann does not."_s);
        addRow("I as an initial", u"It is by I. M. Pei."_s);
        addRow("a part of a number", u"It is a 5D.|Ann has one."_s);
    }

    void aNameFollowsItsInitials() { verifySentences(); }

    void anAcronymBelongsToANameAfterIt_data()
    {
        QTest::addColumn<QString>("sentences");
        addRow("a name", u"The U.S. Department of Labor."_s);
        addRow("a bracket", u"He has a Ph.D. (Bonn)."_s);
        addRow("a sentence", u"I left the U.S.|They stayed."_s);
        addRow("a file", u"See index.html.|Ann wrote it."_s);
    }

    void anAcronymBelongsToANameAfterIt() { verifySentences(); }

    void moreFollowsSomeAbbreviations_data()
    {
        QTest::addColumn<QString>("sentences");
        addRow("e.g.", u"It has tools (e.g. Vim).|Use them."_s);
        addRow("i.e.", u"It is late, i.e. Monday."_s);
        addRow("vs.", u"Ann vs. Bob."_s);
        addRow("P.S.", u"P.S. I am moving."_s);
        addRow("before no letter", u"e.g.|\u260E"_s);
        addRow("a number", u"See no. 5 and fig. 2, p. 7."_s);
        addRow("no number", u"She said no.|Then she left."_s);
        addRow("a month", u"The Sept. 11 Commission."_s);
        addRow("a small month", u"It was in dec.|11 Apples fell."_s);
        addRow("a year in brackets", u"As Smith et al. (2004) say."_s);
        addRow("a firm", u"It is Acme Co. Ltd. in short."_s);
        addRow("a firm's bracket", u"Acme Inc. (\"A\") sells."_s);
        addRow("a firm at the end", u"It is Acme Inc.|Shares fell."_s);
        addRow("a zone", u"At 10 a.m. EST on Monday."_s);
        addRow("a day", u"At 10 p.m. Monday it starts."_s);
        addRow("an hour at the end", u"It is 10 p.m.|Go to bed."_s);
        addRow("etc.", u"Apples, pears, etc.|Ann ate them."_s);
    }

    void moreFollowsSomeAbbreviations() { verifySentences(); }

    void aQuoteIsPartOfItsSentence_data()
    {
        QTest::addColumn<QString>("sentences");
        addRow("small", u"A big \"Welcome!\" to you."_s);
        addRow("typographic", u"\u201CWhy?\u201D she asked."_s);
        addRow("a name", u"\"Why?\" Ann asked."_s);
        addRow("two names", u"\"Stop!\" Aunt Em cried."_s);
        addRow("another sentence", u"\"Why?\"|Ann left."_s);
        addRow("an answer", u"\"Why?\"|\"I said so.\""_s);
        addRow("no quote", u"Really?|then go."_s);
    }

    void aQuoteIsPartOfItsSentence() { verifySentences(); }

    void anAddressIsOneWord_data()
    {
        QTest::addColumn<QString>("sentences");
        addRow("a query", u"See http://a.example/b?Page=1 now.|Then go."_s);
        addRow("without a scheme", u"See www.a.example/b?Page=1 now."_s);
        addRow("two marks", u"See https://a.example/?A=1!B?C now."_s);
        addRow("the next sentence", u"See http://a.example/?|Then go."_s);
    }

    void anAddressIsOneWord() { verifySentences(); }

    void aMarkEndsASentenceWithoutASpace()
    {
        QCOMPARE(shown(u"Why?Because."_s), u"Why?|Because."_s);
        QCOMPARE(shown(u"http://a.example/ Why?Because."_s), u"http://a.example/ Why?|Because."_s);
    }

    void notesBelongToTheSentenceBefore_data()
    {
        QTest::addColumn<QString>("sentences");
        addRow("one", u"It is so.[3]|Then it was not."_s);
        addRow("several", u"It is so.[3][4, 5][6\u20138]|Then it was not."_s);
        addRow("at the end", u"It is so.[3]"_s);
        addRow("no note", u"It is so.[|3) Then."_s);
    }

    void notesBelongToTheSentenceBefore() { verifySentences(); }

    void aLineEndsASentenceAfterItsNotes()
    {
        QCOMPARE(shown(u"It is so.[3]\nThen it was not."_s), u"It is so.[3]|Then it was not."_s);
        QCOMPARE(shown(u"It is so.[3]Then it was not."_s), u"It is so.[3]Then it was not."_s);
    }

    void sentencesBeginSmallWhereItIsPlain_data()
    {
        QTest::addColumn<QString>("sentences");
        addRow("after another", u"you can come.|plus ann is here."_s);
        addRow("by their first word", u"Ann is here.|they told me."_s);
        addRow("by their first letter", u"It was Rome.|i liked it."_s);
        addRow("after a bracket", u"call ann (5).|you know her."_s);
        addRow("after a number", u"call 8160.|they know."_s);
        addRow("not after a name's part", u"In Mass. and in Conn. it rains."_s);
        addRow("not after an abbreviation", u"use e.g. the vs. a etc. and so on."_s);
        addRow("not after dots", u"you know... they told me."_s);
        addRow("not after a list's number", u"1. the first"_s);
        addRow("not after one word", u"foo. bar baz"_s);
        addRow("not by other words", u"Ann is here. foo because."_s);
        addRow("an address", u"Ann is here.|http://a.example/ has it."_s);
        addRow("glued", u"It is poor service.|The food was cold."_s);
    }

    void sentencesBeginSmallWhereItIsPlain() { verifySentences(); }

    void aMissingSpaceEndsASentenceWhereItIsPlain()
    {
        QCOMPARE(shown(u"Of high quality.You'll see."_s), u"Of high quality.|You'll see."_s);
        QCOMPARE(shown(u"It is end.Start of it."_s), u"It is end.Start of it."_s);
        QCOMPARE(shown(u"See node.It.next and U.S.The."_s), u"See node.It.next and U.S.The."_s);
    }

    void tokensTogetherAreTheText()
    {
        const QStringList pieces = { u"e.g. "_s, u"A. "_s, u"Dr. "_s, u"!"_s, u"?\""_s, u" "_s,
            u"\n"_s, u"http://"_s, u"[1]"_s, u"(("_s, u"."_s, u"i "_s, u"The"_s, u"word"_s,
            u"\u2028"_s, u"\u0301"_s, u"\U0001F44D"_s, QString(QChar(0xD800)),
            QString(QChar(0xDC00)), QString(QChar(0)) };
        std::mt19937 random(1);
        for (int i = 0; i < 3000; ++i) {
            const auto text = glued(pieces, random);
            QString whole;
            for (const auto token : sentenceTokens(text)) {
                QVERIFY(!token.isEmpty());
                whole += token;
            }
            QCOMPARE(whole, text);
        }
    }

    void hostileTextsAreReadThrough_data()
    {
        QTest::addColumn<QString>("start");
        QTest::addColumn<QString>("piece");
        for (const auto& piece : { u"e.g. "_s, u"A. "_s, u"!?"_s, u"\""_s, u"!\""_s, u"a"_s, u" "_s,
                 u". "_s, u"a?"_s, u".[1]"_s, u"A. ("_s, u"aa bb. "_s, u"\n"_s,
                 QString(QChar(0xD800)), QString(QChar(0)) })
            QTest::newRow(qPrintable(piece)) << QString() << piece;
        QTest::newRow("one address") << u"http://"_s << u"a?"_s;
        QTest::newRow("brackets after a stop") << u"A. "_s << u"("_s;
        QTest::newRow("spaces after a mark") << u"a?"_s << u" "_s;
        QTest::newRow("notes without an end") << u"a."_s << u"["_s;
    }

    void hostileTextsAreReadThrough()
    {
        QFETCH(QString, start);
        QFETCH(QString, piece);
        const auto text = start + piece.repeated(300'000 / piece.size());
        qsizetype size = 0;
        for (const auto token : sentenceTokens(text))
            size += token.size();
        QCOMPARE(size, text.size());
    }
};

QTEST_GUILESS_MAIN(SentenceTokensTest)
#include "SentenceTokensTest.moc"
