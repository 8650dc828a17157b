// Spaces, line breaks and capitals as they are usual.
#pragma once

#include <QString>

QString withSpacingMended(QStringView text);
// Capital letters where sentences begin, and I for the lone i.
QString withCaseMended(QStringView text);
