// How a command ends: an exit code, and for a failure one line on standard error that names the file and what to do.
#pragma once

#include <string>
#include <string_view>

namespace jotlet {

// What scripts test for. Never renumber.
enum class ExitCode : int {
    Done = 0,
    Refused = 1,       // refused, or not found
    Usage = 2,         // the command line, or a value on it, makes no sense
    NotOpened = 3,     // the file cannot be opened or is no table file
    NoPermission = 4,  // the role may not do this
    Locked = 5,        // another user has the record
};

// Prints "jotctl: SUBJECT: MESSAGE" as one line, whatever bytes the two hold, and gives `code` back. SUBJECT is the
// file, mostly; an empty one is left out.
ExitCode Fail(ExitCode code, std::string_view subject, std::string_view message);

// `text` for a terminal: valid UTF-8, and no control characters that could steer it. Line breaks and tabs are kept with
// `keepLines`, else shown as blanks.
enum class Lines { Keep, Join };
std::string PlainText(std::string_view text, Lines lines);

// Writes to standard output; false when it does not take all of it (a full disk, a closed pipe).
bool Print(std::string_view text);

// Print, and what to tell the caller of the program.
ExitCode PrintResult(std::string_view text);

}  // namespace jotlet
