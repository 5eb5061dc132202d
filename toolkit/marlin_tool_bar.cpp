#include "toolkit/marlin_tool_bar.h"

#include "resources/string_table.h"
#include "skin/drawing.h"
#include "skin/fonts.h"
#include "toolkit/marlin_pane.h"
#include "toolkit/pane_list.h"

namespace jotlet {
namespace {

constexpr int kItemWidth = 50;
constexpr int kItemHeight = 19;
constexpr int kFirstItemX = 15;
constexpr int kIconDrop = 3;
constexpr int kTextIndent = 22;
constexpr int kHotWiden = 2;
constexpr int kHotDarker = 10;
constexpr Colour kPressedFrame = 0xFFFFFF;
constexpr Colour kHotFrame = 0;

constexpr int kHoverTimer = 100;
constexpr Milliseconds kHoverPeriod{300};

// The bar's two pictures, decoded once.
struct BarPictures {
    Bitmap bar = LoadResourceBitmap("tbar1.bmp");
    Bitmap corner = LoadResourceBitmap("tbar1_corner.bmp");
};

const BarPictures& Pictures()
{
    static const BarPictures pictures;
    return pictures;
}

PaneColours CurrentColours()
{
    const MarlinPane* pane = GetCurrentPane();
    return pane ? pane->colours : PaneColours{};
}

}  // namespace

Rect ToolBarItemRect(Size client, int index)
{
    return Rect::At(kFirstItemX + index * kItemWidth, client.height / 2 - kItemHeight / 2, kItemWidth, kItemHeight);
}

int MarlinToolBar::AddItem(int command, int icon, int text, int sendIt)
{
    if (items.size() >= kMaxItems)
        return 0;
    items.push_back({command, icon, text, sendIt == 1});
    return 1;
}

int MarlinToolBar::GetItemRect(int command, Rect& rectangle) const
{
    for (int i = 0; i < static_cast<int>(items.size()); ++i) {
        if (items[static_cast<std::size_t>(i)].command == command) {
            rectangle = RectOf(i);
            return i;
        }
    }
    return kNoItem;
}

void MarlinToolBar::PrepareClass(WindowClass& windowClass)
{
    windowClass.name = "MarlinToolBar";
    windowClass.background = Background::Grey;
}

void MarlinToolBar::PrepareCreate(CreateParameters& parameters)
{
    parameters.style = kStyleDefault;
}

MessageParam MarlinToolBar::OnClose(WndMessage&)
{
    StopHover();
    return 0;
}

Rect MarlinToolBar::RectOf(int index) const
{
    const Rect client = GetClientArea();
    return ToolBarItemRect({client.Width(), client.Height()}, index);
}

int MarlinToolBar::ItemAt(Point client) const
{
    for (int i = 0; i < static_cast<int>(items.size()); ++i) {
        if (RectOf(i).Contains(client))
            return i;
    }
    return kNoItem;
}

void MarlinToolBar::SetHot(int item, HotState state)
{
    hotItem = item;
    hotState = state;
    Invalidate(nullptr, 0);
}

void MarlinToolBar::StopHover()
{
    if (hoverTimer)
        StopTimer(window, kHoverTimer);
    hoverTimer = false;
}

// A window's surface reaches the screen in one piece, so drawing straight onto it never flickers.
void MarlinToolBar::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    dc.StretchBitmap(Pictures().bar, GetClientArea());
    dc.DrawBitmap(Pictures().corner, 0, 0);
    for (int i = 0; i < static_cast<int>(items.size()); ++i)
        DrawItem(dc, i);
}

