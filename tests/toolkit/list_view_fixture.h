#pragma once

#include <memory>
#include <ostream>

#include "toolkit/marlin_wnd_list_view.h"
#include "widget_host.h"

namespace jotlet {

inline constexpr Colour kOddCell = 0xC0FFFF;
inline constexpr Colour kEvenCell = 0xFFC0FF;
inline constexpr int kListId = 77;

// A call of the drawing hook.
struct Drawn {
    int index = 0;
    int state = 0;
    Colour background = 0;
    Rect rect;
    bool operator==(const Drawn&) const = default;
};
inline std::ostream& operator<<(std::ostream& out, const Drawn& d)
{
    return out << "item " << d.index << " state " << d.state << " at " << d.rect;
}

class RecordingList : public MarlinWndListView {
public:
    RecordingList(int items, int itemHeight, int columns)
        : MarlinWndListView(kListId, items, itemHeight, columns, kOddCell, kEvenCell, kScrollBarLeft, 0xC3C3C3,
                            0xC3C3C3)
    {
    }
    void DrawItem(DeviceContext&, Colour background, int index, int state, const Rect& rect) override
    {
        drawn.push_back({index, state, background, rect});
    }
    std::string ItemName(int index) override { return "item " + std::to_string(index); }
    MarlinClassWndScrollBar& Bar() { return *scrollBar; }

    std::vector<Drawn> drawn;
};

class ListViewTest : public WindowTest {
protected:
    struct Setting {
        int items = 0;
        int columns = 1;
        int clientHeight = 100;
        int itemHeight = 20;
    };

    // The grid is 120 pixels wide beside its bar.
    void Show(const Setting& setting)
    {
        list = std::make_unique<RecordingList>(setting.items, setting.itemHeight, setting.columns);
        host.Hold(*list, Rect::At(10, 10, 140, setting.clientHeight));
    }
    WindowHandle Grid() { return list->Grid().window; }
    Point Cell(int index) { return MiddleOf(list->Grid().Geometry().CellRect(index)); }
    int TopRow() { return list->GetTopRow(); }
    Command Told(int code, int item) { return {kListId, item, code}; }

    Host host;
    std::unique_ptr<RecordingList> list;
};

}  // namespace jotlet
