// The desktop's measures and colours, in one place.
#pragma once

#include "platform/desktop/geometry.h"

namespace jotlet {

// Measures of a frame's margin. The frame paints it itself, so they are ours and the same on every desktop.
inline constexpr int kCxFrame = 4;
inline constexpr int kCyFrame = 4;
inline constexpr int kCxBorder = 1;
inline constexpr int kCyBorder = 1;
inline constexpr int kCySize = 18;
// A frame's client area starts this far inside the window.
inline constexpr int kFrameMarginSide = kCxFrame + kCxBorder;
inline constexpr int kFrameMarginTop = kCyFrame + kCySize + kCyBorder;
inline constexpr int kFrameMarginBottom = kCyFrame + kCyBorder;

// System colours by their numbers.
inline constexpr int kSysColourWindow = 5;
inline constexpr int kSysColourButtonFace = 15;
inline constexpr int kSysColourButtonShadow = 16;
inline constexpr int kSysColourButtonHighlight = 20;
Colour SystemColour(int index);

// The available part of the screen that `near` lies on.
Rect DesktopRect(Point near = {});

}  // namespace jotlet
