#include "App/Platform/Linux/Calendar/Text/LineReader.h"

#include <QByteArrayList>
#include <QTest>

#include <algorithm>

struct Lines {
    explicit Lines(const QByteArray& text, std::size_t piece = 1'000'000)
    {
        LineReader reader([this](std::string_view line, bool isCut) {
            all << QByteArray(line.data(), static_cast<qsizetype>(line.size()));
            cut << isCut;
        });
        for (std::string_view rest(text.constData(), static_cast<std::size_t>(text.size()));
             !rest.empty(); rest.remove_prefix(std::min(piece, rest.size())))
            reader.feed(rest.substr(0, piece));
        reader.finish();
    }

    QByteArrayList all;
    QList<bool> cut;
};

class LineReaderTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsLines_data()
    {
        QTest::addColumn<QByteArray>("text");
        const QByteArray nothing("\0", 1);
        QTest::newRow("as they should end") << QByteArray("one\r\ntwo\r\n");
        QTest::newRow("without a return") << QByteArray("one\ntwo\n");
        QTest::newRow("with a return alone") << QByteArray("one\rtwo\r");
        QTest::newRow("without the last end") << QByteArray("one\r\ntwo");
        QTest::newRow("folded") << QByteArray("o\r\n ne\r\nt\r\n\two\r\n");
        QTest::newRow("folded without a return") << QByteArray("o\n ne\nt\n wo\n");
        QTest::newRow("folded with a return alone") << QByteArray("o\r ne\rt\r wo\r");
        QTest::newRow("with a stray return") << QByteArray("one\r\nt\rwo\r\n");
        QTest::newRow("with empty lines") << QByteArray("\r\n\r\none\r\n\r\ntwo\r\n\r\n");
        QTest::newRow("with a mark of byte order") << QByteArray("\xEF\xBB\xBFone\r\ntwo\r\n");
        QTest::newRow("with zeros") << "o" + nothing + "ne\r\ntw" + nothing + "o\r\n" + nothing;
    }

    void readsLines()
    {
        QFETCH(const QByteArray, text);
        for (std::size_t piece = 1; piece <= static_cast<std::size_t>(text.size()); ++piece)
            QCOMPARE(Lines(text, piece).all, QByteArrayList({ "one", "two" }));
    }

    void bytesThatAreNoTextStayAsTheyAre()
    {
        QCOMPARE(Lines("\xFF\xFE\x80\r\n").all, QByteArrayList { "\xFF\xFE\x80" });
    }

    void anOverlongLineIsCutWhereACharacterEnds_data()
    {
        QTest::addColumn<QByteArray>("unit");
        QTest::newRow("letters") << QByteArray("abc");
        QTest::newRow("umlauts") << QByteArray("\xC3\xA4");
        QTest::newRow("euros") << QByteArray("\xE2\x82\xAC");
        QTest::newRow("faces") << QByteArray("\xF0\x9F\x98\x80");
        QTest::newRow("escapes") << QByteArray("\\n");
        QTest::newRow("backslashes") << QByteArray("\\\\");
    }

    void anOverlongLineIsCutWhereACharacterEnds()
    {
        QFETCH(const QByteArray, unit);
        for (const QByteArray start : { "", "1", "12", "123" }) {
            const Lines lines(
                start + unit.repeated(LineReader::longestLine) + "\r\nnext\r\n", 4096);
            QCOMPARE(lines.all.size(), 2);
            QCOMPARE(lines.cut, QList<bool>({ true, false }));
            const auto kept = lines.all.first().size();
            const auto most = static_cast<qsizetype>(LineReader::longestLine);
            QVERIFY(kept <= most && kept > most - 5);
            if (unit != "abc")
                QCOMPARE((kept - start.size()) % unit.size(), 0);
        }
    }

    void aLineOfTheGreatestLengthIsWhole()
    {
        const Lines lines(QByteArray(LineReader::longestLine, 'x') + "\r\n");
        QCOMPARE(lines.cut, QList<bool> { false });
        QCOMPARE(lines.all.first().size(), static_cast<qsizetype>(LineReader::longestLine));
    }
};

QTEST_GUILESS_MAIN(LineReaderTest)
#include "LineReaderTest.moc"
