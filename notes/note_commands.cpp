// What the user does to notes, step by step. The order of the steps is what keeps several copies on one file apart.

#include "net/core/outbox.h"
#include "notes/bin_slot.h"
#include "notes/find_dialog.h"
#include "notes/model/note_record.h"
#include "notes/note_command_ids.h"
#include "notes/note_editor_dialog.h"
#include "notes/notes_pane.h"
#include "platform/base/text.h"
#include "platform/desktop/message_box.h"
#include "skin/sound.h"
#include "skin/window_helpers.h"
#include "store/refresh_switch.h"
#include "toolkit/date_dialog.h"
#include "toolkit/main_window.h"

namespace jotlet {
namespace {

// A record that begins a life of its own: live, unlocked, no group event.
void MakeOrdinary(NoteRecord& note)
{
    note.active = 1;
    note.locked = 0;
    note.eventState = kEventNone;
    note.reserved547 = 0;
    note.eventStatus = kEventNotAnnounced;
}

bool IdIsLive(TableFile& file, std::uint64_t id)
{
    RecordQuery query;
    query.PrepareResults();
    query.AddInt64Term(kUniqueIdOffset, TermKind::Equal, id, Connective::And);
    return file.RunQuery(query) == 1 && query.resultCount > 0;
}

std::string SaveProblem(TableFile& file, int result)
{
    if (result == kRefusedByRole)
        return std::string(LoadStringResource(kNoPermissionString));
    return "The note could not be written to\r\n\"" + file.Path() +
           "\".\r\nCheck that the disk isn't full and the file can be reached, then try again. Nothing that you typed "
           "is "
           "lost.";
}

}  // namespace

// The selected note, locked for this copy and read under the lock. Gives the lock back at its end.
struct NotesPane::Held {
    Held(TableFile& heldFile, RecordAddress heldAddress) : file(&heldFile), address(heldAddress) {}
    Held(Held&& other) noexcept : file(std::exchange(other.file, nullptr)), address(other.address), note(other.note) {}
    Held& operator=(Held&&) = delete;
    ~Held() { GiveBack(); }
    void GiveBack()
    {
        if (file)
            std::exchange(file, nullptr)->UnlockRecord(address);
    }

