// What the program is for, and under it an offer with a link to its help page. With the focus, Return or Space follows
// the link.
#pragma once

#include "toolkit/marlin_wnd.h"

namespace jotlet {

class IntroText : public MarlinWnd {
public:
    IntroText(int stringId, Colour backColour, Colour textColour);

    // The link's area in client coordinates, as the last painting measured it.
    const Rect& GetLinkArea() const { return linkArea; }

    void PrepareClass(WindowClass& windowClass) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& info) override;
    MessageParam OnMouseMove(WndMessage& record) override;
    MessageParam OnSetCursor(WndMessage& record) override;
    MessageParam OnLButtonDown(WndMessage& record) override;
    MessageParam OnKeyDown(WndMessage& record) override;
    void OnFocusChanged(bool focused) override;
    void Describe(AccessibleDescription& description) override;
    void CollectTabStops(TabStops& stops) override { stops.push_back(this); }
    bool UsesReturnKey() const override { return true; }

private:
    void DrawOffer(DeviceContext& dc, const Rect& inset);
    void FollowLink();

    int stringId;
    Colour backColour;
    Colour textColour;
    Rect linkArea;
    CursorId cursor = CursorId::Arrow;
    bool focused = false;
};

}  // namespace jotlet
