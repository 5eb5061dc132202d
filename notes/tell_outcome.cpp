#include "notes/tell_outcome.h"

#include "net/core/outbox_file.h"
#include "platform/base/file_error_text.h"
#include "platform/base/silent_drive.h"
#include "resources/string_ids.h"
#include "resources/string_table.h"
#include "skin/window_helpers.h"

namespace jotlet {

std::string OutcomeText(const TableFile& file, const NoteResult& result)
{
    switch (result.outcome) {
        case Outcome::NoPermission:
            return std::string(LoadStringResource(kStringNoPermission));
        case Outcome::Locked:
            return std::string(LoadStringResource(kStringBeingEdited));
        case Outcome::Failed:
            return "The note could not be written to\r\n\"" + file.Path() + "\".\r\n" + FileErrorText(result.error) +
                   "\r\nThe note is as it was, and nothing that you typed is lost.";
        case Outcome::Unconfirmed:
            return "The note is deleted, but the disk of\r\n\"" + file.Path() +
                   "\"\r\nhas not taken it, so it may come back. The bin keeps it.\r\n" + FileErrorText(result.error);
        case Outcome::Replaced:
            return "The note file was replaced or removed by another program:\r\n\"" + file.Path() +
                   "\"\r\nNothing was written to the old one.";
        default:
            return {};
    }
}

bool RefuseSilentDrive(WindowHandle owner, const TableFile* file)
{
    if (!file || !IsOnSilentDrive(file->Path()))
        return false;
    ShowTextMessage(owner, "The drive does not answer now:\r\n\"" + file->Path() +
                               "\"\r\nThis can be done when it is back. What you see is as it was before.");
    return true;
}

void TellMissedParticipants(WindowHandle owner, const TableFile& file)
{
    ShowTextMessage(owner, "The file of participants\r\n\"" + OutboxPath(file.Path()) +
                               "\"\r\ncannot be opened or written, so not everybody will hear of this. Check that it "
                               "isn't damaged and that you may write to its folder.");
}

bool TellOutcome(WindowHandle owner, const TableFile* file, const NoteResult& result)
{
    if (result.outcome == Outcome::NoPermission)
        ShowMessage(owner, kStringNoPermission);
    else if (const std::string text = OutcomeText(*file, result); !text.empty())
        ShowTextMessage(owner, text);
    if (result.missedParticipants)
        TellMissedParticipants(owner, *file);
    return static_cast<bool>(result);
}

}  // namespace jotlet
