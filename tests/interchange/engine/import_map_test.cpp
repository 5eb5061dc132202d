#include "interchange/engine/import_map.h"

#include <gmock/gmock.h>

namespace jotlet {
namespace {

using testing::ElementsAre;

const std::string kNone(kIgnoredField);

TEST(ImportMapTest, NamesMatchWithoutBlanksAndCase)
{
    EXPECT_EQ(NamesMatch(" n o t e ", "NOTE"), 0);
    EXPECT_EQ(NamesMatch("Note\tTitle", "NoteTitle"), -1);  // a tab is no blank
    EXPECT_EQ(NamesMatch("Notes", "Note"), 1);
    EXPECT_EQ(NamesMatch(std::string(255, 'a') + "x", std::string(255, 'A') + "y"), 0);
    EXPECT_EQ(NamesMatch(std::string(254, 'a') + "x", std::string(254, 'A') + "y"), -1);
}

TEST(ImportMapTest, ColumnsFindTheirFieldsByTheNamesOfOtherPrograms)
{
    std::vector<ImportField> fields;
    GetNoteImportFields(fields);
    std::vector<ImportAlias> aliases;
    GetNoteFieldAliases(aliases);
    const auto map = [&](const std::vector<std::string>& names) {
        return AliasMap(PositionalMap(fields, names.size()), names, fields, aliases);
    };
    EXPECT_THAT(map({"Categories", "NOTES COLOR", "notebody", "Subject"}),
                ElementsAre("Category", "Color", "Text", "Title"));
    EXPECT_THAT(map({"Title", "Subject", "Owner", "Text", "Title"}), ElementsAre("Title", kNone, kNone, "Text", kNone))
        << "the first column that reaches a field keeps it";
    EXPECT_THAT(map({std::string(247, ' ') + "Title"}), ElementsAre("Title"));
    EXPECT_THAT(map({std::string(248, ' ') + "Title"}), ElementsAre(kNone));
    aliases = {{"Title", "X"}, {"Text", "X"}, {"No such field", "X"}};
    EXPECT_THAT(map({"x"}), ElementsAre("Text")) << "the last alias with a field decides";
    aliases.clear();
    EXPECT_THAT(map({"a", "b", "c", "d", "e"}), ElementsAre("Title", "Text", "Color", "Category", kNone));
}

TEST(ImportMapTest, AFieldIsChosenForOneColumnAndAMapWithNothingInItIsRefused)
{
    std::vector<ImportField> fields;
    GetNoteImportFields(fields);
    ColumnMap map = PositionalMap(fields, 4);
    ChooseField(map, 3, "Title");
    EXPECT_THAT(map, ElementsAre(kNone, "Text", "Color", "Title"));
    ChooseField(map, 4, "Text");
    ChooseField(map, 1, kIgnoredField);
    EXPECT_THAT(map, ElementsAre(kNone, kNone, "Color", "Title"));

    fields[1].mapped = true;
    EXPECT_FALSE(ApplyMap(ColumnMap{kNone, kNone}, fields));
    EXPECT_TRUE(fields[1].mapped);
    EXPECT_TRUE(ApplyMap(map, fields));
    EXPECT_TRUE(fields[0].mapped && !fields[1].mapped && fields[2].mapped && !fields[3].mapped);
    EXPECT_EQ(fields[0].column, 3);
    EXPECT_EQ(fields[2].column, 2);
}

}  // namespace
}  // namespace jotlet
