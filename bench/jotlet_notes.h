// Our side: the sample notes in a note file.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "bench/contest.h"
#include "bench/note_data.h"
#include "notes/model/note_file.h"
#include "store/open_table.h"
#include "store/table_file.h"

namespace jotlet {

// A new note file in place of one that is there, open. Any failure ends the program.
class JotletNotes {
public:
    explicit JotletNotes(const std::string& path) : path(path)
    {
        std::filesystem::remove(path);
        Expect("new note file", CreateNoteFile(path, WithExamples::No), 1);
        Open();
    }

    void Open()
    {
        table = OpenTable(path, "", kNoteRecordSize).table;
        Expect("open note file", table != nullptr, true);
        InitNoteRecord(*table, fresh);
        fresh.startKind = kStartDocument;
    }
    void Close() { table.reset(); }

    void Fill(const std::vector<SampleNote>& notes)
    {
        for (const SampleNote& note : notes)
            Expect("add", table->AddRecord(BytesOf(RecordOf(note, fresh))), 1);
        table->Flush();
    }
    void Add(const SampleNote& note)
    {
        Expect("add", table->AddRecord(BytesOf(RecordOf(note, fresh))), 1);
        Expect("flush", table->Flush(), 1);
    }
    int Count()
    {
        SlotCounts counts;
        Expect("count", table->DescribeSlots(counts), 1);
        return static_cast<int>(counts.live);
    }

    std::string path;
    std::unique_ptr<TableFile> table;
    NoteRecord fresh{};
};

}  // namespace jotlet
