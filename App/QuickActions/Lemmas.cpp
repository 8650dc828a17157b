#include "App/QuickActions/Lemmas.h"

std::optional<QStringView> Lemmas::of(QStringView word)
{
    m_lemma = word.toString().toLower();
    return m_lemma;
}
