#include "store/open_table.h"

#include "store/compaction.h"

namespace jotlet {

OpenedTable OpenTable(const std::string& path, std::string_view password, std::uint32_t recordSize,
                      ProgressDisplay* progress)
{
    OpenedTable opened;
    // A table of another kind is left alone, so its sizes are looked at before anything may write to it.
    opened.failure = ProbeTable(path, recordSize, opened.error);
    if (opened.failure != OpenFailure::None)
        return opened;
    const RepairOutcome repair = RepairTable(path, false, progress, &opened.repairError);
    opened.repaired = repair == RepairOutcome::Compacted || repair == RepairOutcome::PutRight;
    if (repair != RepairOutcome::Failed)
        opened.repairError = {};
    auto table = std::make_unique<TableFile>(path, password);
    opened.failure = table->GetOpenFailure();
    opened.error = table->GetOpenError();
    if (!table->IsOpen())
        return opened;
    opened.readOnly = table->GetReadOnlyReason();
    if (opened.readOnly)
        opened.repairError = {};
    opened.cutTailBytes = table->CutTailBytes();
    opened.table = std::move(table);
    return opened;
}

}  // namespace jotlet
