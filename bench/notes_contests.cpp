#include "bench/notes_contests.h"

#include <memory>

#include "bench/jotlet_notes.h"
#include "bench/sqlite_notes.h"
#include "store/compaction.h"
#include "store/record_query.h"

namespace jotlet {
namespace {

struct Arena {
    explicit Arena(std::string folder) : folder(std::move(folder)) {}

    const std::string folder;
    const std::vector<SampleNote> notes = MakeNotes();
    const std::vector<SampleNote> others = MakeNotes(kNoteCount, 2);
    JotletNotes jotlet{folder + "/notes.jot"};
    SqliteNotes sqlite{folder + "/notes.db"};
    int category = 0;  // hits, the same on both sides
    int sought = 0;
    std::size_t nextAdd[2] = {0, 0};
    std::size_t nextEdit[2] = {0, 0};
};

using Terms = std::function<void(RecordQuery&)>;
using Shared = std::shared_ptr<Arena>;

int RunSorted(TableFile& table, const Terms& terms, std::uint32_t key, std::uint32_t size, FieldComparator comparator)
{
    RecordQuery query;
    query.Reset();
    query.PrepareResults();
    terms(query);
    Expect("query", table.RunQuery(query), 1);
    Expect("sort", query.Sort(table, key, size, comparator), 1);
    return query.resultCount;
}

int ByTitle(TableFile& table, const Terms& terms)
{
    return RunSorted(table, terms, kTitleOffset, kTitleSize, CompareTitles);
}

void AllTerms(RecordQuery& query)
{
    query.AddAllTerm();
}

void CategoryTerms(RecordQuery& query)
{
    query.AddTextTerm(kCategoryOffset, kCategorySize, TermKind::Equal, kSoughtCategory, Connective::And);
}

void TextTerms(RecordQuery& query)
{
    query.AddTextTerm(kTitleOffset, kTitleSize, TermKind::Contains, kSoughtText, Connective::Or);
    query.AddTextTerm(kTextOffset, kTextSize, TermKind::Contains, kSoughtText, Connective::Or);
}

Contest AllByTitle(const Shared& arena)
{
    return {"all",
            "all notes by title",
            0.5,
            3,
            [arena] { return Timed([&] { Expect("all", ByTitle(*arena->jotlet.table, AllTerms), kNoteCount); }); },
            [arena] { return Timed([&] { Expect("all", arena->sqlite.AllByTitle(), kNoteCount); }); }};
}

Contest CategoryByTitle(const Shared& arena)
{
    return {
        "category",
        "one category by title",
        0.7,
        5,
        [arena] {
            return Timed([&] { Expect("category", ByTitle(*arena->jotlet.table, CategoryTerms), arena->category); });
        },
        [arena] {
            return Timed([&] { Expect("category", arena->sqlite.CategoryByTitle(kSoughtCategory), arena->category); });
        }};
}

Contest TextByDate(const Shared& arena)
{
    return {"find",
            "text in title or body, by date",
            0.7,
            3,
            [arena] {
                return Timed([&] {
                    Expect("find", RunSorted(*arena->jotlet.table, TextTerms, kDateOffset, kDateSize, CompareDates),
                           arena->sought);
                });
            },
            [arena] { return Timed([&] { Expect("find", arena->sqlite.TextByDate(kSoughtText), arena->sought); }); }};
}

// The files that grow are not those of the queries.
Contest AddOne(const Shared& arena)
{
    auto own = std::make_shared<JotletNotes>(arena->folder + "/add.jot");
    auto other = std::make_shared<SqliteNotes>(arena->folder + "/add.db");
    own->Fill(arena->notes);
    other->Fill(arena->notes);
    other->Reopen();
    return {"add",
            "add one note, on the disk",
            1.0,
            50,
            [arena, own] {
                const SampleNote& note = arena->others[arena->nextAdd[0]++ % arena->others.size()];
                return Timed([&] { own->Add(note); });
            },
            [arena, other] {
                const SampleNote& note = arena->others[arena->nextAdd[1]++ % arena->others.size()];
                return Timed([&] { other->Add(note); });
            }};
}

void EditOne(TableFile& table, RecordAddress address, const std::string& text)
{
    NoteRecord note;
    Expect("lock", table.LockRecord(address), 1);
    Expect("read", table.ReadRecord(BytesOf(note), address), 1);
    note.text.fill(0);
    std::copy(text.begin(), text.end(), note.text.begin());
    Expect("write", table.WriteRecord(BytesOf(note), address), 1);
    Expect("unlock", table.UnlockRecord(address), 1);
    Expect("flush", table.Flush(), 1);
}

Contest EditContest(const Shared& arena)
{
    auto own = std::make_shared<JotletNotes>(arena->folder + "/edit.jot");
    auto other = std::make_shared<SqliteNotes>(arena->folder + "/edit.db");
    own->Fill(arena->notes);
    other->Fill(arena->notes);
    other->Reopen();
    return {"edit",
            "lock, read, write, unlock, flush one note",
            1.0,
            50,
            [arena, own] {
                const std::size_t at = arena->nextEdit[0]++ * 7919 % arena->notes.size();
                const auto address = static_cast<RecordAddress>(kFirstRecordOffset + at * kNoteRecordSize);
                return Timed([&] { EditOne(*own->table, address, arena->others[at].text); });
            },
            [arena, other] {
                const std::size_t at = arena->nextEdit[1]++ * 7919 % arena->notes.size();
                return Timed([&] { other->Edit(static_cast<int>(at) + 1, arena->others[at].text); });
            }};
}

Contest Poll(const Shared& arena)
{
    constexpr int kPolls = 1000;
    return {"poll",
            "idle poll of the change stamp",
            0.5,
            5,
            [arena] {
                const auto stamp = static_cast<long>(arena->jotlet.table->GetChangeStamp());
                return Timed([&] {
                           for (int i = 0; i < kPolls; ++i)
                               Expect("stamp", static_cast<long>(arena->jotlet.table->GetChangeStamp()), stamp);
                       }) /
                       kPolls;
            },
            [arena] {
                const long version = arena->sqlite.DataVersion();
                return Timed([&] {
                           for (int i = 0; i < kPolls; ++i)
                               Expect("version", arena->sqlite.DataVersion(), version);
                       }) /
                       kPolls;
            }};
}

Contest Compact(const Shared& arena)
{
    constexpr int kKept = kNoteCount - kNoteCount / 3;
    return {"compact",
            "compaction with a third deleted",
            1.0,
            1,
            [arena] {
                JotletNotes own(arena->folder + "/compact.jot");
                own.Fill(arena->notes);
                for (std::uint32_t at = 2; at < kNoteCount; at += 3)
                    own.table->DeleteRecord(static_cast<RecordAddress>(kFirstRecordOffset + at * kNoteRecordSize));
                own.table->Flush();
                own.Close();
                const double seconds = Timed([&] { Expect("compact", CheckAfterCrash(own.path, 1), 1); });
                own.Open();
                Expect("kept", own.Count(), kKept);
                return seconds;
            },
            [arena] {
                SqliteNotes other(arena->folder + "/compact.db");
                other.Fill(arena->notes);
                other.DeleteEveryThird();
                const double seconds = Timed([&] { other.Vacuum(); });
                Expect("kept", other.Count(), kKept);
                return seconds;
            }};
}

}  // namespace

std::vector<Contest> MakeNotesContests(const std::string& folder)
{
    const auto arena = std::make_shared<Arena>(folder);
    arena->jotlet.Fill(arena->notes);
    arena->sqlite.Fill(arena->notes);
    arena->category = arena->sqlite.CategoryByTitle(kSoughtCategory);
    arena->sought = arena->sqlite.TextByDate(kSoughtText);
    return {AllByTitle(arena), CategoryByTitle(arena), TextByDate(arena), AddOne(arena), EditContest(arena),
            Poll(arena),       Compact(arena)};
}

}  // namespace jotlet
