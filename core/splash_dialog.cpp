#include "core/splash_dialog.h"

#include "skin/drawing.h"
#include "skin/window_helpers.h"

namespace jotlet {
namespace {

constexpr int kTimer = 100;
constexpr Milliseconds kShown{800};

}  // namespace

MessageParam SplashDialog::OnInitDialog(WndMessage&)
{
    picture = LoadResourceBitmap("splash.bmp");
    StartTimer(window, kTimer, kShown);
    const Rect now = WindowRect(window);
    Move(now.left, now.top, kSize.width, kSize.height, 0);
    CentreOver(0, window);
    return 1;
}

void SplashDialog::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    dc.DrawBitmap(picture, 0, 0);
}

MessageParam SplashDialog::OnTimer(WndMessage&)
{
    StopTimer(window, kTimer);
    EndDialog(1);
    return 0;
}

MessageParam SplashDialog::OnLButtonDown(WndMessage& record)
{
    return OnTimer(record);
}

}  // namespace jotlet
