// The forms under which a dictionary lists English words.
#pragma once

#include <QString>

// Lower case. Absent for a word that is no English one, as far as is known. What is joined to it by
// an apostrophe (n't, 's, 'll, 're, 've, 'd, 'm) is cut off.
QString lemma(QStringView word);
