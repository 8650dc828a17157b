// Plain transformations of text. A character is what a reader takes for one (an extended grapheme
// cluster), white space and letters are Unicode's. Every text is taken and none fails; all may run
// on any thread.
#pragma once

#include <QString>
#include <QStringList>

namespace TextTools {

// In text order, trimmed of white space, none empty.
QStringList sentences(const QString& text);
// In text order, without punctuation and white space.
QStringList words(const QString& text);

// The two to five sentences that say most, in text order; less than three sentences as they are.
QString summarize(const QString& text);
// Each line as an item of a list, or each sentence where there is only one line.
QString bullets(const QString& text);
// Single spaces, none before and one after punctuation, and capitals where sentences begin.
QString fixSpacingAndCase(const QString& text);
// «120 words · 652 characters · 7 sentences · ~1 min read»
QString count(const QString& text);

}