    TableFile* file;
    RecordAddress address;
    NoteRecord note{};
};

bool NotesPane::RefuseReader()
{
    if (file && MayChange(file->GetRole()))
        return false;
    ShowMessage(MainWindow(), kNoPermissionString);
    return true;
}

std::optional<RecordAddress> NotesPane::SelectedAddress() const
{
    const int selected = list->GetSelected();
    if (!file || !query || selected < 0 || selected >= query->resultCount)
        return std::nullopt;
    return query->Results()[static_cast<std::size_t>(selected)];
}

// Nothing when no note is selected, somebody else holds it, or it is hidden from this user now.
std::optional<NotesPane::Held> NotesPane::HoldSelected(WhenLocked whenLocked)
{
    const auto address = SelectedAddress();
    if (!address)
        return std::nullopt;
    if (file->LockRecord(*address) != 1) {
        if (whenLocked == WhenLocked::Tell)
            ShowMessage(MainWindow(), kBeingEditedString);
        return std::nullopt;
    }
    Held held(*file, *address);
    if (file->ReadRecord(BytesOf(held.note), *address) != 1 ||
        (held.note.confidential != 0 && !SeesConfidential(file->GetRole()))) {
        held.GiveBack();
        list->RefreshNow();
        return std::nullopt;
    }
    return held;
}

// True when it worked; says so when not.
bool NotesPane::TellSaved(int result)
{
    if (result == 1)
        return true;
    ShowTextMessage(MainWindow(), SaveProblem(*file, result));
    return false;
}

DateValue NotesPane::DateForNewNote() const
{
    if (OnDateTab())
        return paneDate;
    DateValue today;
    Today(today);
    return today;
}

void NotesPane::NewNote()
{
    if (RefuseReader())
        return;
    NoteRecord note;
    NoteEditorDialog editor(file, note, DateForNewNote(), kEditNew);
    editor.SetSave([&]() -> std::string {
        const int added = file->AddRecord(BytesOf(note));
        if (added != 1)
            return SaveProblem(*file, added);
        file->Flush();
        return {};
    });
    if (editor.DoModal(this, kNoteEditorDialogId) == 1) {
        PlaySoundFile("add.wav");
        list->RefreshAndSelect(BytesOf(note));
    }
    FocusList();
}

void NotesPane::EditNote()
{
    if (RefuseReader())
        return;
    auto held = HoldSelected(WhenLocked::Tell);
    if (!held) {
        FocusList();
        return;
    }
    NoteRecord& note = held->note;
    if (note.eventState == kEventWithdrawn) {
        held->GiveBack();
        Beep();
        FocusList();
        return;
    }
    bool asked = false;
    NoteEditorDialog editor(file, note, paneDate, kEditExisting);
    editor.SetSave([&]() -> std::string {
        if (IsGroupEvent(note) && !std::exchange(asked, true) && AskYesNo(MainWindow(), kAskNotifyString))
            NotifyEvent(file->Path(), note, kNotifyChange);
        const int written = file->WriteRecord(BytesOf(note), held->address);
        return written == 1 ? std::string() : SaveProblem(*file, written);
    });
    const bool saved = editor.DoModal(this, kNoteEditorDialogId) == 1;
    if (saved)
        PlaySoundFile("add.wav");
    held->GiveBack();
    if (saved)
        file->Flush();
    list->RefreshAndSelect(BytesOf(note));
    FocusList();
}

// A group event whose participants are told stays in the file, frozen, unless nobody had heard of it.
bool NotesPane::RemoveNote(Held& held)
{
    NoteRecord& note = held.note;
    if (IsGroupEvent(note)) {
        if (AskYesNo(MainWindow(), kAskNotifyString)) {
            NotifyEvent(file->Path(), note, kNotifyWithdrawal);
            if (note.active != 0)
                return TellSaved(file->WriteRecord(BytesOf(note), held.address));
        } else {
            PurgeEvent(file->Path(), note.uniqueId);
        }
    }
    return TellSaved(file->DeleteRecord(held.address));
}

void NotesPane::DeleteNote()
{
    if (RefuseReader())
        return;
    // The question is asked with the lock held, so that nobody edits what is about to go.
    if (auto held = HoldSelected(WhenLocked::Tell); held && AskYesNo(MainWindow(), kAskDeleteNoteString)) {
        const NoteRecord before = held->note;
        if (RemoveNote(*held)) {
            held->GiveBack();
            file->Flush();
            bin->Remember(before);
            PlaySoundFile("bindel.wav");
            list->RefreshNow();
        }
    }
    FocusList();
}

int NotesPane::DropOnBin()
{
    int removed = 0;
    if (RefuseReader())
        return removed;
    if (!SelectedAddress())
        Beep();
    else if (auto held = HoldSelected(WhenLocked::Tell)) {
        const NoteRecord before = held->note;
        if (RemoveNote(*held)) {
            held->GiveBack();
            file->Flush();
            bin->Remember(before);
            list->RefreshNow();
            removed = 1;
        }
    }
    FocusList();
    return removed;
}

void NotesPane::CutNote()
{
    if (RefuseReader())
        return;
    if (auto held = HoldSelected(WhenLocked::Stay)) {
        if (IsGroupEvent(held->note)) {
            held->GiveBack();
            Beep();
        } else if (TellSaved(file->DeleteRecord(held->address))) {
            bin->Remember(held->note);
            PlaySoundFile("delete.wav");
            held->GiveBack();
            file->Flush();
            list->RefreshNow();
            NoteClipboard().Store(BytesOf(held->note), kCommandCut);
        }
    }
    FocusList();
}

void NotesPane::CopyNote()
{
    if (RefuseReader())
        return;
    if (auto held = HoldSelected(WhenLocked::Stay)) {
        PlaySoundFile("copy.wav");
        held->GiveBack();
        NoteClipboard().Store(BytesOf(held->note), kCommandCopy);
    }
    FocusList();
}

void NotesPane::PasteNote()
{
    NoteRecord note;
    if (!file || NoteClipboard().Fetch(BytesOf(note)) != 1)
        return;
    note.date = DateForNewNote();
    note.uniqueId = RandomId();
    MakeOrdinary(note);
    const int added = file->AddRecord(BytesOf(note));
    if (added != 1 && added != kRefusedByRole)
        TellSaved(added);
    file->Flush();
    PlaySoundFile("add.wav");
    list->RefreshNow();
    FocusList();
}

void NotesPane::UndoDelete()
{
    NoteRecord note;
    if (file && bin->Restore(note) == 1) {
        MakeOrdinary(note);
        // The same note may have come back by another way meanwhile; two live notes never share an id.
        if (IdIsLive(*file, note.uniqueId))
            note.uniqueId = RandomId();
        const int added = file->AddRecord(BytesOf(note));
        // A failed write keeps the note in the bin; only who may not write loses it.
        if (added == 1 || added == kRefusedByRole) {
            file->Flush();
            bin->Empty();
        } else {
            TellSaved(added);
        }
        list->RefreshNow();
    }
    FocusList();
}

void NotesPane::OpenAttachment()
{
    if (RefuseReader())
        return;
    NoteRecord note;
    const auto address = SelectedAddress();
    if (address && file->ReadRecord(BytesOf(note), *address) == 1 && HasAttachment(note))
        OpenDocument(FieldText(note.attachmentPath));
}

void NotesPane::DropOnDay(const DateValue& day)
{
    if (!SelectedAddress()) {
        Beep();
        FocusList();
        return;
    }
    if (RefuseReader())
        return;
    if (auto held = HoldSelected(WhenLocked::Tell)) {
        held->note.date = day;
        if (TellSaved(file->WriteRecord(BytesOf(held->note), held->address))) {
            PlaySoundFile("move.wav");
            held->GiveBack();
            ChooseDay(day);
            list->SelectRecord(held->note.uniqueId);
        }
    }
    FocusList();
}

void NotesPane::DropCopyOnDay(const DateValue& day)
{
    if (!SelectedAddress()) {
        Beep();
        FocusList();
        return;
    }
    if (RefuseReader())
        return;
    if (auto held = HoldSelected(WhenLocked::Tell)) {
        NoteRecord copy = held->note;
        copy.date = day;
        copy.uniqueId = RandomId();
        MakeOrdinary(copy);
        bool stored = false;
        {
            const RefreshPause pause;
            stored = TellSaved(file->AddRecord(BytesOf(copy)));
        }
        if (stored) {
            PlaySoundFile("add.wav");
            held->GiveBack();
            ChooseDay(day);
            list->SelectRecord(copy.uniqueId);
        }
    }
    FocusList();
}

// The keyboard's way to another day.
void NotesPane::OnMoveToDay(bool copy)
{
    const auto address = SelectedAddress();
    DateValue day;
    if (!address || file->ReadField(BytesOf(day), {kDateOffset, kDateSize}, *address) != 1)
        return;
    DateDialog dialog(day.day, day.month, day.year, &day);
    if (dialog.DoModal(this, kDateDialogId) != 1)
        FocusList();
    else if (copy)
        DropCopyOnDay(day);
    else
        DropOnDay(day);
}

void NotesPane::FindNotes()
{
    if (!file)
        return;
    FindDialog dialog(file, categoryFilter);
    if (dialog.DoModal(this, kFindDialogId) == 1) {
        if (OnDateTab())
            ChooseDay(dialog.found.date);
        list->SelectRecord(dialog.found.uniqueId);
    }
    FocusList();
}

}  // namespace jotlet
