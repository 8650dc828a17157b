// Reads a picture as what a single colour can show of it.
#pragma once

#include <QImage>

class QString;

namespace IconMask {

enum class Ink { dark, light };

// A square of this side in pixels, where alpha says how much of the ink to put; null where the file
// is no picture. Symbolic pictures are all shape; of others the ink shows the dark or the light
// parts, so that what is in them stays to be seen.
QImage read(const QString& path, int side, Ink ink);

}
