#include "toolkit/picker_dialog.h"

#include <algorithm>

#include "platform/desktop/system_metrics.h"
#include "skin/animations.h"
#include "skin/sound.h"

namespace jotlet {
namespace {

constexpr int kButtonHeight = 20;
constexpr int kButtonGap = 3;  // below the buttons, and between them
constexpr int kMargin = 5;

}  // namespace

void PickerDialog::SetPosition(int left, int top)
{
    x = left;
    y = top;
}

MessageParam PickerDialog::OnInitDialog(WndMessage&)
{
    Place();
    if (zoom == 1) {
        const Rect whole = WindowRect(window);
        PlaySoundFile("open.wav");
        PlayOpenZoom(whole.left, whole.top, whole.right, whole.bottom);
    }
    PlaceButtons();
    CreatePicker();
    return 0;  // the focus is where CreatePicker put it
}

void PickerDialog::Place()
{
    if (x == 0 || y == 0) {
        CentreOverParent();
        return;
    }
    const Rect whole = WindowRect(window);
    const Rect desktop = DesktopRect({x, y});
    const int left = std::min(x, std::max(desktop.right - whole.Width(), desktop.left));
    const int top = std::min(y, std::max(desktop.bottom - whole.Height(), desktop.top));
    MoveTo(window, Rect::At(left, top, whole.Width(), whole.Height()), false);
}

void PickerDialog::PlaceButtons()
{
    const Rect client = GetClientArea();
    const int width = (client.Width() - 2 * kMargin - kButtonGap) / 2;
    const int top = client.bottom - kButtonGap - kButtonHeight;
    MoveItem(window, kIdOk, Rect::At(kMargin, top, width, kButtonHeight));
    MoveItem(window, kIdCancel, Rect::At(client.right - kMargin - width, top, width, kButtonHeight));
}

MessageParam PickerDialog::OnCommand(WndMessage& record)
{
    const int command = LowWord(record.wParam);
    if (command != kIdOk && command != kIdCancel)
        return 0;
    if (command == kIdOk)
        Accept();
    PlaySoundFile("close.wav");
    EndDialog(command == kIdOk ? 1 : 0);
    return 1;
}

}  // namespace jotlet
