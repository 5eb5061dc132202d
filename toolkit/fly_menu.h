// TFlyMenu: a strip that shows the present choice and opens a popup of its entries. Posts the chosen entry's command to
// the parent, with the strip's text (const char*, zero-terminated, the strip's own) in lParam.
//
// Keys: Space, Enter, Down and the menu key open the popup.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "toolkit/marlin_wnd.h"

namespace jotlet {

struct FlyMenuEntry {
    int stringId = -1;  // -1: none
    int command = -1;
    std::string text;  // goes before the string; with neither the entry is a separator
};

class TFlyMenu : public MarlinWnd {
public:
    TFlyMenu(Colour backColour, Colour textColour, Colour thirdColour);

    void ClearEntries() { entries.clear(); }
    // -1, -1 adds a separator. 1, or 0 when there are kMaxEntries already.
    int AddStringEntry(int stringId, int command);
    int AddTextEntry(std::string_view text, int command);
    // Shows the entry's text; nothing for an unknown command. No repaint.
    void ShowEntry(int command);
    const std::string& ShownText() const { return shownText; }
    bool IsPressed() const { return pressed; }

    // Opens the popup, as a press on the strip does.
    void OpenMenu();
    // The part of the strip that reacts to the mouse; its first 10 pixels.
    virtual Rect GetHotArea();

    void PrepareClass(WindowClass& windowClass) override;
    MessageParam OnCommand(WndMessage& record) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& paint) override;
    MessageParam OnSetCursor(WndMessage& record) override;
    MessageParam OnMouseMove(WndMessage& record) override;
    MessageParam OnLButtonDown(WndMessage& record) override;
    MessageParam OnKeyDown(WndMessage& record) override;
    void OnFocusChanged(bool focused) override;
    void CollectTabStops(TabStops& stops) override;
    void Describe(AccessibleDescription& description) override;

    static constexpr std::size_t kMaxEntries = 100;
    static constexpr std::size_t kMaxText = 254;

protected:
    static std::string EntryText(const FlyMenuEntry& entry);
    // Dotted, inside the strip, while it has the focus; for subclasses that draw the strip themselves.
    void DrawFocusMark(DeviceContext& dc);

    std::vector<FlyMenuEntry> entries;
    std::string shownText;
    Colour backColour;
    Colour textColour;
    Colour thirdColour;  // kept, not drawn
    bool pressed = false;
    CursorId cursor = CursorId::Arrow;
};

}  // namespace jotlet
