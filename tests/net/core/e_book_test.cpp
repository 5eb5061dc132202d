#include "net/core/e_book.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

TEST_F(EBookTest, TheFirstUseMakesABookWhoseContactsStandInNameOrder)
{
    ASSERT_EQ(OpenEBook(), 1);
    EXPECT_EQ(GetEBookPath(), scratch.File("E-Book.tb1"));
    EXPECT_EQ(BookTable()->RecordSize(), 859u);
    for (const auto& [name, email] : {std::pair<std::string, std::string>{"carl", "c@x"},
                                      {"Ann", "2@x"},
                                      {"", ""},
                                      {std::string(48, 'n') + "\u00e9", std::string(300, 'e')},
                                      {"ann", "1@x"}}) {
        EBookRecord contact = MakeContact(name, email);
        ASSERT_EQ(AddContact(contact), 1);
    }
    EXPECT_EQ(CloseEBook(), 1);
    EXPECT_EQ(BookTable(), nullptr);
    EXPECT_EQ(BookQuery(), nullptr);
    ASSERT_EQ(OpenEBook(), 1);
    EXPECT_THAT(Contacts(), testing::ElementsAre("=", "Ann=2@x", "ann=1@x", "carl=c@x",
                                                 std::string(48, 'n') + "=" + std::string(259, 'e')))
        << "equal ones as they were added, texts cut at a whole character";

    const auto other = OpenTable(GetEBookPath(), "", kContactRecordSize).table;
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(other->DeleteRecord(BookQuery()->results[0]), 1);
    EXPECT_EQ(OpenEBook(), 1) << "opening it again only looks anew";
    EXPECT_EQ(BookQuery()->resultCount, 4);
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
