#include "cli/find_note.h"

#include <string>

#include "cli/note_values.h"
#include "store/record_query.h"

namespace jotlet {

ExitCode FindNote(TableFile& table, std::uint64_t id, NoteRecord& note, RecordAddress& address)
{
    RecordQuery query;
    query.PrepareResults();
    query.AddInt64Term(kUniqueIdOffset, TermKind::Equal, id, Connective::And);
    bool isWhole = table.RunQuery(query) == 1;
    for (const RecordAddress found : query.Results()) {
        const RecordState state = table.ReadState(BytesOf(note), found);
        isWhole &= state != RecordState::Unreadable;
        address = found;
        if (state == RecordState::Live && note.uniqueId == id)
            return ExitCode::Done;
    }
    if (isWhole)
        return FailNotFound(table.Path(), id);
    return Fail(ExitCode::Refused, table.Path(), "The note cannot be read. Check the disk, or restore a copy.");
}

ExitCode FailNotFound(std::string_view path, std::uint64_t id)
{
    return Fail(ExitCode::Refused, path, "There is no note " + FormatId(id) + ". \"jotctl list\" shows the ids.");
}

ExitCode FailId(std::string_view text)
{
    return Fail(ExitCode::Usage, text, "This is no note id. An id has 16 hex digits; \"jotctl list\" shows them.");
}

ExitCode FailDate(std::string_view option, std::string_view text)
{
    return Fail(ExitCode::Usage, option,
                "\"" + std::string(text) + "\" is no date from " + std::to_string(kCalendarFirstYear) + "-01-01 to " +
                    std::to_string(CalendarLastYear()) + "-12-31. Give it as YYYY-MM-DD.");
}

}  // namespace jotlet
