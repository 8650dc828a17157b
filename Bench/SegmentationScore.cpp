// Scores sentences and lemmas against a treebank: SegmentationScore FILE.conllu
//
// A document's text is put together from its words as they were written (of one that was taken
// apart, like "don't", the whole), with a space after each but those marked SpaceAfter=No, and with
// a line feed before each paragraph instead. Sentences are compared by where they end, counted in
// characters other than white space, so that what is between them does not matter. Beside
// Corvella's stand those of Unicode's rules alone.
//
// Lemmas are compared in lower case with those of the treebank's words, after taking apart, that a
// summary counts: their lemma has three characters or more and is no stop word. Names are among
// them, punctuation and symbols are not.
#include "App/QuickActions/Text/Lemmas.h"
#include "App/QuickActions/Text/SentenceTokens.h"

#include <QFile>
#include <QSet>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <unicode/ubrk.h>

using namespace Qt::StringLiterals;

namespace {

using Places = QSet<qsizetype>;

struct Word {
    QString form;
    QString lemma;
};

struct Document {
    QString text;
    Places ends; // Of its sentences, in characters that are no white space.
};

struct Treebank {
    QList<Document> documents;
    QList<Word> words;
};

struct Score {
    qsizetype right = 0;
    qsizetype found = 0;
    qsizetype expected = 0;
};

class Reader final {
public:
    // Absent when the file is not understood; then complaint() tells why.
    std::optional<Treebank> read(const QString& fileName);
    QString complaint() const { return m_complaint; }

private:
    void readComment(const QString& line);
    bool readWord(const QString& line);
    void append(const QString& form, bool hasSpace);
    void endSentence();

    Treebank m_treebank;
    QString m_complaint;
    qsizetype m_characters = 0;
    int m_lastPart = 0; // Of the word that is taken apart.
    bool m_startsDocument = true;
    bool m_startsParagraph = false;
    bool m_hasSpace = false;
    bool m_hasWords = false;
};

std::optional<Treebank> Reader::read(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QFile::ReadOnly)) {
        m_complaint = fileName + u": "_s + file.errorString();
        return {};
    }
    for (int number = 1; !file.atEnd(); ++number) {
        auto line = QString::fromUtf8(file.readLine());
        while (line.endsWith(u'\n') || line.endsWith(u'\r'))
            line.chop(1);
        if (line.isEmpty())
            endSentence();
        else if (line.startsWith(u'#'))
            readComment(line);
        else if (!readWord(line)) {
            m_complaint = u"%1:%2: not a word in ten columns"_s.arg(fileName).arg(number);
            return {};
        }
    }
    endSentence();
    if (m_treebank.words.isEmpty())
        m_complaint = fileName + u": no words in it"_s;
    return m_treebank.words.isEmpty() ? std::nullopt : std::optional(m_treebank);
}

void Reader::readComment(const QString& line)
{
    m_startsDocument = m_startsDocument || line.startsWith(u"# newdoc");
    m_startsParagraph = m_startsParagraph || line.startsWith(u"# newpar");
}

bool Reader::readWord(const QString& line)
{
    const auto columns = line.split(u'\t');
    if (columns.size() != 10)
        return false;
    const auto& number = columns[0];
    if (number.contains(u'.')) // Understood, but not written.
        return true;
    const bool hasSpace = !columns[9].split(u'|').contains(u"SpaceAfter=No"_s);
    if (const auto range = number.split(u'-'); range.size() == 2) {
        m_lastPart = range[1].toInt();
        append(columns[1], hasSpace);
        return m_lastPart > 0;
    }
    if (number.toInt() > m_lastPart)
        append(columns[1], hasSpace);
    if (columns[3] != u"PUNCT" && columns[3] != u"SYM")
        m_treebank.words.append({ columns[1], columns[2] });
    return number.toInt() > 0;
}

