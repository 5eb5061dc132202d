#include "net/core/e_book.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "platform/base/paths.h"
#include "platform/base/text.h"
#include "store/open_table.h"
#include "store/record_query.h"
#include "store/table_file.h"
#include "tests/support/temp_folder.h"

namespace jotlet {
namespace {

class EBookTest : public testing::Test {
protected:
    EBookTest() { test::UsePortableProgram(scratch.Path()); }
    ~EBookTest() override
    {
        CloseEBook();
        SetProgramPath({});
    }

    static void Add(std::string_view name, std::string_view email)
    {
        EBookRecord contact = MakeContact(name, email);
        ASSERT_EQ(AddContact(contact), 1);
    }
    static std::vector<std::string> Contacts()
    {
        std::vector<std::string> contacts;
        for (const RecordAddress address : BookQuery()->Results()) {
            EBookRecord contact;
            EXPECT_EQ(BookTable()->ReadRecord(BytesOf(contact), address), 1);
            contacts.push_back(std::string(FieldText(contact.bookName)) + '=' +
                               std::string(FieldText(contact.bookEmail)));
        }
        return contacts;
    }

    test::TempFolder scratch;
};

TEST_F(EBookTest, TheFirstUseMakesAnEmptyBook)
{
    EXPECT_EQ(OpenEBook(), 1);
    EXPECT_EQ(GetEBookPath(), scratch.File("E-Book.tb1"));
    EXPECT_TRUE(std::filesystem::exists(GetEBookPath()));
    ASSERT_NE(BookTable(), nullptr);
    EXPECT_EQ(BookQuery()->resultCount, 0);
    TableHeader header;
    ASSERT_EQ(BookTable()->ReadHeader(header), 1);
    EXPECT_EQ(FieldText(header.fileType), "E-Book");
    EXPECT_EQ(BookTable()->RecordSize(), 859u);
    EXPECT_EQ(CloseEBook(), 1);
    EXPECT_EQ(BookTable(), nullptr);
    EXPECT_EQ(BookQuery(), nullptr);
    EXPECT_EQ(CloseEBook(), 1);
}

TEST_F(EBookTest, ContactsStandInNameOrderEqualOnesAsTheyWereAdded)
{
    ASSERT_EQ(OpenEBook(), 1);
    Add("carl", "c@x.example");
    Add("Ann", "2@x.example");
    Add("", "");
    Add(std::string(48, 'n') + "\u00e9", std::string(300, 'e'));
    Add("ann", "1@x.example");
    CloseEBook();
    ASSERT_EQ(OpenEBook(), 1);
    EXPECT_THAT(Contacts(), testing::ElementsAre("=", "Ann=2@x.example", "ann=1@x.example", "carl=c@x.example",
                                                 std::string(48, 'n') + "=" + std::string(259, 'e')))
        << "texts are cut at a whole character";
    EXPECT_EQ(OpenEBook(), 1) << "opening it again only looks anew";
    EXPECT_EQ(BookQuery()->resultCount, 5);
}

TEST_F(EBookTest, AThousandContactsAreSortedAndAnothersChangeIsSeen)
{
    ASSERT_EQ(OpenEBook(), 1);
    for (int i = 0; i < 1000; ++i) {
        EBookRecord contact = MakeContact("contact " + std::to_string(1000 + i * 7919 % 1000), "x@x.example");
        contact.active = 1;
        ASSERT_EQ(BookTable()->AddRecord(BytesOf(contact)), 1);
    }
    ASSERT_EQ(RefreshEBook(), 1);
    const auto contacts = Contacts();
    ASSERT_EQ(contacts.size(), 1000u);
    EXPECT_TRUE(std::is_sorted(contacts.begin(), contacts.end()));

    const auto other = OpenTable(GetEBookPath(), "", kContactRecordSize).table;
    ASSERT_NE(other, nullptr);
    const auto stamp = BookTable()->GetChangeStamp();
    EXPECT_EQ(other->DeleteRecord(BookQuery()->results[0]), 1);
    EXPECT_NE(BookTable()->GetChangeStamp(), stamp);
    EXPECT_EQ(RefreshEBook(), 1);
    EXPECT_EQ(BookQuery()->resultCount, 999);
}

TEST_F(EBookTest, AFileThatIsNoBookIsRefusedAndLeftAlone)
{
    const std::string bytes(3000, 'x');
    test::WriteAll(GetEBookPath(), bytes);
    EXPECT_EQ(OpenEBook(), 0);
    EXPECT_EQ(BookTable(), nullptr);
    EXPECT_EQ(RefreshEBook(), 0);
    EBookRecord contact = MakeContact("Ann", "ann@x.example");
    EXPECT_EQ(AddContact(contact), 0);
    EXPECT_EQ(test::ReadAll(GetEBookPath()), bytes);
}

}  // namespace
}  // namespace jotlet
