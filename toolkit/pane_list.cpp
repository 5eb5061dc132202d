#include "toolkit/pane_list.h"

#include <algorithm>
#include <vector>

#include "toolkit/marlin_pane.h"

namespace jotlet {
namespace {

struct PaneList {
    std::vector<MarlinPane*> panes;
    int current = 0;
};

PaneList& TheList()
{
    // The panes say themselves that they are there; the frame asks.
    static PaneList list;
    return list;
}

}  // namespace

int GetPaneCount()
{
    return static_cast<int>(TheList().panes.size());
}

int GetCurrentPaneIndex()
{
    return TheList().current;
}

int SetCurrentPaneIndex(int index)
{
    if (index < 0 || index >= GetPaneCount())
        return 0;
    TheList().current = index;
    return 1;
}

std::span<MarlinPane* const> GetPanes()
{
    return TheList().panes;
}

MarlinPane* GetCurrentPane()
{
    const PaneList& list = TheList();
    return list.panes.empty() ? nullptr : list.panes[static_cast<std::size_t>(list.current)];
}

MarlinPane* FindPane(std::string_view name)
{
    const auto& panes = TheList().panes;
    const auto found = std::ranges::find_if(panes, [name](const MarlinPane* pane) { return pane->name == name; });
    return found == panes.end() ? nullptr : *found;
}

int PostToPane(std::string_view name, const WndMessage& record)
{
    MarlinPane* pane = FindPane(name);
    if (!pane)
        return 0;
    PostRequest(pane->window, record.message, record.wParam, record.lParam);
    return 1;
}

void AddPane(MarlinPane* pane)
{
    PaneList& list = TheList();
    list.current = 0;
    if (list.panes.size() < kMaxPanes)
        list.panes.push_back(pane);
}

void RemovePane(MarlinPane* pane)
{
    PaneList& list = TheList();
    std::erase(list.panes, pane);
    if (list.current >= GetPaneCount())
        list.current = 0;
}

}  // namespace jotlet
