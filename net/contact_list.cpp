#include "net/contact_list.h"

#include "net/core/e_book.h"
#include "platform/base/text.h"
#include "skin/fonts.h"
#include "store/record_query.h"
#include "store/table_file.h"

namespace jotlet {
namespace {

constexpr int kRowHeight = 24;
constexpr Colour kWhite = 0xFFFFFF;
constexpr Colour kBlack = 0x000000;
constexpr Colour kScrollColour = 0xDCDCDC;
constexpr int kEmailDrop = 10;
constexpr int kHeading = 18;
constexpr int kLeft = 4;

}  // namespace

ContactList::ContactList()
    : RecordListView(kId, kRowHeight, 1, kWhite, kWhite, kScrollBarLeft, kScrollColour, kScrollColour)
{
}

void ContactList::CreateIn(MarlinWnd& dialog, int bottomMargin)
{
    Create(&dialog, kStyleDefault | kStyleTabStop);
    const Rect client = dialog.GetClientArea();
    Move(kLeft, kHeading, client.Width() - 2 * kLeft, client.Height() - kHeading - bottomMargin, 1);
    SetSource(BookTable(), BookQuery());
    SetCount(BookQuery() ? BookQuery()->resultCount : 0);
}

void ContactList::ShowChange(std::uint64_t uniqueId)
{
    RefreshNow();
    SelectRecord(uniqueId);
}

void ContactList::DrawRecordItem(DeviceContext& dc, Colour background, int index, int state, const Rect& cell)
{
    if (state == kListEmpty)
        return;
    if (state == kItemSelected)
        DrawSelectionFrame(dc, cell, background);
    const Rect inside = cell.Inset(5, 1);
    EBookRecord contact;
    if (!ReadItem(index, BytesOf(contact))) {
        dc.DrawText(inside, "locked...", SmallFont(400), kBlack, kTextSingleLine | kTextVCentre);
        return;
    }
    constexpr std::uint32_t kFlags = kTextSingleLine | kTextNoPrefix | kTextEndEllipsis;
    dc.DrawText(inside, FieldText(contact.bookName), SmallFont(700), kBlack, kFlags);
    dc.DrawText(inside.Inset(0, kEmailDrop, 0, 0), FieldText(contact.bookEmail), SmallFont(400), kBlack, kFlags);
}

std::string ContactList::ItemName(int index)
{
    EBookRecord contact;
    if (!ReadItem(index, BytesOf(contact)))
        return "locked...";
    return DecodeForDisplay(FieldText(contact.bookName)) + ", " + DecodeForDisplay(FieldText(contact.bookEmail));
}

}  // namespace jotlet
