#include "cli/find_note.h"

#include <string>

#include "cli/note_values.h"
#include "store/record_query.h"

namespace jotlet {

RecordAddress FindNote(TableFile& table, std::uint64_t id, NoteRecord& note)
{
    RecordQuery query;
    query.Reset();
    query.PrepareResults();
    query.AddInt64Term(kUniqueIdOffset, TermKind::Equal, id, Connective::And);
    table.RunQuery(query);
    for (const RecordAddress address : query.Results())
        if (table.ReadRecord(BytesOf(note), address) && note.uniqueId == id)
            return address;
    return 0;
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
