#include "toolkit/marlin_slide_bar.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "skin/drawing.h"
#include "toolkit/list_geometry.h"

namespace jotlet {
namespace {

constexpr int kTrackLightness = 40;
constexpr int kHeldDarkness = 40;
constexpr int kGripDistance = 2;

Colour Given(Colour wanted, Colour otherwise)
{
    return wanted != kNoColour ? wanted : otherwise;
}

}  // namespace

void MarlinSlideBar::PrepareClass(WindowClass& windowClass)
{
    windowClass.name = "MarlinSlideBar";
    windowClass.background = Background::White;
}

int MarlinSlideBar::SetPosition(int newPosition)
{
    if (!IsValidRow(newPosition, range))
        return 0;
    position = newPosition;
    Invalidate(nullptr, 0);
    AccessibleChanged(window);
    return 1;
}

void MarlinSlideBar::SetRange(double newRange)
{
    range = newRange;
    position = ClampRow(position, range);
    Invalidate(nullptr, 0);
}

void MarlinSlideBar::SetColours(Colour track, Colour thumb, Colour grip, Colour edge)
{
    trackColour = track;
    thumbColour = thumb;
    gripColour = grip;
    edgeColour = edge;
    Invalidate(nullptr, 0);
}

Rect MarlinSlideBar::ThumbRect() const
{
    const Rect client = GetClientArea();
    const double unit = range - 1 > 0 ? client.Height() / (range - 1) : 0;
    int y = dragY;
    if (y == -1) {
        y = std::max(static_cast<int>(unit * position), 0);
        if (y + kThumbHeight >= client.Height())
            y = client.Height() - kThumbHeight;
    }
    return Rect::At(0, y, client.Width(), kThumbHeight);
}

void MarlinSlideBar::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    const Rect client = GetClientArea();
    const bool coloured = thumbColour != kNoColour;
    const Colour edge = Given(edgeColour, 0);
    const Colour sides = coloured ? edge : 0;
    dc.FillRect(client, coloured ? trackColour : Lighten(colour, kTrackLightness));
    dc.DrawLine(0, 0, 0, client.bottom - 1, sides);
    dc.DrawLine(client.right - 1, 0, client.right - 1, client.bottom - 1, sides);

    const Rect thumb = ThumbRect();
    const Colour face = Given(thumbColour, colour);
    dc.FillRect(thumb.Inset(0, 0, 0, -1), dragging ? Darken(face, kHeldDarkness) : face);
    const int middle = thumb.top + thumb.Height() / 2;
    const int gripLeft = thumb.Width() / 4;
    for (const int y : {middle - kGripDistance, middle, middle + kGripDistance})
        dc.DrawLine(gripLeft, y, thumb.right - gripLeft - 1, y, Given(gripColour, 0));
    DrawRect(dc, {0, thumb.top - 1, client.right - 1, thumb.bottom + 1}, edge);
}

MessageParam MarlinSlideBar::OnLButtonDown(WndMessage& record)
{
    if (!(range > 1))
        return 0;
    const Point p = MousePoint(record);
    const bool onThumb = ThumbRect().Inset(0, 0, 0, -1).Contains(p);
    dragging = true;
    CaptureMouse(window);
    Invalidate(nullptr, 0);
    if (!onThumb)
        Follow(p.y);
    return 0;
}

MessageParam MarlinSlideBar::OnMouseMove(WndMessage& record)
{
    if (dragging)
        Follow(MousePoint(record).y);
    return 0;
}

MessageParam MarlinSlideBar::OnLButtonUp(WndMessage& record)
{
    if (!dragging)
        return 0;
    Follow(MousePoint(record).y);
    OnCaptureLost();
    ReleaseMouse();
    return 0;
}

void MarlinSlideBar::OnCaptureLost()
{
    dragY = -1;
    dragging = false;
    Invalidate(nullptr, 0);
}

void MarlinSlideBar::Describe(AccessibleDescription& description)
{
    description.role = AccessibleRole::Slider;
    const double rows = std::ceil(range);
    description.name = "Row " + std::to_string(position + 1) + " of " + std::to_string(std::lround(rows));
    description.value = {position + 1.0, 1, std::max(rows, 1.0)};
}

void MarlinSlideBar::OnSetValue(double value)
{
    const auto wanted = static_cast<int>(std::clamp(value, 1.0, std::max(std::ceil(range), 1.0))) - 1;
    if (wanted == position)
        return;
    position = wanted;
    PostCommand(id, position);
    Invalidate(nullptr, 0);
    AccessibleChanged(window);
}

void MarlinSlideBar::Follow(int y)
{
    const int height = GetClientArea().Height();
    y = std::max(y, 0);
    if (y >= height - kThumbHeight)
        y = height;
    dragY = std::min(y, height - kThumbHeight);
    if (range > 1 && height > 0) {
        const double unit = height / (range - 1);
        const int wanted = static_cast<int>(y == height ? range - 1 : y / unit);
        if (wanted != position) {
            position = wanted;
            PostCommand(id, position);
        }
    }
    Invalidate(nullptr, 0);
}

}  // namespace jotlet
