#include "toolkit/marlin_pane.h"

#include <utility>

#include "toolkit/pane_list.h"

namespace jotlet {

MarlinPane::MarlinPane(const PaneColours& paneColours, std::string paneName)
    : colours(paneColours), name(std::move(paneName))
{
    AddPane(this);
}

MarlinPane::~MarlinPane()
{
    RemovePane(this);
}

void MarlinPane::PrepareClass(WindowClass& windowClass)
{
    windowClass.name = "MarlinPane";
    windowClass.background = Background::White;
}

// Created hidden: only the frame shows a pane.
void MarlinPane::PrepareCreate(CreateParameters& parameters)
{
    parameters.style = kStyleChild;
}

void MarlinPane::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    dc.FillRect(GetClientArea(), colours.backColour);
}

void MarlinPane::Describe(AccessibleDescription& description)
{
    description.role = AccessibleRole::Pane;
    description.name = name;
}

}  // namespace jotlet
