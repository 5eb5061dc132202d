// What a list says to the window under the mouse while an item is dragged: kWmCommand with one of these in wParam and a
// Point* in lParam, the cursor's place on the screen. The point lives for the call and the receiver may change it.
#pragma once

namespace jotlet {

inline constexpr int kDragOver = 1020;      // may this window take a drop here? 1 says yes
inline constexpr int kDragMoveDrop = 1021;  // dropped
inline constexpr int kDragCopyDrop = 1022;  // dropped with Ctrl held

}  // namespace jotlet
