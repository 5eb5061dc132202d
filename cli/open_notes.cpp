#include "cli/open_notes.h"

#include <cstdlib>
#include <optional>
#include <string_view>

#include "cli/secret.h"
#include "platform/base/file_error_text.h"
#include "platform/base/text.h"
#include "store/open_table.h"
#include "store/passwords.h"
#include "store/table_schema.h"

namespace jotlet {
namespace {

constexpr std::string_view kWhat[] = {
    /* None */ "could not be opened. Try again.",
    /* Missing */ "There is no such file. Check the name, or make it with \"jotctl new\".",
    /* Busy */ "The file is held alone by another program. Try again.",
    /* NotTableFile */ "This file is not a Jotlet file. Choose a note file (.jot).",
    /* Truncated */ "This file is not a Jotlet file, or was cut off before its first note. Restore it from a copy.",
    /* TooLarge */ "The file is larger than a note file can be (2 GB). Restore it from a copy.",
    /* Permission */ "The file cannot be opened for reading and writing. Check its permissions.",
    /* NoAnswer */ "The drive does not answer. Try again when it is back.",
    /* Io */ "The file cannot be opened for reading and writing. Check the disk and the path.",
};

std::string_view OpenFailureText(OpenFailure failure)
{
    const auto index = static_cast<std::size_t>(failure);
    return index < std::size(kWhat) ? kWhat[index] : kWhat[0];
}

ExitCode FailWithoutPassword(const std::string& path)
{
    return Fail(ExitCode::NotOpened, path, "The file needs a password. Give it by --password-file or JOTLET_PASSWORD.");
}

// What --password-file or the environment gives, else what the user types where the file needs a password; nothing when
// there is none.
ExitCode GetPassword(const FileOptions& options, bool isGuarded, std::optional<std::string>& password)
{
    if (!options.passwordFile.empty()) {
        password = ReadPasswordFile(options.passwordFile);
        if (!password)
            return Fail(ExitCode::NotOpened, options.passwordFile, "The password file cannot be read. Check its name.");
    } else if (const char* fromEnvironment = std::getenv("JOTLET_PASSWORD")) {
        password = fromEnvironment;
    } else if (isGuarded) {
        if (!PromptForPassword("Password for " + PlainText(options.path, Lines::Join) + ": ", password))
            return FailWithoutPassword(options.path);
    }
    return ExitCode::Done;
}

ExitCode TakeRole(const std::optional<std::string>& password, TableFile& table)
{
    TableHeader header;
    if (!table.ReadHeader(header))
        return Fail(ExitCode::NotOpened, table.Path(), "The file's header cannot be read. Check the disk.");
    const bool fits = RoleOfPassword(header, password.value_or("")) != Role::None;
    // A file without an Owner's password opens for everybody.
    if (fits || PasswordsOf(header).owner.empty()) {
        table.SetPassword(fits ? password.value_or("") : "");
        return ExitCode::Done;
    }
    if (!password)
        return FailWithoutPassword(table.Path());
    return Fail(ExitCode::NotOpened, table.Path(), "Program can't open this file. Incorrect password.");
}

}  // namespace

ExitCode OpenWithoutRole(const std::string& path, std::unique_ptr<TableFile>& table)
{
    OpenedTable opened = OpenTable(path, "", kNoteRecordSize);
    if (!opened)
        return FailToOpen(path, opened.failure, opened.error);
    if (opened.cutTailBytes > 0)
        Fail(ExitCode::Done, path,
             "Note: the file ends inside a record (" + std::to_string(opened.cutTailBytes) +
                 " bytes), which is not shown. \"jotctl compact\" drops it.");
    if (opened.repairError)
        Fail(ExitCode::Done, path,
             "Note: the last program that had the file did not close it, and it cannot be repaired. " +
                 FileErrorText(opened.repairError));
    table = std::move(opened.table);
    return ExitCode::Done;
}

ExitCode OpenNotes(const FileOptions& options, std::unique_ptr<TableFile>& table)
{
    // The password is asked for before the file is opened: whatever ends the program at the prompt leaves no trace.
    TableHeader header;
    FileError error;
    if (const OpenFailure failure = ProbeTable(options.path, kNoteRecordSize, error, &header);
        failure != OpenFailure::None)
        return FailToOpen(options.path, failure, error);
    std::optional<std::string> password;
    ExitCode code = GetPassword(options, !PasswordsOf(header).owner.empty(), password);
    if (code == ExitCode::Done)
        code = OpenWithoutRole(options.path, table);
    if (code == ExitCode::Done)
        code = TakeRole(password, *table);
    if (code != ExitCode::Done)
        table.reset();
    return code;
}

ExitCode RequireChange(const TableFile& table)
{
    if (MayChange(table.GetRole()))
        return ExitCode::Done;
    if (const FileError& reason = table.GetReadOnlyReason())
        return Fail(ExitCode::NoPermission, table.Path(),
                    "The notes can be read, but not changed: the file, or what programs make beside it to take turns, "
                    "can't be written here" +
                        SystemReason(reason.systemError) + ".");
    return Fail(ExitCode::NoPermission, table.Path(),
                "Program can't do this. You don't have permission. Use the Owner's or the Assistant's password.");
}

ExitCode FailToOpen(const std::string& path, OpenFailure failure, const FileError& error)
{
    const int systemError = failure == OpenFailure::Missing ? 0 : error.systemError;
    return Fail(ExitCode::NotOpened, path, std::string(OpenFailureText(failure)) + SystemReason(systemError));
}

}  // namespace jotlet
