// MarlinToolBar: the frame's commands as a row of icons with texts. The parent gets kWmCommand with an item's command.
//
// With the focus, Left and Right walk through the items, and Space, Return or Down presses one.
#pragma once

#include <optional>
#include <vector>

#include "toolkit/marlin_wnd.h"

namespace jotlet {

// Where item `index` stands in a bar of this client size.
Rect ToolBarItemRect(Size client, int index);

class MarlinToolBar : public MarlinWnd {
public:
    static constexpr int kMaxItems = 50;
    static constexpr int kNoItem = -1;

    // How an item looks; the item that is not hot is Plain.
    enum class HotState { Plain = -1, Pressed = 0, UnderMouse = 1 };

    // `icon`: resource id; `text`: string id; `sendIt`: 1 delivers the command by send (for menus, which are closed
    // again by the time the item loses its pressed look), 0 by post. 1, or 0 when 50 items exist.
    int AddItem(int command, int icon, int text, int sendIt);
    // The item's index and its rectangle in client coordinates; -1 when no item has that command.
    int GetItemRect(int command, Rect& rectangle) const;

    int GetHotItem() const { return hotItem; }
    HotState GetHotState() const { return hotState; }

    void PrepareClass(WindowClass& windowClass) override;
    void PrepareCreate(CreateParameters& parameters) override;
    MessageParam OnClose(WndMessage& record) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& info) override;
    MessageParam OnTimer(WndMessage& record) override;
    MessageParam OnLButtonDown(WndMessage& record) override;
    MessageParam OnLButtonUp(WndMessage& record) override;
    void OnCaptureLost() override;
    MessageParam OnMouseMove(WndMessage& record) override;
    MessageParam OnKeyDown(WndMessage& record) override;
    void OnFocusChanged(bool focused) override;
    void Describe(AccessibleDescription& description) override;
    void CollectTabStops(TabStops& stops) override { stops.push_back(this); }
    bool UsesReturnKey() const override { return true; }

private:
    struct Item {
        int command = 0;
        int icon = 0;
        int text = 0;
        bool sendIt = false;
    };

    Rect RectOf(int index) const;
    int ItemAt(Point client) const;  // kNoItem off the items
    void SetHot(int item, HotState state);
    void Deliver(const Item& item);
    void DrawItem(DeviceContext& dc, int index) const;
    void StopHover();

    std::vector<Item> items;
    int hotItem = kNoItem;
    HotState hotState = HotState::Plain;
    bool pressed = false;
    bool hoverTimer = false;
    bool focused = false;
    int focusItem = 0;
};

}  // namespace jotlet
