// What each command of jotctl takes, and the commands themselves, a file a group. command_line.cpp fills the options
// from the command line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/open_notes.h"
#include "cli/outcome.h"

namespace jotlet {

struct NewOptions {
    std::string path;
    bool withExamples = false;
};

struct InfoOptions {
    std::string path;
    bool asJson = false;
};

struct ListOptions {
    FileOptions file;
    std::string category;
    std::string date;
    std::string find;
    std::string sort = "title";  // or "date"
    bool asJson = false;
};

struct ShowOptions {
    FileOptions file;
    std::string id;
    bool asJson = false;
};

// What the options say of a note, as far as they were given.
struct NoteChange {
    std::optional<std::string> title;
    std::optional<std::string> text;
    std::optional<std::string> category;
    std::optional<std::string> colour;
    std::optional<std::string> date;
    std::optional<bool> isConfidential;
    bool mayCut = false;  // a text that is too long is cut and not refused
};

struct ChangeOptions {
    FileOptions file;
    std::string id;
    NoteChange change;
};

enum class ReportKind;

struct ReportOptions {
    FileOptions file;
    std::string target;
    std::string from;
    std::string to;
    std::string find;
};

struct ImportOptions {
    FileOptions file;
    std::string source;
    bool noHeader = false;
    std::string separator;  // "comma", "tab" or empty
    std::string qualifier;  // "quote", "none" or empty
    std::string lineEnds = "auto";
    std::vector<std::string> map;
    bool asJson = false;
};

struct RegisterOptions {
    std::string server;
    std::uint16_t port = 0;
    std::string email;
};

enum class Upkeep { Check, Compact };

ExitCode RunNew(const NewOptions& options);
ExitCode RunInfo(const InfoOptions& options);
ExitCode RunUpkeep(const std::string& path, Upkeep upkeep);
ExitCode RunPasswd(const FileOptions& options);
ExitCode RunList(const ListOptions& options);  // also find
ExitCode RunShow(const ShowOptions& options);
ExitCode RunAdd(const ChangeOptions& options);
ExitCode RunEdit(const ChangeOptions& options);
ExitCode RunDelete(const ChangeOptions& options);
ExitCode RunReport(const ReportOptions& options, ReportKind kind);
ExitCode RunImport(const ImportOptions& options);
ExitCode RunRegister(const RegisterOptions& options);

}  // namespace jotlet
