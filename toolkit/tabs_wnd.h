// TTabsWnd: a row of coloured index tabs. A press, or an arrow key while it has the focus, chooses one; the parent
// hears of it by a posted kWmCommand with the row's id in wParam and the tab's value in lParam.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "toolkit/marlin_wnd.h"

namespace jotlet {

// Where tab `index` stands in a row of this client size. Painting, presses and screen readers all ask this.
Rect TabRect(Size client, int tabWidth, int index);

class TTabsWnd : public MarlinWnd {
public:
    static constexpr int kMaxTabs = 50;

    TTabsWnd(int id, Colour backColour, int tabWidth);

    // 1, or 0 when 50 tabs exist. Names are cut at 255 bytes.
    int AddTab(int value, std::string_view name, Colour backColour, Colour textColour);
    int GetSelected() const { return selected; }
    int GetTabCount() const { return static_cast<int>(tabs.size()); }
    // The value of a tab, -1 outside the row.
    int GetTabValue(int index) const;

    // Posts the choice to the parent.
    virtual void Notify(int id, int value);

    void PrepareClass(WindowClass& windowClass) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& info) override;
    MessageParam OnLButtonDown(WndMessage& record) override;
    MessageParam OnMouseMove(WndMessage& record) override;
    MessageParam OnSetCursor(WndMessage& record) override;
    MessageParam OnKeyDown(WndMessage& record) override;
    void OnFocusChanged(bool focused) override;
    void Describe(AccessibleDescription& description) override;
    void CollectTabStops(TabStops& stops) override { stops.push_back(this); }
    bool UsesReturnKey() const override { return true; }

private:
    struct Tab {
        int value = 0;
        std::string name;
        Colour backColour = 0;
        Colour textColour = 0;
    };

    Rect RectOf(int index) const;
    std::optional<int> TabAt(Point client) const;
    void Choose(int index);
    void DrawTab(DeviceContext& dc, int index) const;

    int id;
    std::vector<Tab> tabs;
    Colour backColour;
    int selected = 0;
    int tabWidth;
    CursorId cursor = CursorId::Arrow;
    bool focused = false;
};

}  // namespace jotlet
