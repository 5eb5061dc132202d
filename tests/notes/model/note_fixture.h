// A note file of its own for each test.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

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

class NoteTest : public testing::Test {
protected:
    NoteTest() : path(folder.File("notes.jot"))
    {
        ResumeRefresh();
        SetCalendarLastYear(kCalendarDefaultLastYear);
        EXPECT_EQ(CreateNoteFile(path, WithExamples::No, clock), 1);
        Open("");
    }
    ~NoteTest() override { SetCalendarLastYear(kCalendarDefaultLastYear); }

    void Open(const std::string& password)
    {
        table.reset();
        table = std::make_unique<TableFile>(path, password);
        ASSERT_TRUE(table->IsOpen());
    }
    NoteRecord NewNote(const std::string& title, const std::string& text = {}) const
    {
        NoteRecord note;
        InitNoteRecord(*table, note, clock);
        StoreText(note.title, title);
        StoreText(note.text, text);
        note.colour = kYellow;
        return note;
    }
    RecordAddress Add(const NoteRecord& note)
    {
        RecordAddress address = 0;
        EXPECT_EQ(table->AddRecord(BytesOf(note), &address), 1);
        return address;
    }
    NoteRecord Read(RecordAddress address) const
    {
        NoteRecord note{};
        EXPECT_EQ(table->ReadRecord(BytesOf(note), address), 1);
        return note;
    }
    // Every note that this copy may see, by title.
    std::vector<NoteRecord> Notes() const
    {
        RecordQuery query;
        query.PrepareResults();
        query.AddAllTerm();
        EXPECT_EQ(table->RunQuery(query), 1);
        query.Sort(*table, kTitleOffset, kTitleSize, CompareTitles);
        std::vector<NoteRecord> notes;
        for (const RecordAddress address : query.Results())
            notes.push_back(Read(address));
        return notes;
    }
    std::vector<std::string> Titles() const
    {
        std::vector<std::string> titles;
        for (const NoteRecord& note : Notes())
            titles.push_back(Text(note.title));
        return titles;
    }
    void SetPasswords(const std::string& owner, const std::string& assistant, const std::string& reader)
    {
        ASSERT_EQ(table->UpdateHeader([&](TableHeader& header) {
            StoreText(header.fileOwner.ownerPassword, owner);
            StoreText(header.fileOwner.assistantPassword, assistant);
            StoreText(header.fileOwner.readerPassword, reader);
            return true;
        }),
                  1);
    }

    TempFolder folder;
    std::string path;
    ManualClock clock{LocalTime{.year = 2007, .month = 3, .day = 14, .hour = 10, .minute = 4, .second = 30}};
    std::unique_ptr<TableFile> table;
};

}  // namespace jotlet::test
