#include <nlohmann/json.hpp>
#include <vector>

#include "cli/commands.h"
#include "cli/find_note.h"
#include "cli/note_output.h"
#include "cli/note_values.h"
#include "cli/open_notes.h"
#include "platform/base/text.h"
#include "store/record_query.h"

namespace jotlet {
namespace {

struct ListOptions {
    FileOptions file;
    std::string category;
    std::string date;
    std::string find;
    std::string sort = "title";
    bool asJson = false;
};

struct ShowOptions {
    FileOptions file;
    std::string id;
    bool asJson = false;
};

struct FoundNote {
    RecordAddress address;
    NoteRecord note;
};

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

ExitCode ReadNotes(TableFile& table, const ListOptions& options, const std::optional<DateValue>& date,
                   std::vector<FoundNote>& notes)
{
    RecordQuery query;
    query.Reset();
    query.PrepareResults();
    AddTerms(options, date, query);
    const bool isByDate = options.sort == "date";
    if (!table.RunQuery(query) || !(isByDate ? query.Sort(table, kDateOffset, kDateSize, CompareDates)
                                             : query.Sort(table, kTitleOffset, kTitleSize, CompareTitles)))
        return Fail(ExitCode::NotOpened, options.file.path, "The notes cannot be read. Check the disk.");
    for (const RecordAddress address : query.Results()) {
        FoundNote& found = notes.emplace_back();
        found.address = address;
        if (!table.ReadRecord(BytesOf(found.note), address))
            notes.pop_back();  // deleted by another copy meanwhile
    }
    if (query.resultCount == kMaxResults)
        Fail(ExitCode::Done, options.file.path, "Note: 10,000 notes are the most that are shown. Narrow the search.");
    return ExitCode::Done;
}

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
    std::vector<FoundNote> notes;
    if (const ExitCode code = ReadNotes(*table, options, date, notes); code != ExitCode::Done)
        return code;
    table.reset();  // a reader of our output may stop or wait; the file is not held meanwhile

    if (options.asJson) {
        nlohmann::ordered_json list = nlohmann::ordered_json::array();
        for (const FoundNote& found : notes)
            list.push_back(NoteToJson(found.note, found.address));
        return PrintResult(JsonText(list));
    }
    std::string lines;
    for (const FoundNote& found : notes)
        lines += NoteLine(found.note);
    return PrintResult(lines);
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
    const RecordAddress address = FindNote(*table, *id, note);
    table.reset();
    if (address == 0)
        return FailNotFound(options.file.path, *id);
    return PrintResult(options.asJson ? JsonText(NoteToJson(note, address)) : NotePage(note));
}

void AddListOptions(CLI::App& command, ListOptions& options)
{
    command.add_option("--category", options.category, "only notes of this category");
    command.add_flag("--json", options.asJson, "a JSON array");
}

}  // namespace

void AddReadCommands(CLI::App& app, Command& chosen)
{
    auto listed = std::make_shared<ListOptions>();
    CLI::App* list = app.add_subcommand("list", "List notes, by title");
    AddFileOptions(*list, listed->file);
    AddListOptions(*list, *listed);
    list->add_option("--date", listed->date, "only notes of this day, YYYY-MM-DD");
    list->add_option("--sort", listed->sort, "title (the default) or date")->check(CLI::IsMember({"title", "date"}));
    list->callback([&chosen, listed] { chosen = [listed] { return RunList(*listed); }; });

    auto sought = std::make_shared<ListOptions>();
    sought->sort = "date";
    CLI::App* find = app.add_subcommand("find", "List notes with TEXT in their title or body, by date");
    AddFileOptions(*find, sought->file);
    find->add_option("TEXT", sought->find, "text to find; case of A to Z does not count")->required();
    AddListOptions(*find, *sought);
    find->callback([&chosen, sought] {
        chosen = [sought] {
            return sought->find.empty() ? Fail(ExitCode::Usage, "find", "Give a text to find.") : RunList(*sought);
        };
    });

    auto shown = std::make_shared<ShowOptions>();
    CLI::App* show = app.add_subcommand("show", "Show one note");
    AddFileOptions(*show, shown->file);
    show->add_option("ID", shown->id, "the note's id, 16 hex digits")->required();
    show->add_flag("--json", shown->asJson, "a JSON object");
    show->callback([&chosen, shown] { chosen = [shown] { return RunShow(*shown); }; });
}

}  // namespace jotlet
