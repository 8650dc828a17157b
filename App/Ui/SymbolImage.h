// A symbol by whatever name a person gives it: one of our own, one of the usual system names, or an
// icon of the desktop's theme.
#pragma once

class QColor;
class QPainter;
class QRectF;
class QString;

namespace SymbolImage {

// Whether there is a picture for the name. Names that lead to a file elsewhere have none. Looks at
// the theme anew, since an application may have brought its icon meanwhile: a few milliseconds.
bool exists(const QString& name);

// Fills the square box in one colour; a name without a picture paints the star.
void paint(QPainter& painter, const QString& name, const QRectF& box, const QColor& color);

}
