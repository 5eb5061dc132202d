// Opening a note file the way every command does: repair it if need be, find the role that the user's password gives.
#pragma once

#include <memory>
#include <string>

#include "cli/outcome.h"
#include "store/table_file.h"

namespace jotlet {

// FILE and where its password comes from.
struct FileOptions {
    std::string path;
    std::string passwordFile;
};

// Opens the file as the role that the password gives. A file without an Owner password opens for everybody. On a
// failure `table` is empty and the reason has been told.
ExitCode OpenNotes(const FileOptions& options, std::unique_ptr<TableFile>& table);

// Opens the file for what shows no note: no password is asked for.
ExitCode OpenWithoutRole(const std::string& path, std::unique_ptr<TableFile>& table);

// Done, or NoPermission with the reason told when the role may not change notes.
ExitCode RequireChange(const TableFile& table);

// Tells why a file did not open. NotOpened.
ExitCode FailToOpen(const std::string& path, OpenFailure failure, const FileError& error);

}  // namespace jotlet
