// Which sentences of a text say most: those whose words are the most frequent ones.
#pragma once

#include <QList>
#include <QStringView>

// A third of the sentences, but two to five of them, in text order and joined by spaces. All of
// them when there are fewer.
QString summary(const QList<QStringView>& sentences);
