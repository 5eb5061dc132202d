// MarlinClassLinkButton: a line of underlined text that is pressed like a button. Posts its id with 0 to the parent.
#pragma once

#include <string>

#include "toolkit/marlin_wnd.h"

namespace jotlet {

class MarlinClassLinkButton : public MarlinWnd {
public:
    // `drawFlags`: TextFlags of platform/desktop/device_context.h. The text is cut at 255 bytes.
    MarlinClassLinkButton(int id, std::string_view text, Colour backColour, Colour colour, Colour activeColour,
                          std::uint32_t drawFlags);

    void PrepareClass(WindowClass& windowClass) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& paint) override;
    MessageParam OnSetCursor(WndMessage& record) override;
    MessageParam OnMouseMove(WndMessage& record) override;
    MessageParam OnLButtonUp(WndMessage& record) override;
    void OnCaptureLost() override;
    MessageParam OnLButtonDown(WndMessage& record) override;
    MessageParam OnKeyDown(WndMessage& record) override;
    void OnFocusChanged(bool focused) override;
    void CollectTabStops(TabStops& stops) override;
    void Describe(AccessibleDescription& description) override;

private:
    int id;
    Colour backColour;
    Colour colour;
    Colour activeColour;
    std::string text;
    std::uint32_t drawFlags;
    bool active = false;   // drawn in activeColour: held, with the mouse on it
    bool pressed = false;  // held
};

}  // namespace jotlet
