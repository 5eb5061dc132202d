#include "store/table_schema.h"

#include "table_fixture.h"

namespace jotlet::test {
namespace {

std::string Bytes(const auto& block, std::size_t at, std::size_t count)
{
    return std::string(reinterpret_cast<const char*>(&block) + at, count);
}

TEST(TableSchemaTest, ANewHeaderHoldsItsValuesAndZeroesElsewhere)
{
    TempFolder folder;
    WriteAll(folder.File("suite.ini"), "[gateway]\nSERVER=relay.example\nport=4500\n");
    TableHeader header;
    EXPECT_EQ(InitTableHeader(header, "Notes", "Organizer", 3, IniFile(folder.File("suite.ini"))), 0);
    std::string expected(1581, '\0');
    const std::pair<std::size_t, std::string> values[] = {
        {0, "\x2D\x06"},        {4, "Notes"},         {34, "Organizer"}, {64, "\x03"},         {68, "\x01"},
        {73, "Pinwell"},        {103, "PinwellMail"}, {278, "Pinwell"},  {308, "PinwellMail"}, {482, "\x01"},
        {486, "relay.example"}, {746, "4500"},        {1010, "\x0A"}};
    for (const auto& [at, bytes] : values)
        expected.replace(at, bytes.size(), bytes);
    EXPECT_EQ(Bytes(header, 0, 1581), expected);
}

TEST(TableSchemaTest, LongTextsAreCutAndFillTheirField)
{
    TempFolder folder;
    WriteAll(folder.File("suite.ini"), "[Gateway]\nserver=" + std::string(400, 's') + "\n");
    TableHeader header;
    InitTableHeader(header, std::string(29, 'a'), std::string(40, 'b'), 1, IniFile(folder.File("suite.ini")));
    EXPECT_EQ(Bytes(header, 4, 60), std::string(29, 'a') + '\0' + std::string(30, 'b'));
    EXPECT_EQ(Bytes(header, 486, 260), std::string(259, 's') + '\0');
    EXPECT_EQ(+header.port[0], '\0');
}

TEST(TableSchemaTest, NewCategoriesAreTheFifteenAndADamagedCountNeverLeadsOutOfTheBlock)
{
    CategoryBlock categories;
    std::memset(&categories, 'x', sizeof categories);
    InitCategories(categories);
    EXPECT_EQ(Bytes(categories, 0, 12), std::string("\x08\x04\0\0\0\0\0\0\x0F\0\0\0", 12));
    std::string names;
    for (int i = 0; i < categories.Count(); ++i)
        names += std::string(FieldText(categories.entries[i].name)) + ",";
    EXPECT_EQ(names,
              "Calls,Clients,Expenses,Follow up,Ideas,Meetings,Issues,People,Personal,Projects,Public,Holiday,Travel,"
              "Vacation,Test,");
    EXPECT_EQ(+categories.entries[14].tag, -1);
    EXPECT_EQ(Bytes(categories, 12 + 15 * 34, 15 * 34), std::string(15 * 34, '\0'));
    for (const auto& [stored, count] : {std::pair{0u, 0}, {30u, 30}, {31u, 30}, {~0u, 30}}) {
        categories.categoryCount = stored;
        EXPECT_EQ(categories.Count(), count);
    }
}

TEST(TableSchemaTest, TheOwnersIdentityCarriesThePasswordBytes)
{
    TableHeader header = NewHeader();
    StoreText(header.fileOwner.ownerPassword, "boss");
    StoreText(header.fileOwner.readerPassword, "guest");
    const IdentityBlock identity = header.OwnerIdentity();
    EXPECT_EQ(FieldText(identity.name), "Pinwell");
    EXPECT_EQ(FieldText(identity.email), "PinwellMail");
    EXPECT_EQ(std::string(identity.serverKey, 4), "boss");
    EXPECT_EQ(std::string(identity.serverKey + 40, 5), "guest");
}

}  // namespace
}  // namespace jotlet::test
