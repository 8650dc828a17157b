// The forms under which a dictionary lists English words.
#pragma once

#include <QString>

#include <optional>

class Lemmas final {
public:
    // In lower case, until the next call. Absent for a word that stands for itself: because it is
    // no inflected one, or because it is not known. What an apostrophe joins to a word (n't, 's,
    // 'll, 're, 've, 'd, 'm) is cut off; of such a word the lemma is never absent.
    std::optional<QStringView> of(QStringView word);

private:
    bool look(QStringView word);

    QString m_lemma;
};
