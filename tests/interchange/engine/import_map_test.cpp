#include "interchange/engine/import_map.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace jotlet {

namespace {

const std::string kNone(kIgnoredField);

class ImportMapTest : public testing::Test {
protected:
    ImportMapTest()
    {
        GetNoteImportFields(fields);
        GetNoteFieldAliases(aliases);
    }
    ColumnMap ByAlias(const std::vector<std::string>& names) const
    {
        return AliasMap(PositionalMap(fields, names.size()), names, fields, aliases);
    }

    std::vector<ImportField> fields;
    std::vector<ImportAlias> aliases;
};

TEST_F(ImportMapTest, NamesMatchWithoutBlanksAndCase)
{
    EXPECT_EQ(NamesMatch("Note Title", "NOTETITLE"), 0);
    EXPECT_EQ(NamesMatch(" n o t e ", "Note"), 0);
    EXPECT_EQ(NamesMatch("", "   "), 0);
    EXPECT_NE(NamesMatch("Note\tTitle", "NoteTitle"), 0);  // a tab is no blank
    EXPECT_NE(NamesMatch("Note", "Notes"), 0);
    EXPECT_EQ(NamesMatch(std::string(255, 'a') + "x", std::string(255, 'A') + "y"), 0);
}

TEST_F(ImportMapTest, PositionsMapAsFarAsThereAreFieldsAndColumns)
{
    EXPECT_THAT(PositionalMap(fields, 6), testing::ElementsAre("Title", "Text", "Color", "Category", kNone, kNone));
    EXPECT_THAT(PositionalMap(fields, 2), testing::ElementsAre("Title", "Text"));
    EXPECT_THAT(PositionalMap(fields, 0), testing::IsEmpty());
}

TEST_F(ImportMapTest, ColumnsFindTheirFieldsByTheNamesOfOtherPrograms)
{
    EXPECT_THAT(ByAlias({"Categories", "NOTES COLOR", "notebody", "Subject"}),
                testing::ElementsAre("Category", "Color", "Text", "Title"));
    EXPECT_THAT(ByAlias({"Owner", "Title", ""}), testing::ElementsAre(kNone, "Title", kNone));
    EXPECT_THAT(ByAlias({std::string(253, ' ') + "Title"}), testing::ElementsAre(kNone));
}

TEST_F(ImportMapTest, TheFirstColumnThatReachesAFieldKeepsIt)
{
    EXPECT_THAT(ByAlias({"Title", "Subject", "Title", "Text"}), testing::ElementsAre("Title", kNone, kNone, "Text"));
}

TEST_F(ImportMapTest, OfSeveralMatchingAliasesTheLastWithAFieldDecides)
{
    aliases = {{"Title", "X"}, {"Text", "X"}, {"No such field", "X"}};
    EXPECT_THAT(ByAlias({"x"}), testing::ElementsAre("Text"));
}

TEST_F(ImportMapTest, WithoutAliasesTheMapStays)
{
    aliases.clear();
    EXPECT_THAT(ByAlias({"Subject", "x"}), testing::ElementsAre("Title", "Text"));
}

TEST_F(ImportMapTest, TheNewestChoiceOfAFieldWins)
{
    ColumnMap map = PositionalMap(fields, 4);
    ChooseField(map, 3, "Title");
    EXPECT_THAT(map, testing::ElementsAre(kNone, "Text", "Color", "Title"));
    ChooseField(map, 1, kIgnoredField);
    EXPECT_THAT(map, testing::ElementsAre(kNone, kNone, "Color", "Title"));
    ChooseField(map, 9, "Text");
    EXPECT_THAT(map, testing::ElementsAre(kNone, kNone, "Color", "Title"));
}

TEST_F(ImportMapTest, AMapWithNothingInItIsRefused)
{
    fields[0].mapped = true;
    EXPECT_FALSE(ApplyMap(ColumnMap{}, fields));
    EXPECT_FALSE(ApplyMap(ColumnMap{kNone, kNone}, fields));
    EXPECT_TRUE(fields[0].mapped);
    EXPECT_TRUE(ApplyMap(ColumnMap{kNone, "Text", "Color"}, fields));
    EXPECT_FALSE(fields[0].mapped);
    EXPECT_TRUE(fields[1].mapped);
    EXPECT_EQ(fields[1].column, 1);
    EXPECT_EQ(fields[2].column, 2);
    EXPECT_FALSE(fields[3].mapped);
}

}  // namespace

}  // namespace jotlet
