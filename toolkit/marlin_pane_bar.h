// MarlinPaneBar: one section button a pane, at the top of the frame. A press sends the parent kWmCommand 1000 with the
// button's index. A right press goes on to the parent, which shows its menu of skins.
//
// With the focus, Left and Right choose a pane, Space and Return do nothing more.
#pragma once

#include <memory>
#include <optional>

#include "toolkit/marlin_wnd.h"

namespace jotlet {

// Where the button of pane `index` stands in a bar of this client size.
Rect PaneButtonRect(Size client, int index);

class MarlinPaneBar : public MarlinWnd {
public:
    void PrepareClass(WindowClass& windowClass) override;
    void PrepareCreate(CreateParameters& parameters) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& info) override;
    MessageParam OnLButtonDown(WndMessage& record) override;
    MessageParam OnRButtonDown(WndMessage& record) override;
    MessageParam OnKeyDown(WndMessage& record) override;
    void OnFocusChanged(bool focused) override;
    void Describe(AccessibleDescription& description) override;
    void CollectTabStops(TabStops& stops) override { stops.push_back(this); }
    bool UsesReturnKey() const override { return true; }

private:
    Rect RectOf(int index) const;
    std::optional<int> ButtonAt(Point client) const;
    void Choose(int index);
    void DrawButton(DeviceContext& dc, int index);

    std::unique_ptr<Font> font;  // of its own, made at the first painting
    bool focused = false;
};

}  // namespace jotlet
