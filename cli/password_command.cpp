#include <unistd.h>

#include <optional>

#include "cli/commands.h"
#include "cli/open_notes.h"
#include "cli/secret.h"
#include "store/passwords.h"

namespace jotlet {
namespace {

// One password of standard input; on a terminal it is asked for twice, since nobody sees what is typed.
ExitCode ReadNewPassword(const std::string& role, std::string& password)
{
    const std::optional<std::string> given = ReadSecretLine("New " + role + " password (empty: none): ");
    if (!given)
        return Fail(
            ExitCode::Usage, "passwd",
            "Give three passwords on standard input, one a line: Owner, Assistant, Reader. Nothing was changed.");
    if (given->size() > kMaxPasswordLength)
        return Fail(ExitCode::Usage, "passwd", "A password has at most 19 bytes. Nothing was changed.");
    if (isatty(STDIN_FILENO) && ReadSecretLine("The same again: ") != given)
        return Fail(ExitCode::Refused, "passwd",
                    "You did not enter the same password. Try again. Nothing was changed.");
    password = *given;
    return ExitCode::Done;
}

ExitCode FailNoOwner(const std::string& path)
{
    return Fail(ExitCode::NoPermission, path,
                "Program can't do this. You don't have permission. Use the Owner's password.");
}

}  // namespace

ExitCode RunPasswd(const FileOptions& options)
{
    std::string currentPassword;
    {
        std::unique_ptr<TableFile> table;
        if (const ExitCode code = OpenNotes(options, table); code != ExitCode::Done)
            return code;
        TableHeader header;
        const bool isGuarded = !table->ReadHeader(header) || !PasswordsOf(header).owner.empty();
        if (isGuarded && table->GetRole() != Role::Owner)
            return FailNoOwner(options.path);
        if (isGuarded)
            currentPassword = table->Password();
    }
    NetworkPasswords passwords;
    ExitCode code = ReadNewPassword("Owner", passwords.owner);
    if (code == ExitCode::Done)
        code = ReadNewPassword("Assistant", passwords.assistant);
    if (code == ExitCode::Done)
        code = ReadNewPassword("Reader", passwords.reader);
    if (code != ExitCode::Done)
        return code;
    const int result = SetNetworkPasswords(options.path, currentPassword, passwords);
    if (result == kRefusedByRole)
        return FailNoOwner(options.path);
    if (result != 1)
        return Fail(ExitCode::Refused, options.path, "The passwords could not be written. Check the disk.");
    return ExitCode::Done;
}

}  // namespace jotlet
