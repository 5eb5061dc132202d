#include "interchange/import_command.h"

#include "interchange/engine/import_run.h"
#include "interchange/import_wizard.h"
#include "platform/desktop/cursor.h"
#include "resources/dialog_ids.h"
#include "resources/string_ids.h"
#include "skin/window_helpers.h"
#include "store/refresh_switch.h"
#include "store/table_file.h"
#include "toolkit/compact_progress_dialog.h"

namespace jotlet {
namespace {

std::string Count(std::size_t count, const char* one, const char* many)
{
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string Summary(const ImportCounts& counts, const TableFile& table)
{
    std::string text = Count(counts.added, "note was imported", "notes were imported") + ", " +
                       Count(counts.dropped, "row was dropped.", "rows were dropped.");
    if (counts.writeFailed && table.WasReplaced())
        text += "\r\nThe import stopped early: \"" + table.Path() +
                "\" was replaced or removed by another program. What was imported is not in the file that stands there "
                "now; import again.";
    else if (counts.writeFailed)
        text += "\r\nThe import stopped early: \"" + table.Path() +
                "\" could not be written. Check that the disk isn't full and the file can be reached.";
    if (counts.incompleteEnd)
        text += "\r\nThe last whole row ends on line " + std::to_string(counts.lastLine) +
                ". What stands behind it was left out: it has no line end, or a quote is never closed.";
    return text;
}

}  // namespace

std::size_t RunImport(MarlinWnd* parent, TableFile& table)
{
    const WindowHandle owner = parent ? parent->window : 0;
    if (!MayChange(table.GetRole())) {
        ShowMessage(owner, kStringNoPermission);
        return 0;
    }
    std::vector<ImportField> fields;
    std::vector<ImportAlias> aliases;
    GetNoteImportFields(fields);
    GetNoteFieldAliases(aliases);
    ImportWizard wizard(std::move(fields), std::move(aliases));
    if (wizard.DoModal(parent, import_wizard_ids::kDialog) != 1)
        return 0;

    CompactProgressDialog progress(parent);
    ImportRequest request;
    request.table = &table;
    request.reader = &wizard.reader;
    request.fields = wizard.fields;
    request.firstLineNames = wizard.firstLineNames;
    request.progress = &progress;
    ImportCounts counts;
    {
        const RefreshPause pause;
        ShowWaitCursor();
        counts = RunNoteImport(request);
        RestoreCursor();
    }
    ShowTextMessage(owner, Summary(counts, table));
    return counts.added;
}

}  // namespace jotlet
