#include "net/internet_events_dialog.h"

#include <algorithm>
#include <charconv>

#include "net/core/e_book.h"
#include "net/core/identity.h"
#include "net/e_book_dialog.h"
#include "net/e_book_picker.h"
#include "platform/base/text.h"
#include "platform/desktop/message_box.h"
#include "platform/desktop/system_metrics.h"
#include "resources/dialog_ids.h"
#include "skin/fonts.h"
#include "store/refresh_switch.h"
#include "store/table_file.h"

namespace jotlet {
namespace {

using namespace internet_events_ids;

constexpr int kSubjectLimit = 30;

constexpr int kRowHeight = 15;
constexpr int kNameLeft = 2;
constexpr int kNameRight = 153;
constexpr int kStatusLeft = 155;
constexpr Colour kRowText = 0xFF0000;
constexpr Colour kSelectedRow = 0xDBDBDB;

std::string_view Part(std::string_view item, int index)
{
    for (; index > 0; --index) {
        const std::size_t end = item.find('\n');
        if (end == std::string_view::npos)
            return {};
        item.remove_prefix(end + 1);
    }
    return item.substr(0, item.find('\n'));
}

// A text from a file as it may stand in a row: the parts of a row are told apart by line ends.
std::string RowPart(std::string_view stored)
{
    std::string text = DecodeForDisplay(stored);
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return c < ' '; }, ' ');
    return text;
}

}  // namespace

std::string ParticipantItem(std::string_view email, std::string_view name, int status)
{
    return RowPart(email) + "\n" + RowPart(name) + "\n" + std::to_string(status);
}

std::string ItemEmail(std::string_view item)
{
    return std::string(Part(item, 0));
}

std::string ItemName(std::string_view item)
{
    return std::string(Part(item, 1));
}

int ItemStatus(std::string_view item)
{
    const std::string_view text = Part(item, 2);
    int status = 0;
    std::from_chars(text.data(), text.data() + text.size(), status);
    return status;
}

void SetItemStatus(std::string& item, int status)
{
    item = ParticipantItem(Part(item, 0), Part(item, 1), status);
}

InternetEventsDialog::InternetEventsDialog(TableFile& file, NoteRecord& note, Outbox& outbox)
    : file(file), note(note), outbox(outbox)
{
}

MessageParam InternetEventsDialog::OnInitDialog(WndMessage&)
{
    LimitItemText(window, kSubjectEdit, kSubjectLimit);
    SetItemText(kSubjectEdit, FieldText(note.subject));
    FillList();
    if (RowCount(window, kParticipantList) > 0)
        Enable(kSubjectEdit, false);
    Enable(kIdOk, false);
    Enable(kRemoveButton, false);
    ShowOwner();
    CentreOverParent();
    FocusItem(window, kSubjectEdit);
    return 0;
}

void InternetEventsDialog::FillList()
{
    if (note.eventState == kEventNone)
        return;
    for (const auto& participant : outbox.Slots()) {
        if (participant.active == 1)
            AddItemUnique(ParticipantItem(FieldText(participant.participantEmail),
                                          FieldText(participant.participantName), participant.sendStatus));
    }
}

void InternetEventsDialog::ShowOwner()
{
    owner = IsEventOwner(file, note) == 1;
    const std::string name(FieldText(note.owner.name));
    const std::string email(FieldText(note.owner.email));
    ShowItem(window, kOwnerLine, owner);
    ShowItem(window, kOwnerBlock, !owner);
    ShowItem(window, kListHeading, owner);
    ShowItem(window, kParticipantList, owner);
    if (owner) {
        SetItemFont(window, kOwnerLine, "Small Fonts", -9, 400);
        SetItemText(kOwnerLine, "Owner: " + name);
        return;
    }
    Enable(kInviteButton, false);
    Enable(kRemoveButton, false);
    SetItemFont(window, kOwnerBlock, "Arial", 20, 700);
    SetItemText(kOwnerBlock, "Owner:\n\r" + name + "\n\r" + email);
}

MessageParam InternetEventsDialog::OnCommand(WndMessage& record)
{
    switch (LowWord(record.wParam)) {
        case kIdOk:
            // Bytes of another encoding stay as they are unless the subject was edited.
            if (const std::string subject = GetItemText(kSubjectEdit);
                subject != DecodeForDisplay(FieldText(note.subject)))
                StoreText(note.subject, subject);
            EndDialog(1);
            return 1;
        case kInviteButton:
            Invite();
            return 1;
        case kRemoveButton:
            RemoveSelected();
            return 1;
        case kEBookButton: {
            // The book's own locks turn the list refresh on again, but a note is held here.
            const RefreshPause pause;
            ShowEBook(this);
            return 1;
        }
        case kParticipantList:
            if (HighWord(record.wParam) == kListSelectionChanged && HasSubject() && owner)
                Enable(kRemoveButton, true);
            return 1;
        case kSubjectEdit:
            OnSubjectChanged();
            return 1;
        default:
            return MarlinDialog::OnCommand(record);
    }
}

