#include "toolkit/compact_progress_dialog.h"

#include <algorithm>

#include "platform/desktop/system_metrics.h"
#include "resources/dialog_ids.h"
#include "skin/drawing.h"
#include "skin/window_helpers.h"

namespace jotlet {
namespace {

using namespace progress_dialog_ids;

constexpr Colour kBarColour = 0;

}  // namespace

CompactProgressDialog::~CompactProgressDialog() = default;

void CompactProgressDialog::Open(const std::string& title, int steps)
{
    if (IsWindow(window))
        Close();
    stepCount = steps;
    stepsDone = 0;
    shownEnd = 0;
    if (!CreateModeless(frame, progress_dialog_ids::kDialog))
        return;
    CentreOverParent();
    SetItemText(kText, title);
    Show();
    Update();
    if (frame)
        frame->Update();
    FlushToScreen();
}

void CompactProgressDialog::Step()
{
    ++stepsDone;
    const int end = BarEnd();
    if (!IsWindow(window) || end == shownEnd)
        return;
    shownEnd = end;
    DrawOutsidePaint(window, [this](DeviceContext& dc) { DrawBar(dc); });
    FlushToScreen();
}

void CompactProgressDialog::Close()
{
    if (!IsWindow(window))
        return;
    if (frame)
        FocusWindow(frame->window);
    MarlinDialog::Close();
}

void CompactProgressDialog::ShowText(const std::string& text)
{
    ShowTextMessage(frame ? frame->window : 0, text);
}

int CompactProgressDialog::BarEnd() const
{
    const Rect bar = ItemRect(window, kBar);
    // A single step has nothing to be measured by: it fills the bar.
    const double done = stepCount > 1 ? static_cast<double>(stepsDone) / (stepCount - 1) : stepsDone > 0 ? 1 : 0;
    return bar.left + std::min(static_cast<int>(bar.Width() * done), bar.Width());
}

void CompactProgressDialog::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    // It has no frame of its own.
    const Rect client = GetClientArea();
    dc.FillRect(client, SystemColour(kSysColourButtonFace));
    dc.FrameRect(client, SystemColour(kSysColourButtonShadow));
    // The template's static keeps the bar's place; it is hidden, and the bar drawn here.
    const Rect bar = ItemRect(window, kBar);
    DrawSunkenBevel(dc, {bar.left - 1, bar.top - 1, bar.right, bar.bottom}, SystemColour(kSysColourButtonShadow),
                    SystemColour(kSysColourButtonHighlight));
    DrawBar(dc);
}

void CompactProgressDialog::DrawBar(DeviceContext& dc) const
{
    Rect bar = ItemRect(window, kBar);
    bar.right = BarEnd();
    if (!bar.Empty())
        dc.FillRect(bar, kBarColour);
}

}  // namespace jotlet
