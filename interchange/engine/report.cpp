#include "interchange/engine/report.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

#include "interchange/engine/report_target.h"
#include "notes/model/palette.h"
#include "platform/base/paths.h"
#include "platform/base/text.h"
#include "store/record_query.h"
#include "store/table_file.h"

namespace jotlet {

namespace {

constexpr int kManyNotes = 100;            // from here on one scan of the file is cheaper than a read for each
constexpr std::size_t kUsualBlock = 1024;  // bytes of text to expect of a note

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

// What is written of a note.
struct NoteView {
    DateValue date;
    std::uint32_t colour = 0;
    std::string_view category;
    std::string_view title;
    std::string_view text;
};

NoteView ViewOf(const NoteRecord& note)
{
    return {note.date, note.colour, FieldText(note.category), FieldText(note.title), FieldText(note.text)};
}

void AppendReport(std::string& out, const NoteView& note)
{
    AppendAll(out, {"Date: ", DateText(note.date), "\r\nCategory: ", note.category, "\r\nTitle: ", note.title,
                    "\r\nNotes: ", note.text, "\r\n\r\n"});
}

void AppendCsv(std::string& out, const NoteView& note)
{
    AppendAll(out, {"\"", note.title, "\",\"", note.text, "\",\"", std::to_string(ColourToIndex(note.colour)), "\",\"",
                    note.category, "\"\r\n"});
}

void AppendNote(std::string& out, ReportKind kind, const NoteView& note)
{
    kind == ReportKind::Report ? AppendReport(out, note) : AppendCsv(out, note);
}

// The parts of a record that are written, as a scan delivers them: one behind the other.
constexpr FieldRange kWrittenFields[] = {
    {kCategoryOffset, kCategorySize},
    {kDateOffset, kDateSize},
    {kColourOffset, kNoteRecordSize - kColourOffset},  // colour, title and text
};

NoteView ViewOf(std::span<const std::byte> fields)
{
    const std::span<const char> chars(reinterpret_cast<const char*>(fields.data()), fields.size());
    NoteView view;
    view.category = FieldText(chars.first(kCategorySize));
    std::memcpy(&view.date, chars.subspan(kCategorySize).data(), sizeof view.date);
    const auto content = chars.subspan(kCategorySize + kDateSize);
    std::memcpy(&view.colour, content.data(), sizeof view.colour);
    view.title = FieldText(content.subspan(kTitleOffset - kColourOffset, kTitleSize));
    view.text = FieldText(content.subspan(kTextOffset - kColourOffset, kTextSize));
    return view;
}

bool WriteFew(const ReportRequest& request, RecordQuery& query, ReportTarget& target, ReportOutcome& outcome)
{
    query.Sort(*request.table, kDateOffset, kDateSize, CompareDates);
    NoteRecord note;
    std::string block;
    for (const RecordAddress address : query.Results()) {
        if (request.table->ReadRecord(BytesOf(note), address) != 1) {
            ++outcome.skipped;
            continue;
        }
        block.clear();
        AppendNote(block, request.kind, ViewOf(note));
        if (!target.Append(block))
            return false;
        ++outcome.notes;
    }
    return true;
}

// Reads the file once from front to end, which is far cheaper than thousands of reads here and there. Takes the results
// as the query left them, in file order, and sorts the blocks of text.
bool WriteMany(const ReportRequest& request, RecordQuery& query, ReportTarget& target, ReportOutcome& outcome)
{
    struct Block {
        int day;
        std::size_t start;
        std::size_t length;
    };
    const std::span<const RecordAddress> results = query.Results();
    std::vector<Block> blocks;
    blocks.reserve(results.size());
    std::string text;
    text.reserve(results.size() * kUsualBlock);
    auto next = results.begin();
    request.table->ForEachRecord(kWrittenFields, [&](RecordAddress address, std::span<const std::byte> fields) {
        while (next != results.end() && *next < address)
            ++next;
        if (next != results.end() && *next == address) {
            const NoteView note = ViewOf(fields);
            const std::size_t start = text.size();
            AppendNote(text, request.kind, note);
            blocks.push_back({DayNumberOf(note.date), start, text.size() - start});
        }
        return next != results.end();
    });
    outcome.skipped = results.size() - blocks.size();
    std::ranges::stable_sort(blocks, {}, &Block::day);
    for (const Block& block : blocks) {
        if (!target.Append(std::string_view(text).substr(block.start, block.length)))
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
    query.PrepareResults();
    AddTerms(query, request, range);
    if (request.table->RecordSize() != kNoteRecordSize || request.table->RunQuery(query) != 1) {
        outcome.error = {FileErrorKind::Io, "read", request.table->Path(), 0};
        return 0;
    }
    outcome.limitReached = query.resultCount == kMaxResults;

    std::string head;
    if (request.kind == ReportKind::Report)
        WriteReportHeading(head, range.from, range.to);
    else
        WriteCsvHeader(head);
    const auto writeNotes = query.resultCount < kManyNotes ? WriteFew : WriteMany;
    if (!target.Append(head) || !writeNotes(request, query, target, outcome) || !target.Finish()) {
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
    AppendReport(out, ViewOf(note));
}

void WriteCsvHeader(std::string& out)
{
    out += "\"Title\",\"Text\",\"Color\",\"Category\"\r\n";
}

void WriteCsvRow(std::string& out, const NoteRecord& note)
{
    AppendCsv(out, ViewOf(note));
}

}  // namespace jotlet
