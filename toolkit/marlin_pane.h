// MarlinPane: one page of the program. The frame shows one at a time and takes its colours for what lies about it.
#pragma once

#include <string>

#include "toolkit/marlin_wnd.h"

namespace jotlet {

class TableFile;

struct PaneColours {
    Colour barColour = 0;      // tool bar: the item under the mouse
    Colour barTextColour = 0;  // tool bar and header texts
    Colour backColour = 0;     // the pane itself
    Colour ringColour = 0;     // outer ring about the pane
    Colour shadowColour = 0;
    Colour innerRingColour = 0;
    Colour headerColour = 0;
};

class MarlinPane : public MarlinWnd {
public:
    // Appends the pane to the pane list, and makes the first pane current.
    MarlinPane(const PaneColours& colours, std::string name);
    ~MarlinPane() override;

    const PaneColours colours;
    const std::string name;

    // 0 refuses to give way to another pane.
    virtual int CanLeave() { return 1; }
    // 0 refuses to become current.
    virtual int CanEnter() { return 1; }
    // The pane has become current and has the focus; it gives the focus to its main child.
    virtual int OnEntered() { return 1; }
    // A file was opened; it stays the caller's and outlives its use here.
    virtual int OnFileOpened(TableFile*) { return 1; }

    void PrepareClass(WindowClass& windowClass) override;
    void PrepareCreate(CreateParameters& parameters) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& info) override;
    void Describe(AccessibleDescription& description) override;
};

}  // namespace jotlet
