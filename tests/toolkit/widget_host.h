// What the tests of widgets share: a window that holds them and keeps what they tell.
#pragma once

#include <chrono>
#include <functional>
#include <ostream>
#include <vector>

#include "platform/desktop/test_input.h"
#include "support/window_test.h"
#include "toolkit/marlin_wnd.h"

namespace jotlet {

// A command as a parent gets it.
struct Command {
    int id = 0;
    MessageParam value = 0;
    int code = 0;
    bool operator==(const Command&) const = default;
};
inline std::ostream& operator<<(std::ostream& out, const Command& c)
{
    return out << "id " << c.id << " value " << c.value << " code " << c.code;
}
using Commands = std::vector<Command>;

class Host : public MarlinWnd {
public:
    explicit Host(Size size = {400, 300}, Point place = {0, 0}) : size(size), place(place)
    {
        constexpr long kVisibleTopLevel = kStyleVisible;
        Create(nullptr, kVisibleTopLevel);
        ServeEvents();
    }

    void PrepareClass(WindowClass& windowClass) override { windowClass.name = "TestHost"; }
    void PrepareCreate(CreateParameters& parameters) override
    {
        parameters.x = place.x;
        parameters.y = place.y;
        parameters.width = size.width;
        parameters.height = size.height;
    }
    MessageParam OnCommand(WndMessage& record) override
    {
        if (onCommand)
            onCommand(record);
        commands.push_back({LowWord(record.wParam), record.lParam, HighWord(record.wParam)});
        return answer;
    }
    void CollectTabStops(TabStops& wanted) override
    {
        for (MarlinWnd* one : stops)
            one->CollectTabStops(wanted);
    }

    // Creates a child and gives it a place.
    void Hold(MarlinWnd& child, const Rect& bounds)
    {
        child.Create(this);
        child.Move(bounds.left, bounds.top, bounds.Width(), bounds.Height(), 1);
        ServeEvents();
        commands.clear();
    }
    // What came since the last call; posted ones included.
    Commands Take()
    {
        ServeEvents();
        return std::exchange(commands, {});
    }

    Commands commands;
    MessageParam answer = 0;
    std::function<void(WndMessage&)> onCommand;
    TabStops stops;

private:
    Size size;
    Point place;
};

inline Point MiddleOf(const Rect& r)
{
    return {r.left + r.Width() / 2, r.top + r.Height() / 2};
}

inline Point MiddleOf(const MarlinWnd& widget)
{
    return MiddleOf(widget.GetClientArea());
}

// The points of a widget, drawn anew, whose colour is wanted; row by row.
template <typename Wanted>
std::vector<Point> PixelsWhere(MarlinWnd& widget, Wanted wanted)
{
    widget.RepaintNow();
    std::vector<Point> found;
    const Rect area = widget.GetClientArea();
    for (int y = 0; y < area.bottom; ++y) {
        for (int x = 0; x < area.right; ++x) {
            if (wanted(PixelAt(widget.window, {x, y})))
                found.push_back({x, y});
        }
    }
    return found;
}

inline AccessibleDescription DescriptionOf(MarlinWnd& widget)
{
    AccessibleDescription description;
    EXPECT_EQ(widget.Send(kWmDescribe, 0, reinterpret_cast<MessageParam>(&description)), 1);
    return description;
}

// WhenModal, once the keyboard has come to the dialog.
inline void WhenModalHasFocus(std::function<void(WindowHandle)> act)
{
    WhenModal([act = std::move(act)](WindowHandle dialog) {
        const auto inside = [dialog] {
            for (WindowHandle one = FocusedWindow(); one; one = ParentOf(one)) {
                if (one == dialog)
                    return true;
            }
            return false;
        };
        EXPECT_TRUE(ServeUntil(inside, std::chrono::seconds(2)));
        act(dialog);
    });
}

}  // namespace jotlet
