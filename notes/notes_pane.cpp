#include "notes/notes_pane.h"

#include <utility>

namespace jotlet {

NotesPane::NotesPane(const PaneColours& paneColours, std::string paneName)
    : MarlinPane(paneColours, std::move(paneName)),
      list(std::make_unique<MarlinWndListView>(100, 0, 80, 3, 0xC0FFFF, 0xC0FFFF, 0, 0xC3C3C3, 0xC3C3C3))
{
}

NotesPane::~NotesPane() = default;

std::uint64_t NotesPane::SelectedId() const
{
    return 0;
}

int NotesPane::OnFileOpened(TableFile* opened)
{
    file = opened;
    return 1;
}

int NotesPane::OnEntered()
{
    FocusWindow(list->Grid().window);
    return 1;
}

MessageParam NotesPane::OnCreate(WndMessage&)
{
    list->Create(this);
    return 0;
}

MessageParam NotesPane::OnSize(WndMessage&)
{
    const Rect client = GetClientArea();
    MoveTo(list->window, Rect::At(5, 35, client.Width() - 114, client.Height() - 60));
    return 0;
}

MessageParam NotesPane::OnCommand(WndMessage&)
{
    return 0;
}

}  // namespace jotlet
