#include "bench/sqlite_notes.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace jotlet {
namespace {

void BindText(sqlite3_stmt* statement, int index, std::string_view text)
{
    sqlite3_bind_text(statement, index, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

}  // namespace

SqliteNotes::SqliteNotes(const std::string& path) : path(path), database(nullptr, sqlite3_close)
{
    for (const char* end : {"", "-wal", "-shm", "-journal"})
        std::filesystem::remove(path + end);
    Open();
}

void SqliteNotes::Reopen()
{
    for (Statement* statement : {&all, &category, &find, &insert, &update, &version})
        statement->reset();
    database.reset();
    Open();
}

void SqliteNotes::Open()
{
    sqlite3* opened = nullptr;
    sqlite3_open(path.c_str(), &opened);
    database.reset(opened);
    Execute("PRAGMA journal_mode=WAL");
    Execute("PRAGMA synchronous=FULL");
    Execute(
        "CREATE TABLE IF NOT EXISTS notes (id INTEGER PRIMARY KEY, title TEXT, text TEXT, category TEXT,"
        " date INTEGER, colour INTEGER, confidential INTEGER)");
    all = Prepare("SELECT id FROM notes ORDER BY title COLLATE NOCASE");
    category = Prepare("SELECT id FROM notes WHERE category = ? COLLATE NOCASE ORDER BY title COLLATE NOCASE");
    find = Prepare("SELECT id FROM notes WHERE title LIKE ?1 OR text LIKE ?1 ORDER BY date");
    insert = Prepare("INSERT INTO notes VALUES (NULL, ?, ?, ?, ?, ?, 0)");
    update = Prepare("UPDATE notes SET text = ? WHERE id = ?");
    version = Prepare("PRAGMA data_version");
}

void SqliteNotes::Fill(const std::vector<SampleNote>& notes)
{
    Execute("BEGIN");
    for (const SampleNote& note : notes)
        Add(note);
    Execute("COMMIT");
}

int SqliteNotes::AllByTitle()
{
    return CountRows(all.get());
}

int SqliteNotes::CategoryByTitle(std::string_view name)
{
    BindText(category.get(), 1, name);
    return CountRows(category.get());
}

int SqliteNotes::TextByDate(std::string_view text)
{
    BindText(find.get(), 1, '%' + std::string(text) + '%');
    return CountRows(find.get());
}

void SqliteNotes::Add(const SampleNote& note)
{
    sqlite3_stmt* statement = insert.get();
    BindText(statement, 1, note.title);
    BindText(statement, 2, note.text);
    BindText(statement, 3, note.category);
    sqlite3_bind_int(statement, 4, note.date.year * 10000 + note.date.month * 100 + note.date.day);
    sqlite3_bind_int(statement, 5, static_cast<int>(note.colour));
    CountRows(statement);
}

void SqliteNotes::Edit(int id, std::string_view text)
{
    BindText(update.get(), 1, text);
    sqlite3_bind_int(update.get(), 2, id);
    CountRows(update.get());
    if (sqlite3_changes(database.get()) != 1)
        std::abort();
}

long SqliteNotes::DataVersion()
{
    sqlite3_step(version.get());
    const long value = sqlite3_column_int(version.get(), 0);
    sqlite3_reset(version.get());
    return value;
}

void SqliteNotes::DeleteEveryThird()
{
    Execute(
        "DELETE FROM notes WHERE rowid IN (SELECT id FROM (SELECT id, row_number() OVER () AS n FROM notes)"
        " WHERE n % 3 = 0)");
}

void SqliteNotes::Vacuum()
{
    Execute("VACUUM");
}

int SqliteNotes::Count()
{
    return CountRows(Prepare("SELECT id FROM notes").get());
}

SqliteNotes::Statement SqliteNotes::Prepare(const char* sql)
{
    sqlite3_stmt* statement = nullptr;
    Check(sqlite3_prepare_v2(database.get(), sql, -1, &statement, nullptr));
    return {statement, sqlite3_finalize};
}

int SqliteNotes::CountRows(sqlite3_stmt* statement)
{
    int rows = 0;
    int code = SQLITE_OK;
    while ((code = sqlite3_step(statement)) == SQLITE_ROW)
        rows += sqlite3_column_int64(statement, 0) != 0 ? 1 : 0;
    Check(code);
    sqlite3_reset(statement);
    return rows;
}

void SqliteNotes::Execute(const char* sql)
{
    Check(sqlite3_exec(database.get(), sql, nullptr, nullptr, nullptr));
}

void SqliteNotes::Check(int code)
{
    if (code == SQLITE_OK || code == SQLITE_DONE || code == SQLITE_ROW)
        return;
    std::fprintf(stderr, "SQLite: %s\n", sqlite3_errmsg(database.get()));
    std::exit(1);
}

}  // namespace jotlet
