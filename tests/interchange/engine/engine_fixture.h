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
#include "store/record_query.h"
#include "store/refresh_switch.h"
#include "store/table_file.h"
#include "support/temp_folder.h"

namespace jotlet::test {

inline std::string Text(std::span<const char> field)
{
    return std::string(FieldText(field));
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
        return out << '{' << note.title << '|' << note.text << '|' << std::hex << note.colour << std::dec << '|'
                   << note.category << '|' << note.date.day << '.' << note.date.month << '.' << note.date.year << '}';
    }
};

class EngineTest : public testing::Test {
protected:
    EngineTest() : path(folder.File("notes.jot")), out(folder.File("out.csv"))
    {
        ResumeRefresh();
        SetCalendarLastYear(kCalendarDefaultLastYear);
        SetClockFormat(ClockFormat::Hours24);
        EXPECT_EQ(CreateNoteFile(path, WithExamples::No, clock), 1);
        Open("");
    }

    void Open(const std::string& password)
    {
        table.reset();
        table = std::make_unique<TableFile>(path, password);
        ASSERT_TRUE(table->IsOpen());
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
    void Add(const NoteText& content) { EXPECT_EQ(table->AddRecord(BytesOf(Record(content))), 1); }

    // Every note that this copy may see, in file order.
    std::vector<NoteText> Notes() const
    {
        std::vector<NoteText> notes;
        const FieldRange whole[] = {{0, kNoteRecordSize}};
        EXPECT_EQ(
            table->ForEachRecord(
                whole,
                [&](RecordAddress, std::span<const std::byte> bytes) {
                    NoteRecord note;
                    std::ranges::copy(bytes, BytesOf(note).begin());
                    notes.push_back({Text(note.title), Text(note.text), note.colour, Text(note.category), note.date});
                    return true;
                }),
            1);
        return notes;
    }
    std::vector<std::string> Titles() const
    {
        std::vector<std::string> titles;
        for (const NoteText& note : Notes())
            titles.push_back(note.title);
        return titles;
    }
    void SetPasswords()
    {
        ASSERT_EQ(table->UpdateHeader([](TableHeader& header) {
            StoreText(header.fileOwner.ownerPassword, "o");
            StoreText(header.fileOwner.assistantPassword, "a");
            StoreText(header.fileOwner.readerPassword, "r");
            return true;
        }),
                  1);
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
        std::vector<std::string> columns;
        if (reader.NextRecord() == 1) {
            reader.Rewind();
            int code = DelimitedReader::kField;
            while (code == DelimitedReader::kField) {
                code = reader.NextField();
                columns.emplace_back(reader.Field());
            }
        }
        ColumnMap map = PositionalMap(fields, columns.size());
        if (names)
            map = AliasMap(map, columns, fields, aliases);
        EXPECT_TRUE(ApplyMap(map, fields));
        ImportRequest request{.table = table.get(),
                              .reader = &reader,
                              .fields = fields,
                              .firstLineNames = names,
                              .prepare = {},
                              .added = {},
                              .progress = progress};
        return RunNoteImport(request, clock);
    }
    ReportRequest Request(ReportKind kind) const
    {
        return {.kind = kind,
                .table = table.get(),
                .selection = ReportSelection::All,
                .currentId = 0,
                .hasCurrent = false,
                .fromDate = {},
                .toDate = {},
                .findEnabled = false,
                .findText = {},
                .exportPath = {},
                .everyNote = false};
    }

    TempFolder folder;
    std::string path;
    std::string out;
    ManualClock clock{LocalTime{.year = 2007, .month = 3, .day = 14, .hour = 10, .minute = 4, .second = 30}};
    std::unique_ptr<TableFile> table;
    ProgressDisplay* progress = nullptr;
};

}  // namespace jotlet::test
