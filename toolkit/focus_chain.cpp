#include "toolkit/focus_chain.h"

#include <algorithm>
#include <vector>

#include "platform/desktop/native_window.h"
#include "toolkit/marlin_wnd.h"

namespace jotlet {
namespace {

// In the order of construction; sorted by place only when Tab is pressed.
std::vector<const FocusStop*>& AllStops()
{
    static std::vector<const FocusStop*> stops;
    return stops;
}

bool CanTakeFocus(WindowHandle window)
{
    for (WindowHandle one = window; one; one = ParentOf(one)) {
        if (!IsVisible(one) || !IsEnabled(one))
            return false;
    }
    return IsWindow(window);
}

}  // namespace

FocusStop::FocusStop(MarlinWnd& stopOwner, int stopOrder, ReturnKey key)
    : owner(stopOwner), order(stopOrder), returnKey(key)
{
    AllStops().push_back(this);
}

FocusStop::~FocusStop()
{
    std::erase(AllStops(), this);
}

WindowHandle TopLevelOf(WindowHandle window)
{
    while (const WindowHandle parent = ParentOf(window))
        window = parent;
    return window;
}

bool MoveFocusFrom(WindowHandle window, bool backwards)
{
    const WindowHandle top = TopLevelOf(window);
    std::vector<const FocusStop*> stops;
    for (const FocusStop* stop : AllStops()) {
        const WindowHandle handle = stop->Owner().window;
        if (handle == window || (TopLevelOf(handle) == top && CanTakeFocus(handle)))
            stops.push_back(stop);
    }
    std::ranges::stable_sort(stops, {}, &FocusStop::Order);
    if (stops.empty())
        return false;
    const auto here =
        std::ranges::find_if(stops, [window](const FocusStop* stop) { return stop->Owner().window == window; });
    const auto count = static_cast<std::ptrdiff_t>(stops.size());
    std::ptrdiff_t next = backwards ? count - 1 : 0;
    if (here != stops.end())
        next = (here - stops.begin() + (backwards ? count - 1 : 1)) % count;
    const WindowHandle target = stops[static_cast<std::size_t>(next)]->Owner().window;
    if (target == window)
        return false;
    FocusWindow(target);
    return true;
}

bool TakesReturnKey(WindowHandle window)
{
    return std::ranges::any_of(AllStops(), [window](const FocusStop* stop) {
        return stop->Owner().window == window && stop->Key() == ReturnKey::Widget;
    });
}

}  // namespace jotlet
