// Where sentences begin and end.
#pragma once

#include <QList>
#include <QStringView>

// The sentences in text order, with the white space after them: together they are the text.
QList<QStringView> sentenceTokens(QStringView text);
