// The forms under which a dictionary lists English words.
#pragma once

#include <QString>

#include <optional>

class Lemmas final {
public:
    // In lower case, until the next call. Absent for a word that is no English one or the form of
    // none, as far as is known: then it stands for itself. What is joined to it by an apostrophe
    // (n't, 's, 'll, 're, 've, 'd, 'm) is cut off first.
    std::optional<QStringView> of(QStringView word);

private:
    QString m_lemma;
};
