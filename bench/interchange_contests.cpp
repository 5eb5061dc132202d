#include "bench/interchange_contests.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

#include "bench/jotlet_notes.h"
#include "bench/sqlite_notes.h"
#include "interchange/engine/delimited_reader.h"
#include "interchange/engine/import_map.h"
#include "interchange/engine/import_run.h"
#include "interchange/engine/report.h"

namespace jotlet {
namespace {

struct Arena {
    explicit Arena(std::string folder) : folder(std::move(folder)) {}

    const std::string folder;
    const std::vector<SampleNote> notes = MakeNotes();
    const std::vector<SampleNote> others = MakeNotes(kNoteCount, 2);
    const std::string csv = CsvOf(notes);
    JotletNotes jotlet{folder + "/interchange.jot"};
};

using Shared = std::shared_ptr<Arena>;

void ImportInto(JotletNotes& notes, const std::string& csv, std::size_t rows)
{
    DelimitedReader reader;
    reader.SetText(csv);
    std::vector<ImportField> fields;
    GetNoteImportFields(fields);
    Expect("map", ApplyMap(PositionalMap(fields, fields.size()), fields), 1);
    ImportRequest request;
    request.table = notes.table.get();
    request.reader = &reader;
    request.fields = fields;
    const ImportCounts counts = RunNoteImport(request);
    Expect("import", static_cast<long>(counts.added), static_cast<long>(rows));
}

double ImportSeconds(const Shared& arena, const std::string& csv, int rows, bool isFilled)
{
    JotletNotes own(arena->folder + "/import.jot");
    if (isFilled)
        own.Fill(arena->others);
    const double seconds = Timed([&] { ImportInto(own, csv, static_cast<std::size_t>(rows)); });
    Expect("imported", own.Count(), isFilled ? rows + kNoteCount : rows);
    return seconds;
}

Contest ImportContest(const Shared& arena, bool isFilled)
{
    return {isFilled ? "import-more" : "import",
            isFilled ? "import of 10,000 CSV rows beside 10,000 notes" : "import of 10,000 CSV rows into an empty file",
            isFilled ? 2.5 : 2.0,
            1,
            [=] { return ImportSeconds(arena, arena->csv, kNoteCount, isFilled); },
            [=] {
                SqliteNotes other(arena->folder + "/import.db");
                if (isFilled)
                    other.Fill(arena->others);
                const double seconds = Timed([&] { other.Fill(arena->notes); });
                Expect("imported", other.Count(), isFilled ? 2 * kNoteCount : kNoteCount);
                return seconds;
            }};
}

Contest ImportGrowth(const Shared& arena)
{
    std::vector<SampleNote> both = arena->notes;
    both.insert(both.end(), arena->others.begin(), arena->others.end());
    const auto twice = std::make_shared<const std::string>(CsvOf(both));
    return {"import-twice",
            "import of 20,000 CSV rows",
            2.2,
            1,
            [=] { return ImportSeconds(arena, *twice, 2 * kNoteCount, false); },
            [=] { return ImportSeconds(arena, arena->csv, kNoteCount, false); },
            "10,000 rows"};
}

// Reads the whole file, in the order of its bytes and in pieces of a handy size, and gives each to `take`.
template <typename Take>
void Scan(const std::string& path, Take&& take)
{
    static std::vector<char> piece(std::size_t{1} << 18);
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    Expect("open", file >= 0, 1);
    ssize_t got = 0;
    while ((got = read(file, piece.data(), piece.size())) > 0)
        take(std::string_view(piece.data(), static_cast<std::size_t>(got)));
    Expect("read", got, 0);
    close(file);
}

// As lasting as the export: a new file, on the disk before it takes the name.
void WritePlainly(const std::string& path, const std::string& bytes)
{
    const std::string beside = path + ".new";
    const int file = open(beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    Expect("write", write(file, bytes.data(), bytes.size()), static_cast<long>(bytes.size()));
    Expect("sync", fdatasync(file), 0);
    close(file);
    Expect("rename", std::rename(beside.c_str(), path.c_str()), 0);
}

// Against a bare write of the same bytes and one reading of the note file.
Contest TextFile(const Shared& arena, ReportKind kind)
{
    const bool isExport = kind == ReportKind::Export;
    ReportRequest request;
    request.kind = kind;
    request.table = arena->jotlet.table.get();
    const auto generate = [=](const std::string& path) {
        ReportOutcome outcome;
        Expect("text file", GenerateReportFile(request, path, &outcome), 1);
        Expect("notes", static_cast<long>(outcome.notes), kNoteCount);
    };
    const std::string path = arena->folder + (isExport ? "/out.csv" : "/report.txt");
    generate(path);
    const auto bytes = std::make_shared<std::string>();
    Scan(path, [&](std::string_view piece) { *bytes += piece; });
    return {isExport ? "export" : "report",
            isExport ? "export of 10,000 notes" : "report of 10,000 notes",
            1.5,
            1,
            [=] { return Timed([&] { generate(path); }); },
            [=] {
                return Timed([&] {
                    std::size_t size = 0;
                    Scan(arena->jotlet.path, [&](std::string_view piece) { size += piece.size(); });
                    Expect("scan", size > bytes->size(), 1);
                    WritePlainly(path + ".plain", *bytes);
                });
            },
            "scan, write"};
}

}  // namespace

std::vector<Contest> MakeInterchangeContests(const std::string& folder)
{
    const auto arena = std::make_shared<Arena>(folder);
    arena->jotlet.Fill(arena->notes);
    return {ImportContest(arena, false), ImportContest(arena, true), ImportGrowth(arena),
            TextFile(arena, ReportKind::Export), TextFile(arena, ReportKind::Report)};
}

}  // namespace jotlet
