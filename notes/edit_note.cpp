#include "notes/edit_note.h"

#include <utility>

#include "net/core/outbox.h"
#include "notes/note_editor_dialog.h"
#include "notes/tell_outcome.h"
#include "resources/dialog_ids.h"
#include "resources/string_ids.h"
#include "skin/sound.h"
#include "skin/window_helpers.h"

namespace jotlet {

EditorSave::EditorSave(const TableFile& file, NoteRecord& note, std::function<NoteResult()> save)
    : file(file), note(note), save(std::move(save))
{
}

std::string EditorSave::operator()()
{
    const NoteResult result = lost ? SaveInNewFile(file, note) : save();
    lost = lost || result.outcome == Outcome::Replaced;
    const std::string problem = OutcomeText(file, result);
    return result.outcome != Outcome::Replaced
               ? problem
               : problem + " Your text is still here: OK puts it into the file that has this name now.";
}

bool EditHeldNote(MarlinWnd& parent, HeldNote& held, const DateValue& date)
{
    TableFile& file = held.File();
    bool asked = false;
    bool missed = false;
    NoteEditorDialog editor(&file, held.note, date, kEditExisting);
    editor.SetSave(EditorSave(file, held.note, [&] {
        const bool tell = IsGroupEvent(held.note) && !asked && AskYesNo(editor.window, kStringAskNotify);
        asked = true;
        const NoteResult saved = SaveEdited(held, tell ? Participants::Tell : Participants::LeaveAlone);
        missed = missed || saved.missedParticipants;
        return saved;
    }));
    const bool saved = editor.DoModal(&parent, note_editor_ids::kDialog) == 1;
    held.GiveBack();
    if (saved)
        PlaySoundFile("add.wav");
    if (missed)
        TellMissedParticipants(parent.window, file);
    return saved;
}

}  // namespace jotlet
