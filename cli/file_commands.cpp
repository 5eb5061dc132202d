#include <filesystem>
#include <nlohmann/json.hpp>

#include "cli/commands.h"
#include "cli/note_output.h"
#include "cli/open_notes.h"
#include "cli/terminal_progress.h"
#include "notes/model/note_file.h"
#include "platform/base/file_error_text.h"
#include "platform/base/text.h"
#include "store/compaction.h"
#include "store/passwords.h"

namespace jotlet {
namespace {

struct NewOptions {
    std::string path;
    bool withExamples = false;
};

struct InfoOptions {
    std::string path;
    bool asJson = false;
};

ExitCode RunNew(const NewOptions& options)
{
    if (TableFile::Exists(options.path))
        return Fail(ExitCode::Refused, options.path, "The file exists already. Choose another name.");
    const std::filesystem::path folder = std::filesystem::path(options.path).parent_path();
    std::error_code error;
    if (!folder.empty() && !std::filesystem::is_directory(folder, error))
        return Fail(ExitCode::NotOpened, options.path, "There is no such folder. Make it first, or check the name.");
    if (!CreateNoteFile(options.path, options.withExamples ? WithExamples::Yes : WithExamples::No))
        return Fail(ExitCode::NotOpened, options.path,
                    "The file cannot be made. Check the folder's permissions and the disk's free space.");
    return ExitCode::Done;
}

template <std::size_t Size>
std::string Shown(const char (&field)[Size])
{
    return DecodeForDisplay(FieldText(field));
}

nlohmann::ordered_json InfoToJson(const TableFile& table, const TableHeader& header, const CategoryBlock& categories,
                                  const SlotCounts& counts)
{
    nlohmann::ordered_json names = nlohmann::ordered_json::array();
    for (int i = 0; i < categories.Count(); ++i)
        names.push_back(Shown(categories.entries[i].name));
    const NetworkPasswords passwords = PasswordsOf(header);
    return {{"headerSize", table.HeaderSize()},
            {"categorySize", table.CategorySize()},
            {"recordSize", table.RecordSize()},
            {"fileType", Shown(header.fileType)},
            {"family", Shown(header.family)},
            {"version", std::uint32_t{header.version}},
            {"freeSlots", std::int32_t{header.freeSlots}},
            {"changeStamp", std::uint64_t{header.changeStamp}},
            {"openCount", std::max(std::uint32_t{header.openCount}, 1u) - 1},  // this opening is not counted
            {"slots", counts.slots},
            {"live", counts.live},
            {"locked", counts.locked},
            {"categories", names},
            {"passwords",
             {{"owner", !passwords.owner.empty()},
              {"assistant", !passwords.assistant.empty()},
              {"reader", !passwords.reader.empty()}}}};
}

// "name: value" lines of the same values.
std::string InfoText(const nlohmann::ordered_json& info)
{
    std::string text;
    for (const auto& [name, value] : info.items()) {
        std::string line = name + ":";
        line.resize(std::max<std::size_t>(line.size() + 1, 15), ' ');
        if (name == "categories") {
            for (const auto& category : value)
                line += (&category == &value.front() ? "" : ", ") + category.get<std::string>();
        } else if (name == "passwords") {
            std::string set;
            for (const auto& [role, isSet] : value.items())
                set += isSet.get<bool>() ? (set.empty() ? "" : ", ") + role : "";
            line += set.empty() ? "none" : set;
        } else {
            line += value.is_string() ? value.get<std::string>() : value.dump();
        }
        text += PlainText(line, Lines::Join) + '\n';
    }
    return text;
}

ExitCode RunInfo(const InfoOptions& options)
{
    std::unique_ptr<TableFile> table;
    if (const ExitCode code = OpenWithoutRole(options.path, table); code != ExitCode::Done)
        return code;
    TableHeader header;
    CategoryBlock categories;
    SlotCounts counts;
    if (!table->ReadHeader(header) || !table->ReadCategories(categories) || !table->DescribeSlots(counts))
        return Fail(ExitCode::NotOpened, options.path, "The file cannot be read. Check the disk.");
    const nlohmann::ordered_json info = InfoToJson(*table, header, categories, counts);
    table.reset();
    return PrintResult(options.asJson ? JsonText(info) : InfoText(info));
}

enum class Upkeep { Check, Compact };

ExitCode TellRepair(const std::string& path, Upkeep upkeep, RepairOutcome outcome, const FileError& error)
{
    switch (outcome) {
        case RepairOutcome::Clean:
            return PrintResult(PlainText(path, Lines::Join) + ": in order\n");
        case RepairOutcome::Compacted:
            return PrintResult(PlainText(path, Lines::Join) +
                               (upkeep == Upkeep::Check ? ": repaired\n" : ": compacted\n"));
        case RepairOutcome::Busy:
            return Fail(ExitCode::Refused, path,
                        "The file is in use, or nobody can tell; nothing was changed. Close it everywhere first.");
        case RepairOutcome::Missing:
            return FailToOpen(path, OpenFailure::Missing, error);
        case RepairOutcome::NotTableFile:
            return FailToOpen(path, OpenFailure::NotTableFile, error);
        case RepairOutcome::Failed:
            break;
    }
    const bool isClosed = error.kind == FileErrorKind::Permission;
    return Fail(isClosed ? ExitCode::NotOpened : ExitCode::Refused, path,
                "The file could not be rewritten and is as it was. " + FileErrorText(error));
}

ExitCode RunRepair(const std::string& path, Upkeep upkeep)
{
    TerminalProgress progress;
    FileError error;
    const RepairOutcome outcome = RepairTable(path, upkeep == Upkeep::Compact, &progress, &error);
    return TellRepair(path, upkeep, outcome, error);
}

void AddRepairCommand(CLI::App& app, Command& chosen, const char* name, const char* description, Upkeep upkeep)
{
    auto path = std::make_shared<std::string>();
    CLI::App* command = app.add_subcommand(name, description);
    command->add_option("FILE", *path, "note file (.jot)")->required();
    command->callback([&chosen, path, upkeep] { chosen = [path, upkeep] { return RunRepair(*path, upkeep); }; });
}

}  // namespace

void AddFileCommands(CLI::App& app, Command& chosen)
{
    auto made = std::make_shared<NewOptions>();
    CLI::App* create = app.add_subcommand("new", "Make a note file");
    create->add_option("FILE", made->path, "note file (.jot)")->required();
    create->add_flag("--examples", made->withExamples, "with the four example notes");
    create->callback([&chosen, made] { chosen = [made] { return RunNew(*made); }; });

    auto asked = std::make_shared<InfoOptions>();
    CLI::App* info = app.add_subcommand("info", "Show sizes, counters, categories and which passwords are set");
    info->add_option("FILE", asked->path, "note file (.jot)")->required();
    info->add_flag("--json", asked->asJson, "a JSON object");
    info->callback([&chosen, asked] { chosen = [asked] { return RunInfo(*asked); }; });

    AddRepairCommand(app, chosen, "check", "Repair the file if its last user went away uncleanly", Upkeep::Check);
    AddRepairCommand(app, chosen, "compact", "Rewrite the file without the slots of deleted notes", Upkeep::Compact);
}

}  // namespace jotlet