bool InternetEventsDialog::HasSubject() const
{
    return !GetItemText(kSubjectEdit).empty();
}

void InternetEventsDialog::OnSubjectChanged()
{
    Enable(kIdOk, RowCount(window, kParticipantList) > 0 && HasSubject() && owner);
}

void InternetEventsDialog::Invite()
{
    EBookRecord contact{};
    {
        const RefreshPause pause;
        EBookPicker picker(contact);
        if (!BookTable()) {
            TellBookNotOpened(this);
            return;
        }
        const Rect button = ItemRect(window, kInviteButton);
        const Point corner = ClientToScreen(window, {button.left, button.bottom});
        picker.SetPosition(corner.x, corner.y);
        picker.SetAnimated(1);
        if (picker.DoModal(this, e_book_picker_ids::kDialog) != 1)
            return;
    }
    const std::string_view email = FieldText(contact.bookEmail);
    const std::string_view name = FieldText(contact.bookName);
    IdentityBlock self{};
    GetFileUser(file, self);
    const std::string item = ParticipantItem(email, name, kSendWaiting);
    // Nobody invites himself, somebody twice, a thirty-first, or somebody whom no mail can reach.
    if (email.empty() || email == FieldText(self.email) || IsListed(item) ||
        outbox.Add(MakeInvitation(name, email)) != 1) {
        Beep();
        return;
    }
    AddItemUnique(item);
    if (HasSubject() && owner)
        Enable(kIdOk, true);
}

// The e-mail of a row that stands anywhere in the new row's text counts as the same; an empty one stands nowhere.
bool InternetEventsDialog::IsListed(const std::string& item) const
{
    for (int i = 0; i < RowCount(window, kParticipantList); ++i) {
        const std::string email = ItemEmail(RowText(window, kParticipantList, i));
        if (!email.empty() && item.find(email) != std::string::npos)
            return true;
    }
    return false;
}

int InternetEventsDialog::AddItemUnique(const std::string& item)
{
    if (IsListed(item))
        return 0;
    AddRow(window, kParticipantList, item);
    return 1;
}

int InternetEventsDialog::RemoveSelectedItem(std::string& item)
{
    const int row = SelectedRow(window, kParticipantList);
    if (row < 0)
        return 0;
    item = RowText(window, kParticipantList, row);
    RemoveRow(window, kParticipantList, row);
    if (!VanishesWhenRemoved(static_cast<std::uint8_t>(ItemStatus(item)), note.eventStatus)) {
        std::string cancelled = item;
        SetItemStatus(cancelled, kSendCancelled);
        AddRow(window, kParticipantList, cancelled);
    }
    return 1;
}

void InternetEventsDialog::RemoveSelected()
{
    std::string item;
    if (RemoveSelectedItem(item) == 0) {
        Beep();
        return;
    }
    const bool vanishes = VanishesWhenRemoved(static_cast<std::uint8_t>(ItemStatus(item)), note.eventStatus);
    const auto slots = outbox.Slots();
    const auto shown = std::find_if(slots.begin(), slots.end(), [&](const auto& slot) {
        return slot.active == 1 && RowPart(FieldText(slot.participantEmail)) == ItemEmail(item);
    });
    if (shown != slots.end())
        outbox.Remove(MakeInvitation("", FieldText(shown->participantEmail)), RemoveKey::Email,
                      vanishes ? RemoveAction::Drop : RemoveAction::Cancel);
    if (owner)
        Enable(kIdOk, true);
}

MessageParam InternetEventsDialog::OnMeasureItem(WndMessage& record)
{
    reinterpret_cast<MeasureItemInfo*>(record.lParam)->height = kRowHeight;
    return 1;
}

MessageParam InternetEventsDialog::OnDrawItem(WndMessage& record)
{
    const auto& item = *reinterpret_cast<const DrawItemInfo*>(record.lParam);
    if (!item.dc || item.index < 0)
        return 1;
    const Rect& r = item.area;
    item.dc->FillRect(r, item.selected ? kSelectedRow : SystemColour(kSysColourWindow));
    constexpr std::uint32_t kFlags = kTextSingleLine | kTextVCentre | kTextNoPrefix | kTextEndEllipsis;
    item.dc->DrawText({r.left + kNameLeft, r.top, kNameRight, r.bottom}, ItemName(item.text), SansFont(400), kRowText,
                      kFlags);
    std::string word;
    StatusWord(ItemStatus(item.text), word);
    item.dc->DrawText({kStatusLeft, r.top, r.right, r.bottom}, word, SansFont(400), kRowText, kFlags);
    return 1;
}

}  // namespace jotlet
