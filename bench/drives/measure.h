// How soon a host sees what another did, and what that costs at the server.
#pragma once

#include <string>

#include "store/record_query.h"
#include "store/table_file.h"

namespace jotlet {

// Adds and edits a note in turn, `count` times, two and a bit seconds apart.
int Tell(const std::string& file, int count);
// Polls the file once a second as a window does. Prints the median and the longest time in ms from each change of Tell
// to its sight here, and how many were seen; ends when all were, or when nothing has come for a while.
int Watch(const std::string& file, int count);

// A file of `count` notes with the titles of SampleTitle.
int Fill(const std::string& file, int count);
std::string SampleTitle(int number, int count);

// Adds a note and waits until it is confirmed.
bool AddNote(TableFile& table, const std::string& title, const std::string& text, RecordAddress* address = nullptr);
// All notes by title, as the board shows them first.
void QueryByTitle(TableFile& table, RecordQuery& query);
// What a window does when the stamp has changed, with what it paints then.
bool Refresh(TableFile& table, RecordQuery& query);

// The same file on two mounts, this host's being `mount`. Prints server calls of an add, a poll and a refresh after one
// foreign change, and the kB that the refresh reads. "-" where the mount doesn't count calls.
int Cost(const std::string& file, const std::string& mount, const std::string& foreignFile);

}  // namespace jotlet
