// The commands on whole files that show dialogs: which file, which password, copy, compact, passwords.
//
// Errors: each tells the user what went wrong itself. Nothing of the open document changes here.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/file_copy.h"
#include "platform/desktop/file_dialog.h"
#include "toolkit/marlin_wnd.h"

namespace jotlet {

inline constexpr std::string_view kNoteFilter = "Jotlet file (*.jot)|*.jot||";
inline constexpr std::string_view kNoteExtension = "jot";

// Where a file chooser starts.
enum class StartFolder { Current, Program, Works };
// The chosen path, or nothing.
std::optional<std::string> FileDialog(FileDialogMode mode, std::string_view filter, std::string_view extension,
                                      MarlinWnd* owner, StartFolder folder);

// The password with which the file may be opened: empty without asking when it has no Owner password; else what the
// user typed, if it is one of the three. Nothing when the user may not; `told` then says whether the reason has been
// shown already (a file that cannot be read), or the caller is to show that the password is wrong.
std::optional<std::string> AskFilePassword(MarlinWnd* owner, const std::string& path, bool& told);
// The same, and the reason told in every case.
std::optional<std::string> AskFilePasswordAndTell(MarlinWnd* owner, const std::string& path);

struct ChosenFile {
    std::string path;
    std::string password;
};
std::optional<ChosenFile> ChooseFileToOpen(MarlinWnd* owner);

// 1 when the copy was made; the open file stays open.
int SaveAsCommand(MarlinWnd* owner, TableFile& file, std::string* copy = nullptr);
// 1 when a file was chosen that nobody has open.
int CompactCommand(MarlinWnd* owner, std::string* compacted = nullptr);
// 1 when the passwords of the file at `path` were changed; `currentPassword` is then the new Owner password.
int RunNetworkPasswords(MarlinWnd* owner, const std::string& path, std::string& currentPassword);

}  // namespace jotlet
