#include <functional>

#include "cli/commands.h"
#include "cli/find_note.h"
#include "cli/json_output.h"
#include "cli/note_output.h"
#include "cli/note_values.h"
#include "cli/open_notes.h"
#include "platform/base/text.h"
#include "store/record_query.h"

namespace jotlet {
namespace {

// The terms that the board and its Find dialog make of the same wishes. The doubled category term ties both texts to
// it.
void AddTerms(const ListOptions& options, const std::optional<DateValue>& date, RecordQuery& query)
{
    const auto addCategory = [&] {
        if (!options.category.empty())
            query.AddTextTerm(kCategoryOffset, kCategorySize, TermKind::Equal, options.category, Connective::And);
    };
    if (!options.find.empty()) {
        query.AddTextTerm(kTitleOffset, kTitleSize, TermKind::Contains, options.find, Connective::Or);
        query.AddTextTerm(kTextOffset, kTextSize, TermKind::Contains, options.find, Connective::Or);
        addCategory();
    }
    if (date)
        query.AddDateTerm(kDateOffset, TermKind::Equal, date->day, date->month, date->year, Connective::And);
    addCategory();
    if (query.termCount == 0)
        query.AddAllTerm();
}

using Visit = std::function<void(const NoteRecord&, RecordAddress)>;

// Calls `visit` for every note that is asked for, in order. Refused, with the reason told, when the drive kept some
// back; the others have been visited.
ExitCode VisitNotes(TableFile& table, const ListOptions& options, const std::optional<DateValue>& date,
                    const Visit& visit)
{
    RecordQuery query;
    query.PrepareAllResults();
    AddTerms(options, date, query);
    bool isWhole = table.RunQuery(query) == 1;
    const bool isByDate = options.sort == "date";
    isWhole &= (isByDate ? query.Sort(table, kDateOffset, kDateSize, CompareDates)
                         : query.Sort(table, kTitleOffset, kTitleSize, CompareTitles)) == 1;
    const bool showConfidential = SeesConfidential(table.GetRole());
    NoteRecord note;
    for (const RecordAddress address : query.Results()) {
        const RecordState state = table.ReadState(BytesOf(note), address);
        isWhole &= state != RecordState::Unreadable;
        // Deleted or hidden by another copy meanwhile: no longer one of the notes.
        if (state == RecordState::Live && (note.confidential == 0 || showConfidential))
            visit(note, address);
    }
    if (isWhole)
        return ExitCode::Done;
    return Fail(ExitCode::Refused, options.file.path,
                "Not all notes can be read; those that cannot are left out. Check the disk, or restore a copy.");
}

}  // namespace

ExitCode RunList(const ListOptions& options)
{
    std::optional<DateValue> date;
    if (!options.date.empty()) {
        date = ParseIsoDate(options.date);
        if (!date)
            return FailDate("--date", options.date);
    }
    std::unique_ptr<TableFile> table;
    if (const ExitCode code = OpenNotes(options.file, table); code != ExitCode::Done)
        return code;
    NoteListJson json;
    std::string lines;
    const Visit show = [&](const NoteRecord& note, RecordAddress address) {
        if (options.asJson)
            json.Add(note, address);
        else
            lines += NoteLine(note);
    };
    const ExitCode read = VisitNotes(*table, options, date, show);
    table.reset();  // a reader of our output may stop or wait; the file is not held meanwhile
    const ExitCode printed = PrintResult(options.asJson ? json.Take() : lines);
    return read == ExitCode::Done ? printed : read;
}

ExitCode RunShow(const ShowOptions& options)
{
    const std::optional<std::uint64_t> id = ParseId(options.id);
    if (!id)
        return FailId(options.id);
    std::unique_ptr<TableFile> table;
    if (const ExitCode code = OpenNotes(options.file, table); code != ExitCode::Done)
        return code;
    NoteRecord note;
    RecordAddress address = 0;
    const ExitCode found = FindNote(*table, *id, note, address);
    table.reset();
    if (found != ExitCode::Done)
        return found;
    return PrintResult(options.asJson ? NoteJson(note, address) : NotePage(note));
}

}  // namespace jotlet
