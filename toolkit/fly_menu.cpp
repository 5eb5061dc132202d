#include "toolkit/fly_menu.h"

#include <algorithm>

#include "platform/base/text.h"
#include "platform/desktop/menu.h"
#include "resources/string_table.h"
#include "skin/drawing.h"
#include "skin/fonts.h"
#include "toolkit/glyph.h"

namespace jotlet {
namespace {

constexpr int kArrowPicture = 2002;
constexpr int kHotWidth = 10;
constexpr int kArrowLeft = 2;
constexpr int kTextGap = 4;

}  // namespace

TFlyMenu::TFlyMenu(Colour backColour, Colour textColour, Colour thirdColour)
    : backColour(backColour), textColour(textColour), thirdColour(thirdColour)
{
    // Parents hold a pointer to the text for as long as a posted command travels: it never moves.
    shownText.reserve(kMaxText);
}

void TFlyMenu::PrepareClass(WindowClass& windowClass)
{
    windowClass.name = "TFlyMenu";
    windowClass.background = Background::White;
    windowClass.cursor = CursorId::None;
    SetCursorNow(CursorId::Arrow);
}

int TFlyMenu::AddStringEntry(int stringId, int command)
{
    if (entries.size() >= kMaxEntries)
        return 0;
    entries.push_back({stringId, command, {}});
    return 1;
}

int TFlyMenu::AddTextEntry(std::string_view text, int command)
{
    if (entries.size() >= kMaxEntries)
        return 0;
    entries.push_back({-1, command, std::string(CutText(text, kMaxText))});
    return 1;
}

std::string TFlyMenu::EntryText(const FlyMenuEntry& entry)
{
    if (!entry.text.empty() || entry.stringId == -1)
        return entry.text;
    return std::string(CutText(LoadStringResource(entry.stringId), kMaxText));
}

void TFlyMenu::ShowEntry(int command)
{
    for (const FlyMenuEntry& entry : entries) {
        const std::string text = EntryText(entry);
        if (entry.command == command && !text.empty()) {
            shownText.assign(text);
            AccessibleChanged(window);
            return;
        }
    }
}

Rect TFlyMenu::GetHotArea()
{
    Rect area = GetClientArea();
    area.right = std::min(area.right, kHotWidth);
    return area;
}

void TFlyMenu::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    const Rect client = GetClientArea();
    dc.FillRect(client, backColour);
    const int shift = pressed ? 1 : 0;
    int left = client.left;
    if (const Bitmap arrow = Bitmap::FromResource(kArrowPicture)) {
        const Size size = arrow.GetSize();
        const Rect place = Rect::At(left + kArrowLeft, client.top, size.width, client.Height());
        DrawGlyph(dc, place.Moved(shift, shift), kArrowPicture, backColour, 0, textColour);
        left += size.width;
    }
    left += kTextGap + shift;
    dc.DrawText({left, client.top + shift, client.right, client.bottom + shift}, shownText, SmallFont(400), textColour,
                kTextVCentre | kTextSingleLine | kTextNoPrefix);
    DrawFocusMark(dc);
}

void TFlyMenu::DrawFocusMark(DeviceContext& dc)
{
    if (FocusedWindow() == window)
        dc.DrawFocusRect(GetClientArea().Inset(1, 1), textColour);
}

MessageParam TFlyMenu::OnMouseMove(WndMessage& record)
{
    cursor = GetHotArea().Contains(MousePoint(record)) ? CursorId::Hand : CursorId::Arrow;
    SetCursorNow(cursor);
    return 0;
}

MessageParam TFlyMenu::OnSetCursor(WndMessage&)
{
    SetCursorNow(cursor);
    return 1;
}

MessageParam TFlyMenu::OnLButtonDown(WndMessage& record)
{
    if (GetHotArea().Contains(MousePoint(record)))
        OpenMenu();
    return 0;
}

void TFlyMenu::OpenMenu()
{
    std::vector<MenuEntry> rows;
    rows.reserve(entries.size());
    for (const FlyMenuEntry& entry : entries) {
        std::string text = EntryText(entry);
        const bool shown = !text.empty() && text == shownText;
        // In a menu an ampersand marks a key; here it is a letter of somebody's text.
        for (std::size_t at = text.find('&'); at != std::string::npos; at = text.find('&', at + 2))
            text.insert(at, 1, '&');
        rows.push_back({std::move(text), entry.command, false, shown});
    }
    pressed = true;
    RepaintNow();
    const WindowHandle self = window;
    TrackPopupMenu(window, rows, ClientToScreen(window, {0, GetClientArea().bottom}));
    if (!IsWindow(self))
        return;
    pressed = false;
    RepaintNow();
    cursor = CursorId::Arrow;
    SetCursorNow(cursor);
}

MessageParam TFlyMenu::OnCommand(WndMessage& record)
{
    const int command = LowWord(record.wParam);
    for (const FlyMenuEntry& entry : entries) {
        const std::string text = EntryText(entry);
        if (entry.command != command || text.empty())
            continue;
        shownText.assign(text);
        Invalidate(nullptr, 0);
        AccessibleChanged(window);
        PostCommand(command, reinterpret_cast<MessageParam>(shownText.c_str()));
        break;
    }
    return 0;
}

MessageParam TFlyMenu::OnKeyDown(WndMessage& record)
{
    switch (record.wParam) {
        case kKeySpace:
        case kKeyReturn:
        case kKeyDown:
        case kKeyMenu:
            OpenMenu();
            return 0;
        default:
            return DefaultHandler(record);
    }
}

void TFlyMenu::OnFocusChanged(bool)
{
    Invalidate(nullptr, 0);
}

void TFlyMenu::CollectTabStops(TabStops& stops)
{
    stops.push_back(this);
}

void TFlyMenu::Describe(AccessibleDescription& description)
{
    description.role = AccessibleRole::Button;
    description.name = shownText;
    description.press = GetHotArea();
}

}  // namespace jotlet
