// Where everything of the main window stands. Painting, hit tests and layout all ask here.
//
// Units: logical pixels. "Window" coordinates start at the window's corner, "client" ones behind its margin.
#pragma once

#include <array>

#include "platform/desktop/geometry.h"
#include "platform/desktop/system_metrics.h"

namespace jotlet {

// The two sizes of the window; a user sizes it between them.
inline constexpr Size kFrameSmall{420, 430};
inline constexpr Size kFrameLarge{560, 580};

// In the order in which hover and presses look at them.
enum class CaptionButton { Maximise, Minimise, Close };
inline constexpr std::array kCaptionButtons = {CaptionButton::Maximise, CaptionButton::Minimise, CaptionButton::Close};

// Window coordinates.
Rect FrameTitleRect(Size window);
// Fill and pictures of the title: the whole width, from the top edge to just under the title rectangle.
Rect FrameTitleArea(Size window);
// A press here moves the window; it reaches 2 pixels further right and down than the title rectangle.
Rect FrameCaptionHit(Size window);
Rect CaptionButtonRect(Size window, CaptionButton button);
struct FrameStrips {
    Rect left;
    Rect right;
    Rect bottom;
};
FrameStrips LayOutStrips(Size window);
// The window's shape: a rectangle with its two top corners cut.
std::array<Point, 6> FrameShape(Size window);

// Client coordinates.
Rect FrameGripHit(Size client);
Point FrameGripPicture(Size client);
Rect PaneBarRect(Size client);
Rect ToolBarRect(Size client);
Rect PaneRect(Size client);

// The bands about the pane, in client coordinates, in the order of painting.
struct FrameRings {
    std::array<Rect, 4> outer;
    std::array<Rect, 4> inner;
    std::array<Rect, 2> shadow;
    Rect header;
};
FrameRings LayOutRings(Size client);

// The point of a window that tells on which screen it lies: the middle of its title.
Point FrameHold(const Rect& window);

// What "maximise" makes of a window standing at `now`: the small size in place when it has the large one, else the
// large one, moved only as far as needed to stay on the desktop; its left and top edges always do. A window that a
// fractional scale rounded to nearly the large size counts as large.
Rect ToggledFrame(const Rect& now, const Rect& desktop);

}  // namespace jotlet
