#include "notes/record_hold.h"

#include <utility>

#include "net/core/outbox.h"
#include "notes/note_command_ids.h"
#include "notes/note_editor_dialog.h"
#include "resources/string_table.h"
#include "skin/sound.h"
#include "skin/window_helpers.h"

namespace jotlet {

RecordHold::RecordHold(TableFile& file, RecordAddress address)
    : file(file), address(address), held(file.LockRecord(address) == 1)
{
}

RecordHold::~RecordHold()
{
    GiveBack();
}

bool RecordHold::Read()
{
    return file.ReadRecord(BytesOf(note), address) == 1 && (note.confidential == 0 || SeesConfidential(file.GetRole()));
}

void RecordHold::GiveBack()
{
    if (std::exchange(held, false))
        file.UnlockRecord(address);
}

std::string SaveProblem(const TableFile& file, int result)
{
    if (result == kRefusedByRole)
        return std::string(LoadStringResource(kNoPermissionString));
    return "The note could not be written to\r\n\"" + file.Path() +
           "\".\r\nCheck that the disk isn't full and the file can be reached, then try again. Nothing that you typed "
           "is lost.";
}

bool EditHeldNote(MarlinWnd& parent, RecordHold& hold, const DateValue& date)
{
    bool asked = false;
    NoteEditorDialog editor(&hold.file, hold.note, date, kEditExisting);
    editor.SetSave([&]() -> std::string {
        if (IsGroupEvent(hold.note) && !std::exchange(asked, true) && AskYesNo(editor.window, kAskNotifyString))
            NotifyEvent(hold.file.Path(), hold.note, kNotifyChange);
        const int written = hold.file.WriteRecord(BytesOf(hold.note), hold.address);
        return written == 1 ? std::string() : SaveProblem(hold.file, written);
    });
    const bool saved = editor.DoModal(&parent, kNoteEditorDialogId) == 1;
    if (saved)
        PlaySoundFile("add.wav");
    hold.GiveBack();
    return saved;
}

}  // namespace jotlet
