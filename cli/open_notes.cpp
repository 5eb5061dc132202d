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
    /* Io */ "The file cannot be opened for reading and writing. Check the disk and the path.",
};

std::string_view OpenFailureText(OpenFailure failure)
{
    const auto index = static_cast<std::size_t>(failure);
    return index < std::size(kWhat) ? kWhat[index] : kWhat[0];
}

// What --password-file or the environment gives; nothing when neither is there.
std::optional<std::string> GivenPassword(const FileOptions& options, bool& failed)
{
    failed = false;
    if (!options.passwordFile.empty()) {
        std::optional<std::string> password = ReadPasswordFile(options.passwordFile);
        failed = !password;
        if (failed)
            Fail(ExitCode::NotOpened, options.passwordFile, "The password file cannot be read. Check its name.");
        return password;
    }
    if (const char* fromEnvironment = std::getenv("JOTLET_PASSWORD"))
        return std::string(fromEnvironment);
    return std::nullopt;
}

ExitCode TakeRole(const FileOptions& options, TableFile& table)
{
    TableHeader header;
    if (!table.ReadHeader(header))
        return Fail(ExitCode::NotOpened, options.path, "The file's header cannot be read. Check the disk.");
    bool failed = false;
    std::optional<std::string> password = GivenPassword(options, failed);
    if (failed)
        return ExitCode::NotOpened;

    const bool isGuarded = !PasswordsOf(header).owner.empty();
    if (!isGuarded) {
        const bool fits = password && RoleOfPassword(header, *password) != Role::None;
        table.SetPassword(fits ? *password : std::string());
        return ExitCode::Done;
    }
    const bool wasGiven = password.has_value();
    if (!wasGiven)
        password = PromptForPassword("Password for " + PlainText(options.path, Lines::Join) + ": ");
    table.SetPassword(password.value_or(std::string()));
    if (table.GetRole() != Role::None)
        return ExitCode::Done;
    if (!password)
        return Fail(ExitCode::NotOpened, options.path,
                    "The file needs a password. Give it by --password-file or JOTLET_PASSWORD.");
    return Fail(ExitCode::NotOpened, options.path, "Program can't open this file. Incorrect password.");
}

}  // namespace

void AddFileOptions(CLI::App& command, FileOptions& options)
{
    command.add_option("FILE", options.path, "note file (.jot)")->required();
    command.add_option("--password-file", options.passwordFile,
                       "file whose first line is the password (else JOTLET_PASSWORD, else a prompt)");
}

ExitCode OpenWithoutRole(const std::string& path, std::unique_ptr<TableFile>& table)
{
    OpenedTable opened = OpenTable(path, "", kNoteRecordSize);
    if (!opened)
        return FailToOpen(path, opened.failure, opened.error);
    if (opened.cutTailBytes > 0)
        Fail(ExitCode::Done, path,
             "Note: the file ends inside a record (" + std::to_string(opened.cutTailBytes) +
                 " bytes), which is not shown. \"jotctl compact\" drops it.");
    table = std::move(opened.table);
    return ExitCode::Done;
}

ExitCode OpenNotes(const FileOptions& options, std::unique_ptr<TableFile>& table)
{
    ExitCode code = OpenWithoutRole(options.path, table);
    if (code == ExitCode::Done)
        code = TakeRole(options, *table);
    if (code != ExitCode::Done)
        table.reset();
    return code;
}

ExitCode RequireChange(const TableFile& table)
{
    if (MayChange(table.GetRole()))
        return ExitCode::Done;
    return Fail(ExitCode::NoPermission, table.Path(),
                "Program can't do this. You don't have permission. Use the Owner's or the Assistant's password.");
}

ExitCode FailToOpen(const std::string& path, OpenFailure failure, const FileError& error)
{
    const int systemError = failure == OpenFailure::Missing ? 0 : error.systemError;
    return Fail(ExitCode::NotOpened, path, std::string(OpenFailureText(failure)) + SystemReason(systemError));
}

}  // namespace jotlet
