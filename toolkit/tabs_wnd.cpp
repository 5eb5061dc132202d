#include "toolkit/tabs_wnd.h"

#include "platform/base/text.h"
#include "skin/drawing.h"
#include "skin/fonts.h"
#include "skin/sound.h"

namespace jotlet {
namespace {

constexpr int kLeftMargin = 5;
constexpr int kUnselectedDrop = 3;  // an unselected tab's top is this much lower
constexpr int kFootHeight = 3;      // the band under all tabs, in the selected one's colour
constexpr int kFootLineDarker = 40;
constexpr std::size_t kMaxNameBytes = 255;

}  // namespace

Rect TabRect(Size client, int tabWidth, int index)
{
    return Rect::At(kLeftMargin + index * tabWidth, 0, tabWidth, client.height);
}

TTabsWnd::TTabsWnd(int controlId, Colour back, int width) : id(controlId), backColour(back), tabWidth(width) {}

int TTabsWnd::AddTab(int value, std::string_view name, Colour back, Colour text)
{
    if (GetTabCount() >= kMaxTabs)
        return 0;
    tabs.push_back({value, std::string(CutText(name, kMaxNameBytes)), back, text});
    return 1;
}

int TTabsWnd::GetTabValue(int index) const
{
    return index >= 0 && index < GetTabCount() ? tabs[static_cast<std::size_t>(index)].value : -1;
}

void TTabsWnd::Notify(int controlId, int value)
{
    PostCommand(controlId, value);
}

void TTabsWnd::PrepareClass(WindowClass& windowClass)
{
    windowClass.name = "TTabsWnd";
    windowClass.background = Background::White;
    windowClass.cursor = CursorId::None;
}

Rect TTabsWnd::RectOf(int index) const
{
    const Rect client = GetClientArea();
    return TabRect({client.Width(), client.Height()}, tabWidth, index);
}

std::optional<int> TTabsWnd::TabAt(Point client) const
{
    for (int i = 0; i < GetTabCount(); ++i) {
        if (RectOf(i).Contains(client))
            return i;
    }
    return std::nullopt;
}

void TTabsWnd::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    const Rect client = GetClientArea();
    dc.FillRect(client, backColour);
    for (int i = 0; i < GetTabCount(); ++i)
        DrawTab(dc, i);
    if (tabs.empty())
        return;
    const Colour foot = tabs[static_cast<std::size_t>(selected)].backColour;
    const int footTop = client.bottom - kFootHeight;
    dc.FillRect({client.left, footTop, client.right, client.bottom}, foot);
    dc.DrawLine(RectOf(selected).right - 1, footTop, client.right, footTop, Darken(foot, kFootLineDarker));
}

void TTabsWnd::DrawTab(DeviceContext& dc, int index) const
{
    const Tab& tab = tabs[static_cast<std::size_t>(index)];
    Rect area = RectOf(index);
    if (index != selected)
        area.top += kUnselectedDrop;
    dc.FillRect(area, tab.backColour);
    area.bottom -= kFootHeight;
    dc.DrawText(area, tab.name, SmallFont(700), tab.textColour, kTextCentre | kTextVCentre | kTextSingleLine);
    if (focused && index == selected)
        dc.DrawFocusRect(area.Inset(2, 1), tab.textColour);
}

void TTabsWnd::Choose(int index)
{
    if (index == selected || index < 0 || index >= GetTabCount())
        return;
    selected = index;
    RepaintNow();
    Notify(id, tabs[static_cast<std::size_t>(index)].value);
    PlaySoundFile("select.wav");
    AccessibleChanged(window);
}

MessageParam TTabsWnd::OnLButtonDown(WndMessage& record)
{
    if (const auto index = TabAt(MousePoint(record)))
        Choose(*index);
    return 0;
}

MessageParam TTabsWnd::OnMouseMove(WndMessage& record)
{
    cursor = TabAt(MousePoint(record)) ? CursorId::Hand : CursorId::Arrow;
    SetCursorNow(cursor);
    return 0;
}

MessageParam TTabsWnd::OnSetCursor(WndMessage&)
{
    SetCursorNow(cursor);
    return 1;
}

MessageParam TTabsWnd::OnKeyDown(WndMessage& record)
{
    switch (record.wParam) {
        case kKeyLeft:
            Choose(selected - 1);
            return 0;
        case kKeyRight:
            Choose(selected + 1);
            return 0;
        case kKeyHome:
            Choose(0);
            return 0;
        case kKeyEnd:
            Choose(GetTabCount() - 1);
            return 0;
        default:
            return MarlinWnd::OnKeyDown(record);
    }
}

void TTabsWnd::OnFocusChanged(bool nowFocused)
{
    focused = nowFocused;
    Invalidate(nullptr, 0);
}

void TTabsWnd::Describe(AccessibleDescription& description)
{
    description.role = AccessibleRole::TabList;
    for (int i = 0; i < GetTabCount(); ++i) {
        description.parts.push_back({.role = AccessibleRole::Tab,
                                     .name = tabs[static_cast<std::size_t>(i)].name,
                                     .bounds = RectOf(i),
                                     .selected = i == selected,
                                     .focused = focused && i == selected});
    }
}

}  // namespace jotlet
