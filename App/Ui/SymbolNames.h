// The usual system names of symbols, as in "paperplane.fill", and what theme icons stand for them.
#pragma once

#include <QStringList>

namespace SymbolNames {

QStringList all();

// Icons that mean the same, the best one first; none where the very name is not listed.
QStringList icons(const QString& name);

// The name of the plainer symbol that the name varies, as "folder" in "folder.circle.fill" by way
// of "folder.circle"; empty where it varies none.
QString plainer(const QString& name);

}
