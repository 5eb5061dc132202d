// The order in which Tab walks through the widgets of a window that is no dialog.
//
// A widget that takes the focus holds a FocusStop. MarlinWnd's own OnKeyDown moves on at Tab and back at Shift+Tab, so
// a widget only has to pass on the keys that it does not use. Hidden and disabled widgets, and those of other top-level
// windows, are passed over.
#pragma once

#include "platform/desktop/messages.h"

namespace jotlet {

class MarlinWnd;

// Places in the frame, in steps so that others fit between.
inline constexpr int kFocusList = 100;
inline constexpr int kFocusSideControl = 200;
inline constexpr int kFocusTabs = 300;
inline constexpr int kFocusToolBar = 400;
inline constexpr int kFocusPaneBar = 500;
inline constexpr int kFocusCategories = 600;

// Whether Return belongs to the widget while it has the focus, or goes on to the frame's command for that key.
enum class ReturnKey { Frame, Widget };

class FocusStop {
public:
    FocusStop(MarlinWnd& owner, int order, ReturnKey returnKey = ReturnKey::Frame);
    ~FocusStop();
    FocusStop(const FocusStop&) = delete;
    FocusStop& operator=(const FocusStop&) = delete;

    const MarlinWnd& Owner() const { return owner; }
    int Order() const { return order; }
    ReturnKey Key() const { return returnKey; }

private:
    MarlinWnd& owner;
    int order;
    ReturnKey returnKey;
};

// Gives the focus to the next (previous) stop of the same top-level window. False when there is no other.
bool MoveFocusFrom(WindowHandle window, bool backwards);
bool TakesReturnKey(WindowHandle window);

// The top-level window over `window`, itself when it has no parent.
WindowHandle TopLevelOf(WindowHandle window);

}  // namespace jotlet
