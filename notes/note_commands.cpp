// What the user asks to be done to notes: the questions, the sounds, and what the board shows afterwards. How it is
// done stands in notes/commands/.

#include "notes/commands/note_commands.h"
#include "net/core/outbox.h"
#include "notes/bin_slot.h"
#include "notes/edit_note.h"
#include "notes/find_dialog.h"
#include "notes/note_editor_dialog.h"
#include "notes/notes_pane.h"
#include "notes/open_target.h"
#include "notes/tell_outcome.h"
#include "platform/base/text.h"
#include "platform/desktop/message_box.h"
#include "resources/command_ids.h"
#include "resources/dialog_ids.h"
#include "resources/string_ids.h"
#include "skin/sound.h"
#include "skin/window_helpers.h"
#include "toolkit/date_dialog.h"
#include "toolkit/main_window.h"

namespace jotlet {
bool NotesPane::RefuseReader()
{
    if (MayChangeNotes(file))
        return false;
    ShowMessage(MainWindow(), kStringNoPermission);
    return true;
}

std::optional<ChosenRecord> NotesPane::Chosen() const
{
    return file ? list->GetChosen() : std::nullopt;
}

// The chosen note as it is now, without its lock; false when it is gone.
bool NotesPane::ReadChosen(NoteRecord& note) const
{
    const auto chosen = Chosen();
    return chosen && file->ReadRecord(BytesOf(note), chosen->address) == 1 && note.uniqueId == chosen->id;
}

// True for Done. What can't be shown any more leaves the board, what a failing disk made of it is seen, and the program
// hears of a file that was replaced.
bool NotesPane::Tell(const NoteResult& result)
{
    const bool done = TellOutcome(MainWindow(), file, result);
    if (result.outcome == Outcome::Withdrawn || result.outcome == Outcome::GroupEvent)
        Beep();
    else if (!done && result.outcome != Outcome::NoPermission && result.outcome != Outcome::NothingChosen &&
             result.outcome != Outcome::Locked)
        list->RefreshNow();
    return done;
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
    editor.SetSave(EditorSave(*file, note, [&] { return AddNote(*file, note); }));
    if (editor.DoModal(this, note_editor_ids::kDialog) == 1) {
        PlaySoundFile("add.wav");
        list->RefreshAndSelect(BytesOf(note));
    }
    FocusList();
}

void NotesPane::EditNote()
{
    HeldNote held;
    if (Tell(TakeForEdit(held, file, Chosen()))) {
        // The note moves to the day last chosen, whatever tab is showing.
        EditHeldNote(*this, held, paneDate);
        list->RefreshAndSelect(BytesOf(held.note));
    }
    FocusList();
}

// The last steps of every way to delete. True when the note is gone from the board's file.
bool NotesPane::RemoveAndKeep(HeldNote& held)
{
    const NoteRecord before = held.note;
    const bool tell = IsGroupEvent(before) && AskYesNo(MainWindow(), kStringAskNotify);
    const NoteResult removed = RemoveHeld(held, tell ? Participants::Tell : Participants::LeaveAlone);
    if (!Tell(removed) && removed.outcome != Outcome::Unconfirmed)
        return false;
    bin->Remember(before);
    return true;
}

void NotesPane::DeleteNote()
{
    HeldNote held;
    // The question is asked with the lock held, so that nobody edits what is about to go.
    if (Tell(held.Lock(file, Chosen())) && AskYesNo(MainWindow(), kStringAskDeleteNote) && Tell(held.Read()) &&
        RemoveAndKeep(held)) {
        PlaySoundFile("bindel.wav");
        list->RefreshNow();
    }
    held.GiveBack();
    FocusList();
}

int NotesPane::DropOnBin()
{
    HeldNote held;
    const NoteResult taken = held.Take(file, Chosen());
    if (taken.outcome == Outcome::NothingChosen)
        Beep();
    const bool removed = Tell(taken) && RemoveAndKeep(held);
    if (removed)
        list->RefreshNow();
    FocusList();
    return removed ? 1 : 0;
}

// Cut and Copy pass over a note that somebody else holds without a word.
void NotesPane::CutNote()
{
    NoteRecord note;
    const NoteResult cut = jotlet::CutNote(file, Chosen(), note);
    if (cut.outcome != Outcome::Locked && (Tell(cut) || cut.outcome == Outcome::Unconfirmed)) {
        bin->Remember(note);
        PlaySoundFile("delete.wav");
        list->RefreshNow();
        NoteClipboard().Store(BytesOf(note), kCommandCut);
    }
    FocusList();
}

void NotesPane::CopyNote()
{
    NoteRecord note;
    const NoteResult copied = jotlet::CopyNote(file, Chosen(), note);
    if (copied.outcome != Outcome::Locked && Tell(copied)) {
        PlaySoundFile("copy.wav");
        NoteClipboard().Store(BytesOf(note), kCommandCopy);
    }
    FocusList();
}

// Who may not add a note hears no refusal here and at undo: the sound and the reload follow all the same.
void NotesPane::PasteNote()
{
    NoteRecord note;
    if (!file || NoteClipboard().Fetch(BytesOf(note)) != 1)
        return;
    const NoteResult pasted = jotlet::PasteNote(*file, note, DateForNewNote());
    if (pasted.outcome == Outcome::NoPermission || Tell(pasted)) {
        PlaySoundFile("add.wav");
        list->RefreshNow();
    }
    FocusList();
}

void NotesPane::UndoDelete()
{
    NoteRecord note;
    if (file && bin->Restore(note) == 1) {
        const NoteResult restored = RestoreNote(*file, note);
        // A failed write keeps the note in the bin; only who may not write loses it.
        if (restored.outcome == Outcome::NoPermission || Tell(restored)) {
            bin->Empty();
            list->RefreshNow();
        }
    }
    FocusList();
}

void NotesPane::InternetEvents()
{
    if (!editGroupEvent)
        return;
    HeldNote held;
    const NoteResult taken = TakeForEdit(held, file, Chosen());
    if (taken.outcome == Outcome::NothingChosen)
        Beep();
    if (Tell(taken))
        Tell(editGroupEvent(*this, held));
    held.GiveBack();
    if (taken || taken.outcome == Outcome::Hidden || taken.outcome == Outcome::Withdrawn) {
        list->RefreshAndSelect(BytesOf(held.note));
        FocusList();
    }
}

void NotesPane::OpenAttachment()
{
    if (RefuseReader())
        return;
    NoteRecord note;
    if (ReadChosen(note) && HasAttachment(note))
        OpenTarget(window, FieldText(note.attachmentPath),
                   note.attachmentKind == kAttachmentDocument ? TargetKind::Document : TargetKind::Url);
}

void NotesPane::DropOnDay(const DateValue& day)
{
    FinishDrop(day, MoveNoteToDay, "move.wav");
}

void NotesPane::DropCopyOnDay(const DateValue& day)
{
    FinishDrop(day, CopyNoteToDay, "add.wav");
}

void NotesPane::FinishDrop(const DateValue& day, DropCommand command, const char* sound)
{
    NoteRecord note;
    const auto chosen = Chosen();
    if (!chosen) {
        Beep();
    } else if (Tell(command(file, chosen, day, note))) {
        PlaySoundFile(sound);
        ChooseDay(day);
        list->SelectRecord(note.uniqueId);
    }
    FocusList();
}

// The keyboard's way to another day.
void NotesPane::OnMoveToDay(bool copy)
{
    if (RefuseReader())
        return;
    NoteRecord note;
    if (!ReadChosen(note)) {
        Beep();
        return;
    }
    DateValue day = note.date;
    DateDialog dialog(day.day, day.month, day.year, &day);
    if (dialog.DoModal(this, date_picker_ids::kDialog) != 1)
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
    if (dialog.DoModal(this, find_dialog_ids::kDialog) == 1) {
        if (OnDateTab())
            ChooseDay(dialog.found.date);
        list->SelectRecord(dialog.found.uniqueId);
    }
    FocusList();
}

}  // namespace jotlet
