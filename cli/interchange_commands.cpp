#include <algorithm>
#include <charconv>

#include "cli/commands.h"
#include "cli/find_note.h"
#include "cli/json_output.h"
#include "cli/note_values.h"
#include "cli/open_notes.h"
#include "cli/terminal_progress.h"
#include "interchange/engine/import_map.h"
#include "interchange/engine/import_run.h"
#include "interchange/engine/import_text.h"
#include "interchange/engine/report.h"
#include "platform/base/file_error_text.h"

namespace jotlet {
namespace {

// The range of the options; an end that was not given is the calendar's.
ExitCode ReadRange(const ReportOptions& options, ReportRequest& request)
{
    if (options.from.empty() && options.to.empty())
        return ExitCode::Done;
    request.selection = ReportSelection::DateRange;
    const std::optional<DateValue> from =
        options.from.empty() ? DateValue{1, 1, kCalendarFirstYear} : ParseIsoDate(options.from);
    const std::optional<DateValue> to =
        options.to.empty() ? DateValue{31, 12, CalendarLastYear()} : ParseIsoDate(options.to);
    if (!from)
        return FailDate("--from", options.from);
    if (!to)
        return FailDate("--to", options.to);
    if (DayNumberOf(*from) > DayNumberOf(*to))
        return Fail(ExitCode::Usage, "--from", "From date must be earlier than the To date.");
    request.fromDate = *from;
    request.toDate = *to;
    return ExitCode::Done;
}

// "Title=1" puts the first column into the field "Title".
ExitCode ReadMap(const std::vector<std::string>& pairs, ColumnMap& map, std::span<const ImportField> fields)
{
    std::fill(map.begin(), map.end(), std::string(kIgnoredField));
    for (const std::string& pair : pairs) {
        const std::size_t equals = pair.find('=');
        const std::string name = pair.substr(0, equals);
        const std::string number = equals == std::string::npos ? "" : pair.substr(equals + 1);
        std::size_t column = 0;
        const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), column);
        if (number.empty() || error != std::errc() || end != number.data() + number.size() || column == 0)
            return Fail(ExitCode::Usage, "--map", "\"" + pair + "\" is not of the form Title=1. Columns count from 1.");
        const auto isField = [&](const ImportField& field) { return NamesMatch(field.name, name) == 0; };
        const auto field = std::find_if(fields.begin(), fields.end(), isField);
        if (field == fields.end())
            return Fail(ExitCode::Usage, "--map", "\"" + name + "\" is none of Title, Text, Color, Category.");
        if (column > map.size())
            return Fail(ExitCode::Usage, "--map",
                        "There is no column " + number + ": the file has " + std::to_string(map.size()) + ".");
        ChooseField(map, column - 1, field->name);
    }
    return ExitCode::Done;
}

ExitCode MapColumns(const ImportOptions& options, DelimitedReader& reader, std::vector<ImportField>& fields)
{
    GetNoteImportFields(fields);
    std::vector<std::string> names;
    reader.Reset();
    if (reader.NextRecord()) {
        reader.Rewind();
        for (int code = DelimitedReader::kField; code == DelimitedReader::kField;) {
            code = reader.NextField();
            if (code != DelimitedReader::kNoMore)
                names.emplace_back(reader.Field());
        }
    }
    if (names.empty())
        return Fail(ExitCode::Refused, options.source,
                    "No complete row was found: rows end in a line break, and double quotes come in pairs.");
    ColumnMap map = PositionalMap(fields, names.size());
    if (!options.map.empty()) {
        if (const ExitCode code = ReadMap(options.map, map, fields); code != ExitCode::Done)
            return code;
    } else if (!options.noHeader) {
        std::vector<ImportAlias> aliases;
        GetNoteFieldAliases(aliases);
        map = AliasMap(std::move(map), names, fields, aliases);
    }
    if (!ApplyMap(map, fields))
        return Fail(
            ExitCode::Refused, options.source,
            "No column has a name that is known. Give --map Title=1,Text=2 (and --no-header where that is so).");
    return ExitCode::Done;
}

