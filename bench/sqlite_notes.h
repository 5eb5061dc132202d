// The rival: the same notes in a SQLite database, with one operation for each piece of work that Jotlet does.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>
#include <vector>

#include "bench/note_data.h"

namespace jotlet {

// Write-ahead log and synchronous=FULL: a change that was confirmed survives a power failure, as with Jotlet's Flush.
// Any failure ends the program, since its times would mean nothing.
class SqliteNotes {
public:
    // Makes a new database, in place of one that is there.
    explicit SqliteNotes(const std::string& path);

    // Closes the database and opens it as the next start of a program would: its write-ahead log is empty then, and
    // grows.
    void Reopen();
    void Fill(const std::vector<SampleNote>& notes);  // one transaction
    int AllByTitle();                                 // each gives the count of ids that came
    int CategoryByTitle(std::string_view category);
    int TextByDate(std::string_view text);
    void Add(const SampleNote& note);
    void Edit(int id, std::string_view text);  // ids count from 1, in the order of the adds
    long DataVersion();
    void DeleteEveryThird();
    void Vacuum();
    int Count();

private:
    using Statement = std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)>;
    Statement Prepare(const char* sql);
    int CountRows(sqlite3_stmt* statement);
    void Execute(const char* sql);
    void Check(int code);
    void Open();

    std::string path;
    std::unique_ptr<sqlite3, int (*)(sqlite3*)> database;
    // Prepared once, as a program would that does the same again and again.
    Statement all{nullptr, sqlite3_finalize};
    Statement category{nullptr, sqlite3_finalize};
    Statement find{nullptr, sqlite3_finalize};
    Statement insert{nullptr, sqlite3_finalize};
    Statement update{nullptr, sqlite3_finalize};
    Statement version{nullptr, sqlite3_finalize};
};

}  // namespace jotlet
