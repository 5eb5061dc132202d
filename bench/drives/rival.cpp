#include "bench/drives/rival.h"

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <vector>

#include "bench/drives/journal.h"
#include "bench/drives/measure.h"
#include "notes/model/note_record.h"
#include "store/open_table.h"
#include "store/record_query.h"

namespace jotlet {
namespace {

constexpr int kNotes = 10'000;
constexpr int kAdds = 15;
constexpr int kRefreshes = 3;
constexpr const char* kTable = "CREATE TABLE notes (id INTEGER PRIMARY KEY, title TEXT, text TEXT)";
constexpr const char* kAll = "SELECT title, id, text FROM notes ORDER BY title";

class Database {
public:
    explicit Database(const std::string& path)
    {
        sqlite3_open(path.c_str(), &database);
        Do("PRAGMA journal_mode=DELETE");
        Do("PRAGMA synchronous=FULL");
    }
    ~Database() { sqlite3_close(database); }
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    // Every row is read, no row is kept.
    bool Do(const char* sql)
    {
        char* message = nullptr;
        const auto skip = [](void*, int, char**, char**) { return 0; };
        if (sqlite3_exec(database, sql, skip, nullptr, &message) == SQLITE_OK)
            return true;
        std::fprintf(stderr, "SQLite: %s\n", message);
        sqlite3_free(message);
        return false;
    }
    bool Add(const std::string& title, const std::string& text)
    {
        return Do(("INSERT INTO notes VALUES (NULL, '" + title + "', '" + text + "')").c_str());
    }

private:
    sqlite3* database = nullptr;
};

bool FillDatabase(const std::string& path)
{
    Database database(path);
    bool isDone = database.Do(kTable) && database.Do("BEGIN");
    for (int i = 0; i < kNotes && isDone; ++i) {
        const std::string title = SampleTitle(i, kNotes);
        isDone = database.Add(title, TextOf(title, 1));
    }
    return isDone && database.Do("COMMIT");
}

// Times of one kind of work, done by both in turns.
class Race {
public:
    template <typename Ours, typename Theirs>
    void Run(int rounds, Ours ours, Theirs theirs)
    {
        for (int i = 0; i < rounds && isValid; ++i) {
            isValid = Time(ours, own) && Time(theirs, other);
        }
    }
    void Print()
    {
        if (isValid)
            std::printf("%.2f ", Median(own) / Median(other));
        else
            std::printf("- ");
    }

private:
    template <typename Work>
    static bool Time(Work& work, std::vector<double>& times)
    {
        const auto start = std::chrono::steady_clock::now();
        const bool isDone = work();
        times.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        return isDone;
    }
    static double Median(std::vector<double>& times)
    {
        std::sort(times.begin(), times.end());
        return times[times.size() / 2];
    }

    std::vector<double> own;
    std::vector<double> other;
    bool isValid = true;
};

}  // namespace

int Rival(const std::string& server, const std::string& mount, const std::string& foreignMount, const std::string& file)
{
    const std::string notes = '/' + file;
    const std::string database = notes + ".db";
    if (!FillDatabase(server + database))
        return 1;
    OpenedTable own = OpenTable(mount + notes, "", kNoteRecordSize);
    OpenedTable foreign = OpenTable(foreignMount + notes, "", kNoteRecordSize);
    if (!own || !foreign)
        return 3;
    Database other(mount + database);
    Database foreignOther(foreignMount + database);
    RecordQuery query;
    QueryByTitle(*own.table, query);
    other.Do(kAll);

    const std::string text = TextOf("added", 1);
    Race adding;
    adding.Run(
        kAdds, [&] { return AddNote(*own.table, "added", text); }, [&] { return other.Add("added", text); });
    adding.Print();
    Race refreshing;
    for (int i = 0; i < kRefreshes; ++i) {
        AddNote(*foreign.table, "foreign", text);
        foreignOther.Add("foreign", text);
        refreshing.Run(
            1, [&] { return Refresh(*own.table, query); }, [&] { return other.Do(kAll); });
    }
    refreshing.Print();
    std::printf("\n");
    return 0;
}

}  // namespace jotlet
