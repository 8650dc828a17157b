#include "App/Ui/SymbolImage.h"

#include "App/Ui/Symbols.h"

#include <QString>

using namespace Qt::StringLiterals;

bool SymbolImage::exists(const QString& name)
{
    return Symbols::contains(name);
}

void SymbolImage::paint(
    QPainter& painter, const QString& name, const QRectF& box, const QColor& color)
{
    Symbols::paint(painter, exists(name) ? name : u"star"_s, box, color);
}
