// A note file of its own for each test, and words for what tests do with it.
#pragma once

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "platform/base/text.h"
#include "store/compaction.h"
#include "store/record_query.h"
#include "store/refresh_switch.h"
#include "store/table_file.h"
#include "support/temp_folder.h"

namespace jotlet::test {

inline constexpr std::uint32_t kCategoryAt = 16, kCategoryWidth = 30;
inline constexpr std::uint32_t kDateAt = 50;
inline constexpr std::uint32_t kTimeAt = 62;
inline constexpr std::uint32_t kTitleAt = 1383, kTitleWidth = 150;
inline constexpr std::uint32_t kTextAt = 1533, kTextWidth = 2024;

struct Note {
    std::string title;
    std::string text = {};
    std::string category = {};
    DateValue date = {1, 1, 2001};
    std::uint64_t id = 0;
    std::uint8_t confidential = 0;
    std::uint8_t active = 1;
};

using Record = std::vector<std::byte>;

template <typename Value>
void Put(Record& record, std::size_t at, const Value& value)
{
    std::memcpy(record.data() + at, &value, sizeof value);
}

inline void PutText(Record& record, std::size_t at, std::size_t width, const std::string& text)
{
    StoreText({reinterpret_cast<char*>(record.data() + at), width}, text);
}

inline std::string TextOf(const Record& record, std::size_t at, std::size_t width)
{
    return std::string(FieldText({reinterpret_cast<const char*>(record.data() + at), width}));
}

inline Record RecordOf(const Note& note)
{
    Record record(kNoteRecordSize);
    RecordPrefix prefix{};
    prefix.recordSize = kNoteRecordSize;
    prefix.active = note.active;
    prefix.uniqueId = note.id;
    prefix.confidential = note.confidential;
    Put(record, 0, prefix);
    Put(record, kDateAt, note.date);
    PutText(record, kCategoryAt, kCategoryWidth, note.category);
    PutText(record, kTitleAt, kTitleWidth, note.title);
    PutText(record, kTextAt, kTextWidth, note.text);
    return record;
}

inline TableHeader NewHeader(const std::string& fileType = "Notes")
{
    TableHeader header;
    InitTableHeader(header, fileType, "Organizer", 3, IniFile("/nonexistent/settings.ini"));
    return header;
}

inline int CreateNotes(TableFile& table)
{
    CategoryBlock categories;
    InitCategories(categories);
    return table.Create(NewHeader(), kHeaderBlockSize, categories, kCategoryBlockSize, kNoteRecordSize);
}

class TableTest : public testing::Test {
protected:
    TableTest() : path(folder.File("notes.jot"))
    {
        ResumeRefresh();
        table = std::make_unique<TableFile>(path, "");
        EXPECT_EQ(CreateNotes(*table), 1);
    }

    void Reopen(const std::string& password = "")
    {
        table.reset();
        table = std::make_unique<TableFile>(path, password);
    }
    RecordAddress Add(const Note& note)
    {
        RecordAddress address = 0;
        EXPECT_EQ(table->AddRecord(RecordOf(note), &address), 1);
        return address;
    }
    TableHeader Header() const
    {
        TableHeader header{};
        EXPECT_EQ(table->ReadHeader(header), 1);
        return header;
    }
    std::int32_t FreeSlots() const { return Header().freeSlots; }
    void SetHeader(const std::function<void(TableHeader&)>& change)
    {
        TableHeader header = Header();
        change(header);
        ASSERT_EQ(table->WriteHeader(header), 1);
    }
    void SetPasswords(const std::string& owner, const std::string& assistant, const std::string& reader)
    {
        SetHeader([&](TableHeader& header) {
            StoreText(header.fileOwner.ownerPassword, owner);
            StoreText(header.fileOwner.assistantPassword, assistant);
            StoreText(header.fileOwner.readerPassword, reader);
        });
    }
    std::string TitleAt(RecordAddress address) const
    {
        Record record = table->AllocRecordBuffer();
        return table->ReadRecord(record, address) == 1 ? TextOf(record, kTitleAt, kTitleWidth) : "(none)";
    }
    // Titles of all live records, in file order.
    std::vector<std::string> Titles() const
    {
        RecordQuery query;
        query.PrepareResults();
        query.AddAllTerm();
        EXPECT_EQ(table->RunQuery(query), 1);
        std::vector<std::string> titles;
        for (const RecordAddress address : query.Results())
            titles.push_back(TitleAt(address));
        return titles;
    }
    // Cuts bytes off the end of the file behind the table's back.
    void CutBytes(std::int64_t count)
    {
        std::filesystem::resize_file(path, std::filesystem::file_size(path) - static_cast<std::uintmax_t>(count));
    }

    TempFolder folder;
    std::string path;
    std::unique_ptr<TableFile> table;
};

using Texts = std::vector<std::string>;

}  // namespace jotlet::test
