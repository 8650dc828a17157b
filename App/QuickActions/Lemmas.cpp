#include "App/QuickActions/Lemmas.h"

QString lemma(QStringView word)
{
    return word.toString().toLower();
}
