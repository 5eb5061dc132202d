#include "net/internet_events_dialog.h"
#include "notes/note_command_ids.h"
#include "notes/notes_pane.h"
#include "notes/record_hold.h"
#include "platform/desktop/message_box.h"
#include "skin/window_helpers.h"
#include "toolkit/main_window.h"

namespace jotlet {
namespace {

constexpr int kItemPutString = 110;

// On a note that is held for the whole dialog, so that no second copy works on its participants.
void EditEvent(NotesPane& pane, RecordHold& hold)
{
    NoteRecord& note = hold.note;
    Outbox outbox(hold.file.Path(), note.uniqueId);
    if (!outbox.CanOpenFile()) {
        ShowTextMessage(MainWindow(),
                        "The file of participants\r\n\"" + outbox.Path() +
                            "\"\r\ncannot be opened. Check that it isn't damaged and that you may write to "
                            "its folder.");
        return;
    }
    InternetEventsDialog dialog(hold.file, note, outbox);
    if (dialog.DoModal(&pane, kInternetEventsDialogId) != 1)
        return;
    if (outbox.Commit(note) == kCommittedWithWork)
        ShowMessage(MainWindow(), kItemPutString);
    if (outbox.FailedWrites() > 0)
        ShowTextMessage(MainWindow(), "Not all participants could be written to\r\n\"" + outbox.Path() +
                                          "\".\r\nCheck that the disk isn't full, then open the event again.");
    if (const int written = hold.file.WriteRecord(BytesOf(note), hold.address); written != 1)
        ShowTextMessage(MainWindow(), SaveProblem(hold.file, written));
}

}  // namespace

void InternetEventsCommand(NotesPane& pane)
{
    TableFile* file = pane.GetFile();
    if (!file || !MayChange(file->GetRole())) {
        ShowMessage(MainWindow(), kNoPermissionString);
        return;
    }
    const auto address = pane.SelectedAddress();
    if (!address) {
        Beep();
        return;
    }
    RecordHold hold(*file, *address);
    if (!hold.Taken()) {
        ShowMessage(MainWindow(), kBeingEditedString);
        return;
    }
    const bool readable = hold.Read();
    if (readable && hold.note.eventState != kEventWithdrawn)
        EditEvent(pane, hold);
    else if (readable)
        Beep();
    hold.GiveBack();
    file->Flush();
    pane.GetList().RefreshAndSelect(BytesOf(hold.note));
    FocusWindow(pane.GetList().Grid().window);
}

}  // namespace jotlet
