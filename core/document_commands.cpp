#include "core/document_commands.h"

#include "core/file_messages.h"
#include "core/password_dialogs.h"
#include "platform/base/files.h"
#include "platform/base/paths.h"
#include "platform/desktop/cursor.h"
#include "platform/desktop/message_box.h"
#include "resources/dialog_ids.h"
#include "resources/string_ids.h"
#include "skin/window_helpers.h"
#include "store/compaction.h"
#include "toolkit/compact_progress_dialog.h"

namespace jotlet {
namespace {

// Opens a file just to read its header: matches no role unless a user chose that word.
constexpr std::string_view kHeaderOnly = "null";

WindowHandle HandleOf(const MarlinWnd* owner)
{
    return owner ? owner->window : 0;
}

// Nothing, and the reason told, when the file is no readable note file.
std::optional<TableHeader> ReadNoteHeader(MarlinWnd* owner, const std::string& path)
{
    TableFile file(path, kHeaderOnly);
    TableHeader header{};
    if (file.IsOpen() && file.RecordSize() == kNoteRecordSize && file.ReadHeader(header))
        return header;
    OpenFailure failure = file.GetOpenFailure();
    if (file.IsOpen())
        failure = file.RecordSize() == kNoteRecordSize ? OpenFailure::Io : OpenFailure::NotTableFile;
    ShowTextMessage(HandleOf(owner), OpenFailureText(path, failure, file.GetOpenError()));
    return std::nullopt;
}

class WaitCursor {
public:
    WaitCursor() { ShowWaitCursor(); }
    ~WaitCursor() { RestoreCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

}  // namespace

std::optional<std::string> FileDialog(FileDialogMode mode, std::string_view filter, std::string_view extension,
                                      MarlinWnd* owner, StartFolder folder)
{
    FileDialogRequest request;
    request.mode = mode;
    request.filter = filter;
    request.extension = extension;
    if (folder == StartFolder::Works)
        GetWorksFolder(request.folder);
    else if (folder == StartFolder::Program)
        request.folder = GetProgramFolder();
    return RunFileDialog(HandleOf(owner), request);
}

std::optional<std::string> AskFilePassword(MarlinWnd* owner, const std::string& path, bool& told)
{
    told = false;
    const auto header = ReadNoteHeader(owner, path);
    if (!header) {
        told = true;
        return std::nullopt;
    }
    if (PasswordsOf(*header).owner.empty())
        return std::string{};
    PasswordDialog dialog(GetBareFileName(path));
    if (dialog.DoModal(owner, password_dialog_ids::kDialog) != 1 ||
        RoleOfPassword(*header, dialog.Password()) == Role::None)
        return std::nullopt;
    return dialog.Password();
}

std::optional<std::string> AskFilePasswordAndTell(MarlinWnd* owner, const std::string& path)
{
    bool told = false;
    auto password = AskFilePassword(owner, path, told);
    if (!password && !told)
        ShowMessage(HandleOf(owner), kStringWrongPassword);
    return password;
}

std::optional<ChosenFile> ChooseFileToOpen(MarlinWnd* owner)
{
    const auto path = FileDialog(FileDialogMode::Open, kNoteFilter, kNoteExtension, owner, StartFolder::Works);
    if (!path)
        return std::nullopt;
    const auto password = AskFilePasswordAndTell(owner, *path);
    if (!password)
        return std::nullopt;
    return ChosenFile{*path, *password};
}

int SaveAsCommand(MarlinWnd* owner, TableFile& file, std::string* copy)
{
    const auto target = FileDialog(FileDialogMode::Save, kNoteFilter, kNoteExtension, owner, StartFolder::Works);
    if (!target)
        return 0;
    FileError error;
    CopyOutcome outcome;
    {
        const WaitCursor wait;
        CompactProgressDialog progress(owner);
        outcome = CopyTable(file, *target, &progress, &error);
    }
    switch (outcome) {
        case CopyOutcome::SameFile:
            Beep();
            return 0;
        case CopyOutcome::InUse:
            ShowTextMessage(HandleOf(owner), AccessDeniedText(*target));
            return 0;
        case CopyOutcome::Failed:
            ShowTextMessage(HandleOf(owner), CannotText(*target, "save", error));
            return 0;
        case CopyOutcome::Done:
            break;
    }
    if (copy)
        *copy = *target;
    return 1;
}

int CompactCommand(MarlinWnd* owner, std::string* compacted)
{
    const auto path = FileDialog(FileDialogMode::Open, kNoteFilter, kNoteExtension, owner, StartFolder::Works);
    if (!path)
        return 0;
    FileError error;
    RepairOutcome outcome;
    {
        CompactProgressDialog progress(owner);
        outcome = RepairTable(*path, true, &progress, &error);
    }
    switch (outcome) {
        case RepairOutcome::Busy:
            ShowTextMessage(HandleOf(owner), AccessDeniedText(*path));
            return 0;
        case RepairOutcome::Missing:
            ShowTextMessage(HandleOf(owner), OpenFailureText(*path, OpenFailure::Missing, error));
            return 0;
        case RepairOutcome::NotTableFile:
            ShowTextMessage(HandleOf(owner), OpenFailureText(*path, OpenFailure::NotTableFile, error));
            return 0;
        case RepairOutcome::Failed:
            ShowTextMessage(HandleOf(owner), CannotText(*path, "compact", error));
            return 0;
        case RepairOutcome::PutRight:
            ShowTextMessage(HandleOf(owner),
                            "Counters and locks were put right in\r\n\"" + *path +
                                "\"\r\nThe places of deleted notes stay, since this drive may lose a file that is "
                                "replaced while somebody has it open. New notes use them.");
            break;
        case RepairOutcome::Clean:
        case RepairOutcome::Compacted:
            break;
    }
    if (compacted)
        *compacted = *path;
    return 1;
}

int RunNetworkPasswords(MarlinWnd* owner, const std::string& path, std::string& currentPassword)
{
    const auto header = ReadNoteHeader(owner, path);
    if (!header)
        return 0;
    const NetworkPasswords stored = PasswordsOf(*header);
    if (currentPassword != stored.owner) {
        ShowMessage(HandleOf(owner), kStringNoPermission);
        return 0;
    }
    NetworkPasswordsDialog dialog(stored);
    if (dialog.DoModal(owner, network_passwords_ids::kDialog) != 1)
        return 0;
    for (;;) {
        VerifyPasswordsDialog verify(dialog.Passwords());
        const int answer = verify.DoModal(owner, verify_passwords_ids::kDialog);
        if (answer == VerifyPasswordsDialog::kSame)
            break;
        if (answer != VerifyPasswordsDialog::kDiffers)
            return 0;
        ShowMessage(HandleOf(owner), kStringPasswordsDiffer);
    }
    // Somebody else may have become Owner while the dialogs stood open, or set what was not touched here.
    const int result = SetNetworkPasswords(path, currentPassword, dialog.Passwords(), &stored);
    if (result == kRefusedByRole)
        ShowMessage(HandleOf(owner), kStringNoPermission);
    else if (result != 1)
        ShowTextMessage(HandleOf(owner), CannotText(path, "change", FileError{}));
    return result == 1 ? 1 : 0;
}

}  // namespace jotlet
