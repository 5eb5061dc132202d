#include "core/frame_geometry.h"

#include <algorithm>
#include <cstdlib>

namespace jotlet {
namespace {

constexpr int kSide = kCxFrame + kCxBorder;
constexpr int kFoot = kCyFrame + kCyBorder;

constexpr int kButtonSize = 15;
constexpr int kButtonStep = 18;
constexpr int kButtonRise = 8;
constexpr int kCaptionExtra = 2;
constexpr int kCornerCut = 3;
constexpr int kGripReach = 15;
constexpr int kGripPicture = 11;

constexpr int kOuterBand = 10;
constexpr int kInnerBand = 10;
constexpr int kInnerSideBand = 12;

constexpr int kRounding = 2;

// Four bands inside `area`, along its edges: top, bottom, left, right.
std::array<Rect, 4> Bands(const Rect& area, int height, int width)
{
    return {Rect{area.left, area.top, area.right, area.top + height},
            Rect{area.left, area.bottom - height, area.right, area.bottom},
            Rect{area.left, area.top, area.left + width, area.bottom},
            Rect{area.right - width, area.top, area.right, area.bottom}};
}

int ButtonOffset(CaptionButton button)
{
    switch (button) {
        case CaptionButton::Close:
            return kButtonStep;
        case CaptionButton::Maximise:
            return 2 * kButtonStep;
        case CaptionButton::Minimise:
            return 3 * kButtonStep;
    }
    return 0;
}

}  // namespace

Rect FrameTitleRect(Size window)
{
    return {kSide - 1, kCyFrame, window.width - (kSide - 1), kCyFrame + kCySize};
}

Rect FrameTitleArea(Size window)
{
    return {0, 0, window.width, FrameTitleRect(window).bottom + 1};
}

Rect FrameCaptionHit(Size window)
{
    return FrameTitleRect(window).Inset(0, 0, -kCaptionExtra, -kCaptionExtra);
}

Rect CaptionButtonRect(Size window, CaptionButton button)
{
    const Rect title = FrameTitleRect(window);
    return Rect::At(title.right - ButtonOffset(button), title.top + title.Height() / 2 - kButtonRise, kButtonSize,
                    kButtonSize);
}

FrameStrips LayOutStrips(Size window)
{
    return {.left = {0, 0, kSide, window.height},
            .right = {window.width - kSide, 0, window.width, window.height},
            .bottom = {0, window.height - kFoot, window.width, window.height}};
}

std::array<Point, 6> FrameShape(Size window)
{
    const int w = window.width;
    const int h = window.height;
    return {{{kCornerCut, 0}, {0, kCornerCut}, {0, h}, {w, h}, {w, kCornerCut}, {w - kCornerCut, 0}}};
}

Rect FrameGripHit(Size client)
{
    return {client.width - kGripReach, client.height - kGripReach, client.width + kSide, client.height + kFoot};
}

Point FrameGripPicture(Size client)
{
    return {client.width - kGripPicture, client.height - kGripPicture};
}

Rect PaneBarRect(Size client)
{
    return Rect::At(1, 0, client.width - 2, 25);
}

Rect ToolBarRect(Size client)
{
    return Rect::At(5, 26, client.width - 10, 25);
}

Rect PaneRect(Size client)
{
    return Rect::At(17, 66, client.width - 39, client.height - 95);
}

FrameRings LayOutRings(Size client)
{
    const Rect c{0, 0, client.width, client.height};
    const Rect d = c.Inset(10, 57, 15, 26);
    return {.outer = Bands(c.Inset(5, 48, 5, 13), kOuterBand, kOuterBand),
            .inner = Bands(c.Inset(10, 57, 10, 20), kInnerBand, kInnerSideBand),
            .shadow = {Rect{d.left + 12, d.bottom - 15, d.right - 2, d.bottom + 1},
                       Rect{d.right - 8, d.top + 12, d.right - 2, d.bottom + 1}},
            .header = {d.left + 7, d.top + 9, d.right - 7, d.top + 37}};
}

Point FrameHold(const Rect& window)
{
    return {(window.left + window.right) / 2, window.top + kCyFrame + kCySize / 2};
}

Rect ToggledFrame(const Rect& now, const Rect& desktop)
{
    const bool large = std::abs(now.Width() - kFrameLarge.width) <= kRounding &&
                       std::abs(now.Height() - kFrameLarge.height) <= kRounding;
    if (large)
        return Rect::At(now.left, now.top, kFrameSmall.width, kFrameSmall.height);
    const int left = std::max(desktop.left, std::min(now.left, desktop.right - kFrameLarge.width));
    const int top = std::max(desktop.top, std::min(now.top, desktop.bottom - kFrameLarge.height));
    return Rect::At(left, top, kFrameLarge.width, kFrameLarge.height);
}

}  // namespace jotlet
