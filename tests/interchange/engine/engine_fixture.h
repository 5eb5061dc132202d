// A note file, and words for what goes into it and comes out of it as text.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "interchange/engine/import_map.h"
#include "interchange/engine/import_run.h"
#include "interchange/engine/import_text.h"
#include "interchange/engine/report.h"
#include "notes/model/note_file.h"
#include "notes/model/note_record.h"
#include "notes/model/palette.h"
#include "platform/base/text.h"
#include "store/passwords.h"
#include "store/record_query.h"
#include "store/refresh_switch.h"
#include "store/table_file.h"
#include "support/temp_folder.h"

namespace jotlet::test {

using Rows = std::vector<std::vector<std::string>>;

inline Rows ReadRows(DelimitedReader& reader)
{
    Rows rows;
    reader.Reset();
    while (reader.NextRecord() == 1) {
        rows.emplace_back();
        reader.Rewind();
        for (int code = DelimitedReader::kField; code == DelimitedReader::kField;) {
            code = reader.NextField();
            EXPECT_NE(code, DelimitedReader::kNoMore) << "a record ended before its last field";
            rows.back().emplace_back(reader.Field());
        }
    }
    return rows;
}

struct NoteText {
    std::string title;
    std::string text = {};
    std::uint32_t colour = kYellow;
    std::string category = {};
    DateValue date = {1, 5, 2007};

    bool operator==(const NoteText&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const NoteText& note)
    {
        return out << '{' << note.title << '|' << note.text << '|' << note.colour << '|' << note.category << '|'
                   << note.date.day << '.' << note.date.month << '.' << note.date.year << '}';
    }
};

class EngineTest : public testing::Test {
protected:
    EngineTest() : path(folder.File("notes.jot")), out(folder.File("out.csv"))
    {
        ResumeRefresh();
        SetCalendarLastYear(kCalendarDefaultLastYear);
        SetClockFormat(ClockFormat::Hours24);
        Create(path);
    }

    void Create(const std::string& newPath)
    {
        path = newPath;
        EXPECT_EQ(CreateNoteFile(path, WithExamples::No, clock), 1);
        Open("");
    }
    void Open(const std::string& password)
    {
        table.reset();
        table = std::make_unique<TableFile>(path, password);
        ASSERT_TRUE(table->IsOpen());
    }
    void SetPasswords()
    {
        std::string current;
        ASSERT_EQ(SetNetworkPasswords(path, current, {.owner = "o", .assistant = "a", .reader = "r"}), 1);
    }
    NoteRecord Record(const NoteText& content) const
    {
        NoteRecord note;
        InitNoteRecord(*table, note, clock);
        StoreText(note.title, content.title);
        StoreText(note.text, content.text);
        StoreText(note.category, content.category);
        note.colour = content.colour;
        note.date = content.date;
        return note;
    }
    void Add(const NoteRecord& record) { ASSERT_EQ(table->AddRecord(BytesOf(record)), 1); }
    void Add(const NoteText& content) { Add(Record(content)); }
    std::vector<RecordAddress> AddMany(const std::vector<NoteRecord>& records)
    {
        std::vector<RecordAddress> addresses;
        EXPECT_EQ(table->AddRecords(std::as_bytes(std::span(records)), addresses), 1);
        return addresses;
    }

    // Every note that this copy may see, in file order.
    std::vector<NoteText> Notes() const
    {
        std::vector<NoteText> notes;
        const FieldRange whole[] = {{0, kNoteRecordSize}};
        table->ForEachRecord(whole, [&](RecordAddress, std::span<const std::byte> bytes) {
            NoteRecord note;
            std::ranges::copy(bytes, BytesOf(note).begin());
            notes.push_back({std::string(FieldText(note.title)), std::string(FieldText(note.text)), note.colour,
                             std::string(FieldText(note.category)), note.date});
            return true;
        });
        return notes;
    }

    // The import of `text` with its columns mapped by name, or by position when it has no line of names.
    ImportCounts Import(std::string_view text, bool names = true)
    {
        DelimitedReader reader;
        reader.SetText(std::string(text));
        std::vector<ImportField> fields;
        GetNoteImportFields(fields);
        std::vector<ImportAlias> aliases;
        GetNoteFieldAliases(aliases);
        const std::vector<std::string> columns = ReadRows(reader).front();
        ColumnMap map = PositionalMap(fields, columns.size());
        if (names)
            map = AliasMap(map, columns, fields, aliases);
        EXPECT_TRUE(ApplyMap(map, fields));
        ImportRequest request;
        request.table = table.get();
        request.reader = &reader;
        request.fields = fields;
        request.firstLineNames = names;
        request.progress = progress;
        return RunNoteImport(request, clock);
    }
    ReportRequest Request(ReportKind kind) const
    {
        ReportRequest request;
        request.kind = kind;
        request.table = table.get();
        return request;
    }

    TempFolder folder;
    std::string path;
    std::string out;
    ManualClock clock{LocalTime{.year = 2007, .month = 3, .day = 14, .hour = 10, .minute = 4, .second = 30}};
    std::unique_ptr<TableFile> table;
    ProgressDisplay* progress = nullptr;
};

}  // namespace jotlet::test
