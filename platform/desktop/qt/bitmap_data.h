#pragma once

#include <QImage>
#include <QString>

#include "platform/desktop/bitmap.h"

namespace jotlet {

struct Bitmap::Data {
    QImage image;   // premultiplied; its device pixel ratio stays 1
    int scale = 1;  // device pixels a logical one

    QSize LogicalSize() const { return image.size() / scale; }
};

// A picture of the program, decoded once and shared. Null when there is none; `scale` is 2 for one drawn at twice the
// size, which serves every screen that is sharper than 1.
struct StoredPicture {
    QImage image;
    int scale = 1;
};
StoredPicture FindPicture(const QString& name);
// An icon's smallest picture that has the wanted side in device pixels, else its largest; null when there is none.
QImage FindIcon(int iconId, int pixels);

}  // namespace jotlet
