#include "interchange/engine/report.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
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

// From here on one scan of the file is cheaper than a read for each; up to kMaxResults, as it holds their texts at
// once.
constexpr int kManyNotes = 100;
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

bool HoldsQuote(const NoteView& note)
{
    return (note.title.find('"') & note.text.find('"') & note.category.find('"')) != std::string_view::npos;
}

// What the writing needs at hand.
struct Writing {
    const ReportRequest& request;
    RecordQuery& query;
    ReportTarget& target;
    ReportOutcome& outcome;
    bool showConfidential;

    void Append(std::string& out, const NoteView& note) const
    {
        AppendNote(out, request.kind, note);
        outcome.withQuotes += HoldsQuote(note) ? 1 : 0;
    }
    bool FailRead() const
    {
        outcome.error = {FileErrorKind::Io, "read", request.table->Path(), EIO};
        return false;
    }
    // Nothing is appended for a note that is gone or hidden by now. False when the drive refuses it.
    bool AppendRead(std::string& out, RecordAddress address, NoteRecord& note) const
    {
        const RecordState state = request.table->ReadState(BytesOf(note), address);
        if (state == RecordState::Unreadable)
            return FailRead();
        if (state == RecordState::Live && (note.confidential == 0 || showConfidential))
            Append(out, ViewOf(note));
        return true;
    }
    bool Put(std::string_view block) const
    {
        if (!target.Append(block))
            return false;
        outcome.notes += block.empty() ? 0 : 1;
        return true;
    }
};

bool WriteOneByOne(const Writing& writing)
{
    if (writing.query.Sort(*writing.request.table, kDateOffset, kDateSize, CompareDates) != 1)
        return writing.FailRead();
    NoteRecord note;
    std::string block;
    for (const RecordAddress address : writing.query.Results()) {
        block.clear();
        if (!writing.AppendRead(block, address, note) || !writing.Put(block))
            return false;
    }
    return true;
}

// Reads the file once from front to end, which is far cheaper than thousands of reads here and there. Takes the results
// as the query left them, in file order, and sorts the blocks of text.
bool WriteFromScan(const Writing& writing)
{
    struct Block {
        int day;
        std::size_t start;
        std::size_t length;
    };
    const std::span<const RecordAddress> results = writing.query.Results();
    std::vector<Block> blocks;
    blocks.reserve(results.size());
    std::string text;
    text.reserve(results.size() * kUsualBlock);
    const auto endBlock = [&](const DateValue& date, std::size_t start) {
        blocks.push_back({DayNumberOf(date), start, text.size() - start});
    };
    bool allRead = true;
    auto next = results.begin();
    // What the scan passes over is gone by now, or could not be read: that is asked one by one.
    const auto readUpTo = [&](RecordAddress address) {
        NoteRecord note;
        for (; allRead && next != results.end() && *next < address; ++next) {
            const std::size_t start = text.size();
            allRead = writing.AppendRead(text, *next, note);
            if (text.size() > start)
                endBlock(note.date, start);
        }
    };
    writing.request.table->ForEachRecord(kWrittenFields, [&](RecordAddress address, std::span<const std::byte> fields) {
        readUpTo(address);
        if (next != results.end() && *next == address) {
            const NoteView note = ViewOf(fields);
            const std::size_t start = text.size();
            writing.Append(text, note);
            endBlock(note.date, start);
            ++next;
        }
        return allRead && next != results.end();
    });
    readUpTo(std::numeric_limits<RecordAddress>::max());
    std::ranges::stable_sort(blocks, {}, &Block::day);
    return allRead && std::ranges::all_of(blocks, [&](const Block& block) {
               return writing.Put(std::string_view(text).substr(block.start, block.length));
           });
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
    request.everyNote ? query.PrepareAllResults() : query.PrepareResults();
    AddTerms(query, request, range);
    if (request.table->RecordSize() != kNoteRecordSize || request.table->RunQuery(query) != 1) {
        outcome.error = {FileErrorKind::Io, "read", request.table->Path(), 0};
        return 0;
    }
    outcome.limitReached = query.limitReached;

    std::string head;
    if (request.kind == ReportKind::Report)
        WriteReportHeading(head, range.from, range.to);
    else
        WriteCsvHeader(head);
    const bool isMany = query.resultCount >= kManyNotes && query.resultCount <= kMaxResults;
    const Writing writing{request, query, target, outcome, SeesConfidential(request.table->GetRole())};
    if (!target.Append(head) || !(isMany ? WriteFromScan(writing) : WriteOneByOne(writing)) || !target.Finish()) {
        if (!outcome.error)
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

void WriteCsvHeader(std::string& out)
{
    out += "\"Title\",\"Text\",\"Color\",\"Category\"\r\n";
}

}  // namespace jotlet
