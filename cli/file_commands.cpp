#include <unistd.h>

#include <filesystem>

#include "cli/commands.h"
#include "cli/json_output.h"
#include "cli/open_notes.h"
#include "cli/terminal_progress.h"
#include "notes/model/note_file.h"
#include "platform/base/file_error_text.h"
#include "platform/base/process_identity.h"
#include "platform/base/text.h"
#include "store/compaction.h"
#include "store/passwords.h"

namespace jotlet {
namespace {

struct SlotFindings {
    SlotCounts counts;
    std::int64_t freeInHeader = 0;
    bool othersAreIn = false;
    bool isRead = false;
};

// Others may be at work meanwhile, so the two counts are compared only where nothing moved between them.
SlotFindings LookAtSlots(TableFile& table)
{
    constexpr int kAttempts = 20;
    SlotFindings found;
    TableHeader before;
    TableHeader after;
    for (int attempt = 0; attempt < kAttempts && !found.isRead; ++attempt) {
        if (!table.ReadHeader(before) || !table.DescribeSlots(found.counts) || !table.ReadHeader(after))
            return found;
        found.isRead = before.changeStamp == after.changeStamp && before.freeSlots == after.freeSlots;
    }
    found.freeInHeader = -std::int64_t{after.freeSlots};
    found.othersAreIn = after.openCount > 1;
    return found;
}

// What a file that was closed properly may hold all the same.
ExitCode TellSlots(const std::string& path)
{
    TableFile table(path, "");
    if (!table.IsOpen())
        return FailToOpen(path, table.GetOpenFailure(), table.GetOpenError());
    const SlotFindings found = LookAtSlots(table);
    table.Close();
    if (!found.isRead)
        return Fail(ExitCode::Refused, path, "The file's slots cannot be counted. Check the disk, then try again.");
    const std::int64_t free = found.counts.slots - found.counts.live;
    std::string wrong;
    if (found.freeInHeader != free)
        wrong += "Free slots: " + std::to_string(free) +
                 ", counted in the header: " + std::to_string(found.freeInHeader) + ". ";
    if (found.counts.locked > 0 && !found.othersAreIn)
        wrong += "Locked notes that nobody holds: " + std::to_string(found.counts.locked) + ". ";
    if (found.counts.cutTailBytes > 0)
        wrong += "The last " + std::to_string(found.counts.cutTailBytes) + " bytes are no whole note. ";
    if (!wrong.empty())
        return Fail(ExitCode::Refused, path, wrong + "\"jotctl compact\" sets this right.");
    return PrintResult(PlainText(path, Lines::Join) + ": in order\n");
}

ExitCode TellRepair(const std::string& path, Upkeep upkeep, RepairOutcome outcome, const FileError& error)
{
    switch (outcome) {
        case RepairOutcome::Clean:
            return TellSlots(path);
        case RepairOutcome::Compacted:
            return PrintResult(PlainText(path, Lines::Join) +
                               (upkeep == Upkeep::Check ? ": repaired\n" : ": compacted\n"));
        case RepairOutcome::PutRight:
            return PrintResult(PlainText(path, Lines::Join) +
                               (upkeep == Upkeep::Check
                                    ? ": repaired\n"
                                    : ": counters and locks were put right; the free slots stay, since this drive may "
                                      "lose a file that is replaced while somebody has it open\n"));
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

// Without this process, which has the file open to look at it.
std::vector<CopyInfo> OtherCopies(const std::string& path)
{
    std::vector<CopyInfo> copies = CopiesOf(path);
    std::erase_if(copies, [](const CopyInfo& copy) { return copy.process == getpid() && copy.host == HostName(); });
    return copies;
}

}  // namespace

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

ExitCode RunInfo(const InfoOptions& options)
{
    std::unique_ptr<TableFile> table;
    if (const ExitCode code = OpenWithoutRole(options.path, table); code != ExitCode::Done)
        return code;
    FileInfo info{table->HeaderSize(),      table->CategorySize(), table->RecordSize(), {}, {}, {},
                  OtherCopies(options.path)};
    if (!table->ReadHeader(info.header) || !table->ReadCategories(info.categories) ||
        !table->DescribeSlots(info.counts))
        return Fail(ExitCode::NotOpened, options.path, "The file cannot be read. Check the disk.");
    table.reset();
    return PrintResult(options.asJson ? InfoJson(info) : InfoText(info));
}

ExitCode RunUpkeep(const std::string& path, Upkeep upkeep)
{
    TerminalProgress progress;
    FileError error;
    const RepairOutcome outcome = RepairTable(path, upkeep == Upkeep::Compact, &progress, &error);
    return TellRepair(path, upkeep, outcome, error);
}

}  // namespace jotlet
