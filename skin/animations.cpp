#include "skin/animations.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <vector>

#include "platform/base/clock.h"
#include "platform/desktop/screen_overlay.h"
#include "skin/sound.h"

namespace jotlet {
namespace {

constexpr int kOpenZoomStep = 20;
constexpr int kOpenZoomFrameMs = 5;
constexpr int kPaneChangeAcceleration = 10;
constexpr int kPaneChangeFrameMs = 30;
constexpr int kDialogZoomStep = 30;
constexpr int kDialogZoomFrameMs = 20;

std::array<ScreenLine, 4> Outline(const Rect& r)
{
    const Point topLeft{r.left, r.top};
    const Point topRight{r.right, r.top};
    const Point bottomRight{r.right, r.bottom};
    const Point bottomLeft{r.left, r.bottom};
    return {{{topLeft, topRight}, {topRight, bottomRight}, {bottomRight, bottomLeft}, {bottomLeft, topLeft}}};
}

}  // namespace

void PlayOpenZoom(int left, int top, int right, int bottom)
{
    if (!IsAnimationEnabled())
        return;
    ScreenOverlay overlay;
    if (!overlay.Available())
        return;
    for (int y = top; y < bottom; y += kOpenZoomStep) {
        overlay.Show(Outline({left, top, right, y}));
        WaitMs(kOpenZoomFrameMs);
    }
    overlay.Clear();
}

void PlayPaneChange(const Rect& sweep, const Rect& target)
{
    if (!IsAnimationEnabled())
        return;
    PlaySoundFile("chpane.wav");
    ScreenOverlay overlay;
    if (!overlay.Available())
        return;
    int step = 0;
    for (int y = sweep.top; y < sweep.bottom; y += step) {
        step += kPaneChangeAcceleration;
        const Point leftEnd{sweep.left, y};
        const Point rightEnd{sweep.right, y};
        const std::array<ScreenLine, 3> lines = {{
            {leftEnd, rightEnd},
            {leftEnd, {target.left, target.top}},
            {rightEnd, {target.right, target.top}},
        }};
        overlay.Show(lines);
        WaitMs(kPaneChangeFrameMs);
    }
    overlay.Clear();
}

void PlayDialogZoom(const Rect& from, const Rect& to)
{
    const Rect end = to.Inset(1, 1);
    ScreenOverlay overlay;
    if (!overlay.Available() || end.Empty())
        return;
    // Every frame stays until all of them vanish together.
    std::vector<ScreenLine> shown;
    Rect frame = from;
    while (true) {
        frame = {std::max(frame.left - kDialogZoomStep, end.left), std::max(frame.top - kDialogZoomStep, end.top),
                 std::min(frame.right + kDialogZoomStep, end.right),
                 std::min(frame.bottom + kDialogZoomStep, end.bottom)};
        const auto outline = Outline(frame);
        shown.insert(shown.end(), outline.begin(), outline.end());
        overlay.Show(shown);
        if (frame == end)
            break;
        WaitMs(kDialogZoomFrameMs);
    }
    overlay.Clear();
}

}  // namespace jotlet
