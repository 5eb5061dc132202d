#include "toolkit/focus_order.h"

#include <algorithm>
#include <iterator>

#include "toolkit/marlin_dialog.h"

namespace jotlet {
namespace {

// Whether the window and everything it stands in is on view and takes input.
bool IsReachable(const MarlinWnd& stop, const MarlinWnd& top)
{
    for (const MarlinWnd* one = &stop; one && one != &top; one = one->GetParentWnd()) {
        if (!IsVisible(one->window) || !IsEnabled(one->window))
            return false;
    }
    return true;
}

}  // namespace

bool MoveFocusByTab(MarlinWnd& from, bool backwards)
{
    MarlinWnd* top = &from;
    while (MarlinWnd* parent = top->GetParentWnd())
        top = parent;
    for (MarlinWnd* one = &from; one; one = one->GetParentWnd()) {
        if (dynamic_cast<MarlinDialog*>(one))
            return false;
    }

    TabStops stops;
    top->CollectTabStops(stops);
    std::erase_if(stops, [top](const MarlinWnd* stop) { return !IsReachable(*stop, *top); });
    if (backwards)
        std::reverse(stops.begin(), stops.end());
    const auto here = std::find(stops.begin(), stops.end(), &from);
    if (here == stops.end()) {
        if (stops.empty())
            return false;
        FocusWindow(stops.front()->window);
        return true;
    }
    if (stops.size() < 2)
        return false;
    const auto next = std::next(here) == stops.end() ? stops.begin() : std::next(here);
    FocusWindow((*next)->window);
    return true;
}

}  // namespace jotlet
