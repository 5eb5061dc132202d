// The little recoloured pictures that buttons carry.
#pragma once

#include "platform/desktop/device_context.h"

namespace jotlet {

// Left top corner at which a picture of this size stands in the middle of `area`.
Point CentredIn(const Rect& area, Size picture);
// A numbered picture in the middle of `area`, its background key turned into `background`, and `key` into `colour`
// unless that is kNoColour. Nothing when there is no such picture.
void DrawGlyph(DeviceContext& dc, const Rect& area, int pictureId, Colour background, Colour key = kNoColour,
               Colour colour = kNoColour);

}  // namespace jotlet
