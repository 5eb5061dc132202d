#include "net/internet_events_dialog.h"
#include "notes/commands/note_commands.h"
#include "notes/notes_pane.h"
#include "notes/tell_outcome.h"
#include "platform/desktop/message_box.h"
#include "resources/dialog_ids.h"
#include "resources/string_ids.h"
#include "skin/window_helpers.h"
#include "toolkit/main_window.h"

namespace jotlet {
namespace {

// On a note that is held for the whole dialog, so that no second copy works on its participants.
void EditEvent(NotesPane& pane, HeldNote& held)
{
    NoteRecord& note = held.note;
    Outbox outbox(held.File().Path(), note.uniqueId);
    if (!outbox.CanOpenFile()) {
        ShowTextMessage(MainWindow(),
                        "The file of participants\r\n\"" + outbox.Path() +
                            "\"\r\ncannot be opened. Check that it isn't damaged and that you may write to "
                            "its folder.");
        return;
    }
    InternetEventsDialog dialog(held.File(), note, outbox);
    if (dialog.DoModal(&pane, internet_events_ids::kDialog) != 1)
        return;
    if (outbox.Commit(note) == kCommittedWithWork)
        ShowMessage(MainWindow(), kStringItemPut);
    if (outbox.FailedWrites() > 0)
        ShowTextMessage(MainWindow(), "Not all participants could be written to\r\n\"" + outbox.Path() +
                                          "\".\r\nCheck that the disk isn't full, then open the event again.");
    TellOutcome(MainWindow(), &held.File(), held.Save());
}

}  // namespace

void InternetEventsCommand(NotesPane& pane)
{
    TableFile* file = pane.GetFile();
    HeldNote held;
    const NoteResult taken = TakeForEdit(held, file, pane.Chosen());
    if (taken.outcome == Outcome::NothingChosen || taken.outcome == Outcome::Withdrawn)
        Beep();
    if (TellOutcome(MainWindow(), file, taken))
        EditEvent(pane, held);
    held.GiveBack();
    if (taken || taken.outcome == Outcome::Hidden || taken.outcome == Outcome::Withdrawn) {
        pane.GetList().RefreshAndSelect(BytesOf(held.note));
        FocusWindow(pane.GetList().Grid().window);
    }
}

}  // namespace jotlet
