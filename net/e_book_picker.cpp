#include "net/e_book_picker.h"

#include "platform/base/clock.h"
#include "skin/animations.h"
#include "skin/sound.h"
#include "store/record_query.h"
#include "store/table_file.h"

namespace jotlet {
namespace {

constexpr int kBottomMargin = 4;
// Long enough to see which row was taken.
constexpr int kShowPickMs = 200;

}  // namespace

EBookPicker::EBookPicker(EBookRecord& picked) : picked(picked)
{
    OpenEBook();
}

EBookPicker::~EBookPicker()
{
    list.SetSource(nullptr, nullptr);
    CloseEBook();
}

MessageParam EBookPicker::OnInitDialog(WndMessage&)
{
    const Rect now = WindowRect(window);
    if (position.x != 0 && position.y != 0)
        MoveTo(window, Rect::At(position.x, position.y, now.Width(), now.Height()));
    else
        CentreOverParent();
    if (animated) {
        PlaySoundFile("open.wav");
        const Rect whole = WindowRect(window);
        PlayOpenZoom(whole.left, whole.top, whole.right, whole.bottom);
    }
    list.CreateIn(*this, kBottomMargin);
    FocusWindow(list.Grid().window);
    return 0;
}

MessageParam EBookPicker::OnCommand(WndMessage& record)
{
    switch (LowWord(record.wParam)) {
        case ContactList::kId:
            if (HighWord(record.wParam) == kListItemPressed)
                Pick(static_cast<int>(record.lParam));
            return 1;
        case kIdOk:
            Pick(list.GetSelected());
            return 1;
        case kIdCancel:
            PlaySoundFile("close.wav");
            EndDialog(0);
            return 1;
        default:
            return 0;
    }
}

void EBookPicker::Pick(int index)
{
    if (!BookQuery() || index < 0 || index >= BookQuery()->resultCount)
        return;
    const RecordAddress address = BookQuery()->Results()[static_cast<std::size_t>(index)];
    if (BookTable()->ReadRecord(BytesOf(picked), address) != 1)
        return;
    WaitMs(kShowPickMs);
    PlaySoundFile("close.wav");
    EndDialog(1);
}

}  // namespace jotlet
