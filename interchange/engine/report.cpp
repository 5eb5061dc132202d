#include "interchange/engine/report.h"

#include <string_view>

#include "interchange/engine/report_target.h"
#include "notes/model/palette.h"
#include "platform/base/paths.h"
#include "platform/base/text.h"
#include "store/record_query.h"
#include "store/table_file.h"

namespace jotlet {

namespace {

struct DateRange {
    DateValue from;
    DateValue to;
};

// What counts as "all" ends with January of the last year.
DateRange EffectiveRange(const ReportRequest& request)
{
    if (request.selection == ReportSelection::DateRange)
        return {request.fromDate, request.toDate};
    return {{1, 1, kCalendarFirstYear}, {31, 1, CalendarLastYear()}};
}

void AddTerms(RecordQuery& query, const ReportRequest& request, const DateRange& range)
{
    if (request.selection == ReportSelection::CurrentRecord) {
        query.AddInt64Term(kUniqueIdOffset, TermKind::Equal, request.currentId, Connective::And);
        return;
    }
    query.AddDateTerm(kDateOffset, TermKind::AtLeast, range.from.day, range.from.month, range.from.year,
                      Connective::And);
    query.AddDateTerm(kDateOffset, TermKind::AtMost, range.to.day, range.to.month, range.to.year, Connective::And);
    if (request.findEnabled) {
        query.AddTextTerm(kTitleOffset, kTitleSize, TermKind::Contains, request.findText, Connective::Or);
        query.AddTextTerm(kTextOffset, kTextSize, TermKind::Contains, request.findText, Connective::Or);
    }
}

std::string DateText(const DateValue& date)
{
    std::string text;
    FormatDateValue(text, date);
    return text;
}

void AppendAll(std::string& out, std::initializer_list<std::string_view> pieces)
{
    for (const std::string_view piece : pieces)
        out += piece;
}

bool WriteNotes(const ReportRequest& request, const RecordQuery& query, ReportTarget& target, ReportOutcome& outcome)
{
    const bool report = request.kind == ReportKind::Report;
    NoteRecord note;
    std::string block;
    for (const RecordAddress address : query.Results()) {
        if (request.table->ReadRecord(BytesOf(note), address) != 1) {
            ++outcome.skipped;
            continue;
        }
        block.clear();
        if (report)
            WriteReportRecord(block, note);
        else
            WriteCsvRow(block, note);
        if (!target.Append(block))
            return false;
        ++outcome.notes;
    }
    return true;
}

}  // namespace

int GenerateReportFile(const ReportRequest& request, const std::string& path, ReportOutcome* outcomeOut)
{
    ReportOutcome local;
    ReportOutcome& outcome = outcomeOut != nullptr ? *outcomeOut : local;
    outcome = {};

    const DateRange range = EffectiveRange(request);
    ReportTarget target(path);
    if (target.Error()) {
        outcome.error = target.Error();
        return 0;
    }
    RecordQuery query;
    query.Reset();
    query.PrepareResults();
    AddTerms(query, request, range);
    if (request.table->RecordSize() != kNoteRecordSize || request.table->RunQuery(query) != 1) {
        outcome.error = {FileErrorKind::Io, "read", request.table->Path(), 0};
        return 0;
    }
    query.Sort(*request.table, kDateOffset, kDateSize, CompareDates);
    outcome.limitReached = query.resultCount == kMaxResults;

    std::string head;
    if (request.kind == ReportKind::Report)
        WriteReportHeading(head, range.from, range.to);
    else
        WriteCsvHeader(head);
    if (!target.Append(head) || !WriteNotes(request, query, target, outcome) || !target.Finish()) {
        outcome.error = target.Error();
        return 0;
    }
    return 1;
}

int GetReportPath(std::string& path)
{
    path = GetDataFilePath("report.txt");
    return 1;
}

void WriteReportHeading(std::string& out, const DateValue& from, const DateValue& to)
{
    AppendAll(out, {"Jotlet Report (from ", DateText(from), " to ", DateText(to), ")\r\n\r\n"});
}

void WriteReportRecord(std::string& out, const NoteRecord& note)
{
    AppendAll(out, {"Date: ", DateText(note.date), "\r\nCategory: ", FieldText(note.category),
                    "\r\nTitle: ", FieldText(note.title), "\r\nNotes: ", FieldText(note.text), "\r\n\r\n"});
}

void WriteCsvHeader(std::string& out)
{
    out += "\"Title\",\"Text\",\"Color\",\"Category\"\r\n";
}

void WriteCsvRow(std::string& out, const NoteRecord& note)
{
    AppendAll(out, {"\"", FieldText(note.title), "\",\"", FieldText(note.text), "\",\"",
                    std::to_string(ColourToIndex(note.colour)), "\",\"", FieldText(note.category), "\"\r\n"});
}

}  // namespace jotlet
