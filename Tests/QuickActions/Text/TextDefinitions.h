// What the text tools are defined by: ICU's boundaries and regular expressions. Slow, for
// comparison.
#pragma once

#include <QString>
#include <QStringList>

namespace TextDefinitions {

QStringList characters(const QString& text);
QStringList words(const QString& text);
QString fixSpacingAndCase(const QString& text);

}