ExitCode LoadSource(const ImportOptions& options, DelimitedReader& reader)
{
    const LineEnds lineEnds = options.lineEnds == "crlf" ? LineEnds::CrLf : LineEnds::Auto;
    const ImportFileResult loaded = LoadImportText(reader, options.source, lineEnds);
    if (loaded.error == ImportFileError::System)
        return Fail(ExitCode::NotOpened, options.source, FileErrorText(loaded.detail));
    if (loaded.error == ImportFileError::TooLarge)
        return Fail(ExitCode::NotOpened, options.source, "The file is too large (2 GB). Split it.");
    if (loaded.error == ImportFileError::OutOfMemory)
        return Fail(ExitCode::NotOpened, options.source, "There is not enough memory for the file. Split it.");
    const bool isDetected = options.separator.empty();
    reader.separator = isDetected                   ? DelimitedReader::DetectSeparator(reader.Text())
                       : options.separator == "tab" ? '\t'
                                                    : ',';
    if (options.qualifier.empty())
        reader.qualifier = DelimitedReader::DetectQualifier(reader.Text());
    else
        reader.qualifier = options.qualifier == "quote" ? '"' : '\0';
    return ExitCode::Done;
}

std::string ImportText(const ImportCounts& counts)
{
    return std::to_string(counts.rows) + " rows, " + std::to_string(counts.added) + " added, " +
           std::to_string(counts.dropped) + " dropped\n";
}

ExitCode TellImport(const ImportOptions& options, const ImportCounts& counts, bool wasReplaced)
{
    if (counts.refused)
        return Fail(ExitCode::NoPermission, options.file.path,
                    "Program can't do this. You don't have permission. Use the Owner's or the Assistant's password.");
    if (counts.incompleteEnd)
        Fail(ExitCode::Done, options.source,
             "Note: the last whole row ends on line " + std::to_string(counts.lastLine) +
                 "; what stands behind it (an open quote, or no line break) was left out.");
    const ExitCode printed =
        PrintResult(options.asJson ? ImportJson(counts.rows, counts.added, counts.dropped) : ImportText(counts));
    if (counts.writeFailed && wasReplaced)
        return Fail(
            ExitCode::Refused, options.file.path,
            "The file was replaced or removed by another program; the import ended there, and what it added is not "
            "in the file that stands there now. Import again.");
    if (counts.writeFailed)
        return Fail(
            ExitCode::Refused, options.file.path,
            "A note could not be written; the import ended there. Check the disk's free space and import again: "
            "what is in the file already is left out.");
    if (counts.added == 0)
        return Fail(ExitCode::Refused, options.source,
                    "Nothing was added: no row holds a note that can be read and is not in the file already.");
    return printed;
}

}  // namespace

ExitCode RunReport(const ReportOptions& options, ReportKind kind)
{
    ReportRequest request;
    request.kind = kind;
    request.findEnabled = !options.find.empty();
    request.findText = options.find;
    request.everyNote = true;
    ExitCode code = ReadRange(options, request);
    std::unique_ptr<TableFile> table;
    if (code == ExitCode::Done)
        code = OpenNotes(options.file, table);
    if (code != ExitCode::Done)
        return code;
    request.table = table.get();
    ReportOutcome outcome;
    if (!GenerateReportFile(request, options.target, &outcome)) {
        const bool isSource = outcome.error.path == options.file.path;
        return Fail(ExitCode::Refused, outcome.error.path,
                    FileErrorText(outcome.error) + (isSource ? " Not all notes can be read; none were written." : ""));
    }
    if (kind == ReportKind::Export && outcome.withQuotes > 0)
        Fail(ExitCode::Done, options.target,
             "Note: what holds a quotation mark may not come back as it is from an import. Such notes: " +
                 std::to_string(outcome.withQuotes) + '.');
    return ExitCode::Done;
}

ExitCode RunImport(const ImportOptions& options)
{
    std::unique_ptr<TableFile> table;
    ExitCode code = OpenNotes(options.file, table);
    if (code == ExitCode::Done)
        code = RequireChange(*table);
    DelimitedReader reader;
    if (code == ExitCode::Done)
        code = LoadSource(options, reader);
    std::vector<ImportField> fields;
    if (code == ExitCode::Done)
        code = MapColumns(options, reader, fields);
    if (code != ExitCode::Done)
        return code;
    TerminalProgress progress;
    ImportRequest request;
    request.table = table.get();
    request.reader = &reader;
    request.fields = fields;
    request.firstLineNames = !options.noHeader;
    request.progress = &progress;
    const ImportCounts counts = RunNoteImport(request);
    const bool wasReplaced = table->WasReplaced();
    table.reset();
    return TellImport(options, counts, wasReplaced);
}

}  // namespace jotlet
