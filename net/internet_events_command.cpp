#include "net/internet_events_command.h"

#include "net/internet_events_dialog.h"
#include "resources/dialog_ids.h"
#include "resources/string_ids.h"
#include "skin/window_helpers.h"
#include "toolkit/main_window.h"

namespace jotlet {

NoteResult EditGroupEvent(MarlinWnd& parent, HeldNote& held)
{
    NoteRecord& note = held.note;
    Outbox outbox(held.File().Path(), note.uniqueId);
    if (!outbox.CanOpenFile()) {
        ShowTextMessage(MainWindow(),
                        "The file of participants\r\n\"" + outbox.Path() +
                            "\"\r\ncannot be opened. Check that it isn't damaged and that you may write to "
                            "its folder.");
        return {};
    }
    InternetEventsDialog dialog(held.File(), note, outbox);
    if (dialog.DoModal(&parent, internet_events_ids::kDialog) != 1)
        return {};
    if (outbox.Commit(note) == kCommittedWithWork)
        ShowMessage(MainWindow(), kStringItemPut);
    if (outbox.FailedWrites() > 0)
        ShowTextMessage(MainWindow(), "Not all participants could be written to\r\n\"" + outbox.Path() +
                                          "\".\r\nCheck that the disk isn't full, then open the event again.");
    return held.Save();
}

}  // namespace jotlet
