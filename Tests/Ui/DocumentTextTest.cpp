#include "App/Ui/DocumentText.h"

#include <QPlainTextDocumentLayout>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

using namespace Qt::StringLiterals;

struct Setup {
    Setup() { document.setDocumentLayout(new QPlainTextDocumentLayout(&document)); }

    bool isFilled() { return document.lastBlock().text().endsWith(u"end"); }

    QTextCursor at(int start, int end)
    {
        QTextCursor cursor(&document);
        cursor.setPosition(start);
        cursor.setPosition(end, QTextCursor::KeepAnchor);
        return cursor;
    }

    QTextDocument document;
    DocumentText text { document };
};

class DocumentTextTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void untouchedTextComesBackToTheCharacter_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("line ends") << u"a\r\nb\rc\nd\u2028e\u2029f\n"_s;
        QTest::newRow("no-break space") << u"5\u00a0km"_s;
        QTest::newRow("a NUL and half a character") << u"a\0b\xd800"_s;
        QTest::newRow("long") << u"word "_s.repeated(20000);
        QTest::newRow("long and unbroken") << u"x"_s.repeated(100000);
    }
    void untouchedTextComesBackToTheCharacter()
    {
        QFETCH(QString, text);
        Setup s;
        s.text.setText(text);
        QCOMPARE(s.text.text(), text);
    }

    void afterAnEditEachLineEndsInALineFeed()
    {
        Setup s;
        s.text.setText(u"5\u00a0a\r\nb\rc\u2029d\n"_s);
        s.at(0, 1).insertText(u"6"_s);
        QCOMPARE(s.text.text(), u"6\u00a0a\nb\nc\nd\n"_s);
    }

    void whatQtTakesForALineEndIsOne()
    {
        Setup s;
        const QString longParagraph = u"x"_s.repeated(5000);
        s.text.setText(QChar(0xFDD0) + u"a"_s + QChar(0xFDD1) + longParagraph + u"\nend"_s);
        s.at(0, 0).insertText(u"!"_s);
        QCOMPARE(s.text.text(), u"!\na\n"_s + longParagraph + u"\nend"_s);
    }

    void onlyEditsAreTold()
    {
        Setup s;
        QSignalSpy edits(&s.text, &DocumentText::edited);
        s.text.setText(u"one\n"_s.repeated(50000) + u"end"_s);
        QTRY_VERIFY(s.isFilled());
        QCOMPARE(edits.count(), 0);
        s.at(0, 3).removeSelectedText();
        QCOMPARE(edits.count(), 1);
    }

    void aLongTextArrivesPieceByPiece()
    {
        Setup s;
        s.text.setText(u"one\n"_s.repeated(100000) + u"end"_s);
        QVERIFY(s.document.characterCount() < 100000);
        QTRY_VERIFY(s.isFilled());
        QCOMPARE(s.document.blockCount(), 100001);
    }

    void emptyLinesArriveInSmallPiecesToo()
    {
        Setup s;
        s.text.setText(u"\n"_s.repeated(60000) + u"end"_s);
        QVERIFY(s.document.blockCount() < 10000);
        QTRY_VERIFY(s.isFilled());
        QCOMPARE(s.document.blockCount(), 60001);
    }

    void anEditOnTheWayLosesNothing()
    {
        Setup s;
        const QString rest = u"one\n"_s.repeated(100000) + u"end"_s;
        s.text.setText(rest);
        s.at(0, 0).insertText(u"first "_s);
        QVERIFY(!s.isFilled());
        QCOMPARE(s.text.text(), u"first "_s + rest);
        QTRY_VERIFY(s.isFilled());
        QCOMPARE(s.text.text(), u"first "_s + rest);
    }

    void aNewTextDropsTheRestOfTheOld()
    {
        Setup s;
        s.text.setText(u"old\n"_s.repeated(100000));
        s.text.setText(u"new\n"_s.repeated(50000) + u"end"_s);
        QTRY_VERIFY(s.isFilled());
        s.at(0, 0).insertText(u"!"_s);
        QCOMPARE(s.text.text(), u"!"_s + u"new\n"_s.repeated(50000) + u"end"_s);
    }

    void noBlockIsLong_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("words") << u"word "_s.repeated(20000) + u"end"_s;
        QTest::newRow("one word") << u"x"_s.repeated(100000) + u"end"_s;
        QTest::newRow("characters of two halves") << u"x\U0001F600"_s.repeated(40000) + u"end"_s;
    }
    void noBlockIsLong()
    {
        QFETCH(QString, text);
        Setup s;
        s.text.setText(text);
        QTRY_VERIFY(s.isFilled());
        for (auto block = s.document.firstBlock(); block.isValid(); block = block.next()) {
            QVERIFY(block.length() <= 2049);
            QVERIFY(!block.text().startsWith(QChar(0xde00)));
        }
        s.at(0, 0).insertText(u"!"_s);
        QCOMPARE(s.text.text(), u"!"_s + text);
    }

    void whatIsSelectedIsWhatIsThere()
    {
        Setup s;
        const QString text = u"ab\ncd\n"_s + u"x"_s.repeated(5000) + u"\nend"_s;
        s.text.setText(text);
        QCOMPARE(s.text.selectedText(s.at(1, 4)), u"b\nc"_s);
        QCOMPARE(s.text.selectedText(s.at(6, 5000)), u"x"_s.repeated(4994 - 2));
        QCOMPARE(s.text.selectedText(s.at(2, 2)), QString());
    }

    void editsOfShortTextsCanBeUndone()
    {
        Setup s;
        s.text.setText(u"one\ntwo"_s);
        s.at(1, 5).removeSelectedText();
        QCOMPARE(s.text.text(), u"owo"_s);
        s.document.undo();
        QCOMPARE(s.text.text(), u"one\ntwo"_s);
        s.document.undo();
        QCOMPARE(s.text.text(), u"one\ntwo"_s);
    }

    void whoHearsOfAnEditReadsAllOfIt()
    {
        Setup s;
        QString heard;
        connect(&s.text, &DocumentText::edited, this, [&] { heard = s.text.text(); });
        s.text.setText(u"ab"_s);
        const QString longText = u"x"_s.repeated(5000) + u"\nend"_s;
        s.text.insert(s.at(1, 1), longText);
        QCOMPARE(heard, u"a"_s + longText + u"b"_s);
    }

    // As one edit, which is how a text is dragged within its area.
    void whatMovesWithinTheTextStaysWhole()
    {
        const QString moved = u"x"_s.repeated(5000);
        for (const bool isMovedDown : { true, false }) {
            Setup s;
            const QString rest = u"one\n"_s + u"y"_s.repeated(5000) + u"\ntwo"_s;
            s.text.setText(isMovedDown ? moved + rest : rest + moved);
            const int last = s.document.characterCount() - 1;
            const int start = isMovedDown ? 0 : last - 5002; // The paragraph has two more breaks.
            QString heard;
            connect(&s.text, &DocumentText::edited, this, [&] { heard = s.text.text(); });
            auto cursor = s.at(start, start + 5002);
            cursor.beginEditBlock();
            cursor.removeSelectedText();
            cursor.movePosition(isMovedDown ? QTextCursor::End : QTextCursor::Start);
            s.text.insert(cursor, moved);
            cursor.endEditBlock();
            QCOMPARE(s.text.text(), isMovedDown ? rest + moved : moved + rest);
            QCOMPARE(heard, s.text.text());
        }
    }

    // Qt ends a block at two characters that are none.
    void charactersThatAreNoneEndLinesToo()
    {
        Setup s;
        s.text.setText(u"x"_s.repeated(5000) + u"\ufdd0b\ufdd1c"_s + u"y"_s.repeated(5000));
        s.at(0, 0).insertText(u"!"_s);
        QCOMPARE(
            s.text.text(), u"!"_s + u"x"_s.repeated(5000) + u"\nb\nc"_s + u"y"_s.repeated(5000));
    }

    void anyEditsComeOutAsInAString()
    {
        const auto seed = QRandomGenerator::global()->generate();
        QRandomGenerator random(seed);
        const auto piece = [&random] {
            QString made;
            for (int left = int(random.bounded(4)); left > 0; --left) {
                made += random.bounded(3) ? QString(int(random.bounded(3000)), u'x') : u"y z"_s;
                if (random.bounded(2))
                    made += u'\n';
            }
            return made;
        };
        for (int round = 0; round < 300; ++round) {
            Setup s;
            const QString longText = piece() + piece() + u"\nend"_s;
            QString expected = longText;
            s.text.setText(longText);
            QTRY_VERIFY(s.isFilled());
            QString heard = longText;
            connect(&s.text, &DocumentText::edited, this, [&] { heard = s.text.text(); });
            for (int edit = 0; edit < 6; ++edit) {
                const int length = s.document.characterCount() - 1;
                const int start = int(random.bounded(length + 1));
                const int end
                    = qMin(length, start + int(random.bounded(2) ? random.bounded(3000) : 0));
                // Where that is in the text.
                const auto from = s.text.selectedText(s.at(0, start)).size();
                const auto to = s.text.selectedText(s.at(0, end)).size();
                const QString inserted = random.bounded(2) ? piece() : u"\n"_s;
                auto cursor = s.at(start, end);
                const auto way = random.bounded(3);
                if (way == 0) {
                    s.text.insert(cursor, inserted);
                } else if (way == 1) {
                    cursor.beginEditBlock();
                    cursor.removeSelectedText();
                    s.text.insert(cursor, inserted);
                    cursor.endEditBlock();
                } else {
                    cursor.beginEditBlock();
                    cursor.removeSelectedText();
                    cursor.insertText(inserted);
                    cursor.endEditBlock();
                }
                expected.replace(from, to - from, inserted);
                QVERIFY2(s.text.text() == expected && heard == expected,
                    qPrintable(u"seed %1, round %2, edit %3"_s.arg(seed).arg(round).arg(edit)));
            }
        }
    }
};

QTEST_MAIN(DocumentTextTest)
#include "DocumentTextTest.moc"
