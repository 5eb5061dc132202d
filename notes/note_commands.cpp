// What the user does to notes, step by step. The order of the steps is what keeps several copies on one file apart.

#include "net/core/outbox.h"
#include "notes/bin_slot.h"
#include "notes/find_dialog.h"
#include "notes/model/note_record.h"
#include "notes/note_command_ids.h"
#include "notes/note_editor_dialog.h"
#include "notes/notes_pane.h"
#include "notes/record_hold.h"
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
    note.eventStatus = kStatusNotAnnounced;
}

bool IdIsLive(TableFile& file, std::uint64_t id)
{
    RecordQuery query;
    query.PrepareResults();
    query.AddInt64Term(kUniqueIdOffset, TermKind::Equal, id, Connective::And);
    return file.RunQuery(query) == 1 && query.resultCount > 0;
}

}  // namespace

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

// Nothing when no note is selected or somebody else holds it.
std::unique_ptr<RecordHold> NotesPane::LockSelected(WhenLocked whenLocked)
{
    const auto address = SelectedAddress();
    if (!address)
        return nullptr;
    auto held = std::make_unique<RecordHold>(*file, *address);
    if (held->Taken())
        return held;
    if (whenLocked == WhenLocked::Tell)
        ShowMessage(MainWindow(), kBeingEditedString);
    return nullptr;
}

// False, and the note given back, when it is hidden from this user now.
bool NotesPane::ReadHeld(RecordHold& held, WhenHidden whenHidden)
{
    if (held.Read() || (whenHidden == WhenHidden::Take && held.note.active != 0))
        return true;
    held.GiveBack();
    list->RefreshNow();
    return false;
}

std::unique_ptr<RecordHold> NotesPane::HoldSelected(WhenLocked whenLocked, WhenHidden whenHidden)
{
    auto held = LockSelected(whenLocked);
    return held && ReadHeld(*held, whenHidden) ? std::move(held) : nullptr;
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
    // The note moves to the day last chosen, whatever tab is showing.
    if (EditHeldNote(*this, *held, paneDate))
        file->Flush();
    list->RefreshAndSelect(BytesOf(note));
    FocusList();
}

// A group event whose participants are told stays in the file, frozen, unless nobody had heard of it.
bool NotesPane::RemoveNote(RecordHold& held)
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
    if (auto held = LockSelected(WhenLocked::Tell);
        held && AskYesNo(MainWindow(), kAskDeleteNoteString) && ReadHeld(*held, WhenHidden::GiveBack)) {
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

// A drop shows nobody the note, so a hidden one may be moved too.
std::unique_ptr<RecordHold> NotesPane::HoldForDrop()
{
    if (!SelectedAddress()) {
        Beep();
        return nullptr;
    }
    return RefuseReader() ? nullptr : HoldSelected(WhenLocked::Tell, WhenHidden::Take);
}

void NotesPane::DropOnDay(const DateValue& day)
{
    if (auto held = HoldForDrop()) {
        held->note.date = day;
        if (TellSaved(file->WriteRecord(BytesOf(held->note), held->address))) {
            PlaySoundFile("move.wav");
            held->GiveBack();
            file->Flush();
            ChooseDay(day);
            list->SelectRecord(held->note.uniqueId);
        }
    }
    FocusList();
}

void NotesPane::DropCopyOnDay(const DateValue& day)
{
    if (auto held = HoldForDrop()) {
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
            file->Flush();
            ChooseDay(day);
            list->SelectRecord(copy.uniqueId);
        }
    }
    FocusList();
}

// The keyboard's way to another day.
void NotesPane::OnMoveToDay(bool copy)
{
    if (RefuseReader())
        return;
    const auto address = SelectedAddress();
    DateValue day;
    if (!address || file->ReadField(BytesOf(day), {kDateOffset, kDateSize}, *address) != 1) {
        Beep();
        return;
    }
    DateDialog dialog(day.day, day.month, day.year, &day);
    if (dialog.DoModal(this, DateDialog::kTemplate) != 1)
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