void MarlinToolBar::DrawItem(DeviceContext& dc, int index) const
{
    const Item& item = items[static_cast<std::size_t>(index)];
    const PaneColours colours = CurrentColours();
    const Rect area = RectOf(index);
    if (index == hotItem && hotState != HotState::Plain) {
        const Rect hot = area.Inset(-kHotWiden, 0, 0, 0);
        const Colour frame = hotState == HotState::Pressed ? kPressedFrame : kHotFrame;
        const int right = hot.right - 1;
        dc.FillRect(hot, Darken(colours.barColour, kHotDarker));
        dc.DrawLine(hot.left, hot.top, right, hot.top, frame);
        dc.DrawLine(right, hot.top, right, hot.bottom, frame);
        dc.DrawLine(hot.left, hot.bottom, right, hot.bottom, frame);
        dc.DrawLine(hot.left, hot.top, hot.left, hot.bottom, frame);
    }
    dc.DrawIcon(item.icon, area.left, area.top + kIconDrop);
    dc.DrawText(area.Inset(kTextIndent, 0, 0, 0), LoadStringResource(item.text), SmallFont(400), colours.barTextColour,
                kTextLeft | kTextVCentre | kTextSingleLine);
    if (focused && index == focusItem)
        dc.DrawFocusRect(area.Inset(0, 1, 1, 1), colours.barTextColour);
}

MessageParam MarlinToolBar::OnLButtonDown(WndMessage& record)
{
    const int item = ItemAt(MousePoint(record));
    if (item == kNoItem)
        return 0;
    pressed = true;
    SetHot(item, HotState::Pressed);
    CaptureMouse(window);
    return 0;
}

MessageParam MarlinToolBar::OnMouseMove(WndMessage& record)
{
    const int item = ItemAt(MousePoint(record));
    if (pressed) {
        SetHot(hotItem, item == hotItem ? HotState::Pressed : HotState::UnderMouse);
        return 0;
    }
    if (!hoverTimer) {
        StartTimer(window, kHoverTimer, kHoverPeriod);
        hoverTimer = true;
    }
    if (item != hotItem)
        SetHot(item, item == kNoItem ? HotState::Plain : HotState::UnderMouse);
    return 0;
}

MessageParam MarlinToolBar::OnLButtonUp(WndMessage& record)
{
    if (!pressed)
        return 0;
    // A menu opened by the command takes the mouse for itself.
    ReleaseMouse();
    if (ItemAt(MousePoint(record)) == hotItem)
        Deliver(items[static_cast<std::size_t>(hotItem)]);
    pressed = false;
    SetHot(kNoItem, HotState::Plain);
    return 0;
}

void MarlinToolBar::OnCaptureLost()
{
    pressed = false;
    SetHot(kNoItem, HotState::Plain);
}

void MarlinToolBar::Deliver(const Item& item)
{
    if (item.sendIt)
        SendCommand(item.command, 0);
    else
        RequestCommand(item.command, 0);
}

// A window hears no move after the mouse has left it; this is what ends the hot look.
MessageParam MarlinToolBar::OnTimer(WndMessage&)
{
    if (pressed || WindowRect(window).Contains(CursorPosition()))
        return 0;
    StopHover();
    SetHot(kNoItem, HotState::Plain);
    return 0;
}

MessageParam MarlinToolBar::OnKeyDown(WndMessage& record)
{
    const int count = static_cast<int>(items.size());
    if (count == 0)
        return MarlinWnd::OnKeyDown(record);
    switch (record.wParam) {
        case kKeyLeft:
            focusItem = (focusItem + count - 1) % count;
            break;
        case kKeyRight:
            focusItem = (focusItem + 1) % count;
            break;
        case kKeyHome:
            focusItem = 0;
            break;
        case kKeyEnd:
            focusItem = count - 1;
            break;
        case kKeySpace:
        case kKeyReturn:
        case kKeyDown:
            Deliver(items[static_cast<std::size_t>(focusItem)]);
            return 0;
        default:
            return MarlinWnd::OnKeyDown(record);
    }
    Invalidate(nullptr, 0);
    AccessibleChanged(window);
    return 0;
}

void MarlinToolBar::OnFocusChanged(bool nowFocused)
{
    focused = nowFocused;
    Invalidate(nullptr, 0);
}

void MarlinToolBar::Describe(AccessibleDescription& description)
{
    description.role = AccessibleRole::ToolBar;
    description.name = "Commands";
    for (int i = 0; i < static_cast<int>(items.size()); ++i) {
        description.parts.push_back({.role = AccessibleRole::Button,
                                     .name = std::string(LoadStringResource(items[static_cast<std::size_t>(i)].text)),
                                     .bounds = RectOf(i),
                                     .focused = focused && i == focusItem});
    }
}

}  // namespace jotlet
