// The rubber-band animations, drawn over the whole screen. They run with the message loop standing still and leave the
// screen as it was; on a display that cannot place an overlay they are skipped.
#pragma once

#include "platform/desktop/geometry.h"

namespace jotlet {

// A rectangle that unrolls downwards over `area` (screen coordinates). Nothing when animation is off.
void PlayOpenZoom(int left, int top, int right, int bottom);
// A line that falls faster and faster over `sweep`, tied to `target`'s top corners, with its sound. Nothing, not even
// the sound, when animation is off.
void PlayPaneChange(const Rect& sweep, const Rect& target);
// Grows from `from` to one pixel inside `to`, whether animation is on or off.
void PlayDialogZoom(const Rect& from, const Rect& to);

}  // namespace jotlet
