#include "toolkit/marlin_pane_bar.h"

#include "platform/desktop/system_metrics.h"
#include "resources/command_ids.h"
#include "skin/drawing.h"
#include "skin/skin_bitmaps.h"
#include "toolkit/marlin_pane.h"
#include "toolkit/pane_list.h"

namespace jotlet {
namespace {

constexpr int kButtonWidth = 72;
constexpr int kButtonHeight = 16;
constexpr int kFirstButtonX = 4;
constexpr int kButtonStep = 75;
constexpr int kNameDrop = 3;
constexpr Colour kNameColour = 0xFFFFFF;

struct BarPictures {
    Bitmap down = LoadResourceBitmap("section_button_down.bmp");
    Bitmap up = LoadResourceBitmap("section_button_up.bmp");
};

const BarPictures& Pictures()
{
    static const BarPictures pictures;
    return pictures;
}

}  // namespace

Rect PaneButtonRect(Size client, int index)
{
    return Rect::At(kFirstButtonX + kButtonStep * index, client.height / 2 - kButtonHeight / 2, kButtonWidth,
                    kButtonHeight);
}

void MarlinPaneBar::PrepareClass(WindowClass& windowClass)
{
    windowClass.name = "MarlinPaneBar";
    windowClass.background = Background::None;
}

void MarlinPaneBar::PrepareCreate(CreateParameters& parameters)
{
    parameters.style = kStyleDefault;
}

Rect MarlinPaneBar::RectOf(int index) const
{
    const Rect client = GetClientArea();
    return PaneButtonRect({client.Width(), client.Height()}, index);
}

std::optional<int> MarlinPaneBar::ButtonAt(Point client) const
{
    for (int i = 0; i < GetPaneCount(); ++i) {
        if (RectOf(i).Contains(client))
            return i;
    }
    return std::nullopt;
}

void MarlinPaneBar::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    const SkinTable& skin = LoadSkin();
    const Rect client = GetClientArea();
    if (skin.bmpSubTitle)
        dc.StretchBitmap(skin.bmpSubTitle, client.Inset(-(kCxFrame + kCxBorder), 0));
    else
        dc.FillRect(client, skin.colorBack);
    for (int i = 0; i < GetPaneCount(); ++i)
        DrawButton(dc, i);
}

void MarlinPaneBar::DrawButton(DeviceContext& dc, int index)
{
    if (!font)
        font = std::make_unique<Font>(FontDescription{.face = "Verdana", .height = -9, .weight = 700});
    const Rect area = RectOf(index);
    const bool current = index == GetCurrentPaneIndex();
    dc.DrawBitmap(current ? Pictures().down : Pictures().up, area.left, area.top);
    dc.DrawText(area.Inset(0, kNameDrop, 0, 0), GetPanes()[static_cast<std::size_t>(index)]->name, *font, kNameColour,
                kTextCentre | kTextSingleLine);
    if (focused && current)
        dc.DrawFocusRect(area.Inset(2, 1, 2, 0), kNameColour);
}

// The button goes down at once, while the frame plays its animation; the frame alone makes the pane current.
void MarlinPaneBar::Choose(int index)
{
    const int current = GetCurrentPaneIndex();
    if (index == current || !SetCurrentPaneIndex(index))
        return;
    RepaintNow();
    SetCurrentPaneIndex(current);
    SendCommand(kCommandShowPane, index);
    AccessibleChanged(window);
}

MessageParam MarlinPaneBar::OnLButtonDown(WndMessage& record)
{
    if (const auto index = ButtonAt(MousePoint(record)))
        Choose(*index);
    return 0;
}

MessageParam MarlinPaneBar::OnRButtonDown(WndMessage&)
{
    return SendTo(GetParentHandle(), kWmRButtonDown, kMouseRight, 0);
}

MessageParam MarlinPaneBar::OnKeyDown(WndMessage& record)
{
    switch (record.wParam) {
        case kKeyLeft:
            Choose(GetCurrentPaneIndex() - 1);
            break;
        case kKeyRight:
            Choose(GetCurrentPaneIndex() + 1);
            break;
        default:
            return MarlinWnd::OnKeyDown(record);
    }
    FocusWindow(window);  // the pane took it; a second press goes on from here
    return 0;
}

void MarlinPaneBar::OnFocusChanged(bool nowFocused)
{
    focused = nowFocused;
    Invalidate(nullptr, 0);
}

void MarlinPaneBar::Describe(AccessibleDescription& description)
{
    description.role = AccessibleRole::TabList;
    description.name = "Panes";
    for (int i = 0; i < GetPaneCount(); ++i) {
        const bool current = i == GetCurrentPaneIndex();
        description.parts.push_back({.role = AccessibleRole::Tab,
                                     .name = GetPanes()[static_cast<std::size_t>(i)]->name,
                                     .bounds = RectOf(i),
                                     .selected = current,
                                     .focused = focused && current});
    }
}

}  // namespace jotlet