void Reader::append(const QString& form, bool hasSpace)
{
    if (m_startsDocument) {
        m_treebank.documents.append(Document());
        m_characters = 0;
    }
    auto& text = m_treebank.documents.last().text;
    if (m_startsParagraph && !text.isEmpty())
        text += u'\n';
    else if (m_hasSpace && !text.isEmpty())
        text += u' ';
    text += form;
    m_characters += std::ranges::count_if(form, [](QChar c) { return !c.isSpace(); });
    m_hasSpace = hasSpace;
    m_hasWords = true;
    m_startsDocument = m_startsParagraph = false;
}

void Reader::endSentence()
{
    if (m_hasWords)
        m_treebank.documents.last().ends.insert(m_characters);
    m_hasWords = false;
    m_lastPart = 0;
}

Places endsOf(const QList<QStringView>& sentences)
{
    Places ends;
    qsizetype characters = 0;
    for (const auto sentence : sentences) {
        characters += std::ranges::count_if(sentence, [](QChar c) { return !c.isSpace(); });
        ends.insert(characters);
    }
    ends.remove(0);
    return ends;
}

QList<QStringView> byUnicode(QStringView text)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UBreakIterator, decltype(&ubrk_close)> breaks(
        ubrk_open(UBRK_SENTENCE, "", text.utf16(), int32_t(text.size()), &status), &ubrk_close);
    QList<QStringView> sentences;
    int32_t start = 0;
    for (auto end = ubrk_next(breaks.get()); end != UBRK_DONE; end = ubrk_next(breaks.get())) {
        sentences.append(text.sliced(start, end - start));
        start = end;
    }
    return sentences;
}

template <typename Splitting>
Score sentenceScore(const Treebank& treebank, Splitting split)
{
    Score score;
    for (const auto& document : treebank.documents) {
        auto found = endsOf(split(document.text));
        score.found += found.size();
        score.expected += document.ends.size();
        score.right += found.intersect(document.ends).size();
    }
    return score;
}

bool isCounted(const QString& lemma)
{
    static const auto stopWords
        = u"the and that this with for are was were have has had but not you your from they their "
          "will would can could there been which what when about into than then also its our "
          "who"_s.split(u' ');
    return lemma.size() >= 3 && !stopWords.contains(lemma);
}

Score lemmaScore(const Treebank& treebank)
{
    Score score;
    Lemmas lemmas;
    for (const auto& word : treebank.words) {
        const auto expected = word.lemma.toLower();
        if (!isCounted(expected))
            continue;
        ++score.expected;
        const auto found = lemmas.of(word.form).value_or(word.form);
        score.right += found.toString().toLower() == expected ? 1 : 0;
    }
    return score;
}

double percent(qsizetype part, qsizetype whole)
{
    return whole == 0 ? 0 : 100 * double(part) / double(whole);
}

void printSentences(const char* name, const Score& score)
{
    std::printf("| %s | %lld | %lld | %lld | %.2f | %.2f | %.2f |\n", name,
        static_cast<long long>(score.expected), static_cast<long long>(score.found),
        static_cast<long long>(score.right), percent(score.right, score.found),
        percent(score.right, score.expected),
        percent(2 * score.right, score.found + score.expected));
}

void print(const Treebank& treebank)
{
    std::puts("| sentences by | in the treebank | found | right | precision | recall | F1 |");
    std::puts("|---|---:|---:|---:|---:|---:|---:|");
    printSentences("Unicode's rules", sentenceScore(treebank, byUnicode));
    printSentences("Corvella", sentenceScore(treebank, sentenceTokens));
    const auto lemmas = lemmaScore(treebank);
    std::puts("\n| lemmas by | words | right | accuracy |");
    std::puts("|---|---:|---:|---:|");
    std::printf("| Corvella | %lld | %lld | %.2f |\n", static_cast<long long>(lemmas.expected),
        static_cast<long long>(lemmas.right), percent(lemmas.right, lemmas.expected));
}

}

int main(int count, char** arguments)
{
    if (count != 2) {
        std::fputs("usage: SegmentationScore FILE.conllu\n", stderr);
        return 1;
    }
    Reader reader;
    const auto treebank = reader.read(QFile::decodeName(arguments[1]));
    if (!treebank) {
        std::fprintf(stderr, "SegmentationScore: %s\n", qPrintable(reader.complaint()));
        return 1;
    }
    print(*treebank);
    return 0;
}
