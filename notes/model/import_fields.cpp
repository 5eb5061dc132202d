#include "notes/model/import_fields.h"

#include <array>
#include <string_view>

#include "notes/model/note_record.h"

namespace jotlet {

namespace {

struct AliasText {
    std::string_view fieldName;
    std::string_view columnName;
};

// Where several fit a column, the last one decides.
constexpr std::array<AliasText, 17> kAliases = {{
    {"Title", "Subject"},
    {"Title", "Note Title"},
    {"Title", "Notes Title"},
    {"Title", "Title"},
    {"Text", "Notes Body"},
    {"Text", "Note Body"},
    {"Text", "Note"},
    {"Text", "Notes"},
    {"Text", "Text"},
    {"Color", "Note Color"},
    {"Color", "Notes Color"},
    {"Color", "Color"},
    {"Category", "Notes Categories"},
    {"Category", "Note Categories"},
    {"Category", "Note Category"},
    {"Category", "Category"},
    {"Category", "Categories"},
}};

}  // namespace

int GetNoteImportFields(std::vector<ImportField>& fields)
{
    fields = {
        {false, 0, kTitleOffset, ImportType::Text, kTitleSize, "Title"},
        {false, 1, kTextOffset, ImportType::Text, kTextSize, "Text"},
        {false, 2, kColourOffset, ImportType::Number, 4, "Color"},
        {false, 3, kCategoryOffset, ImportType::Text, kCategorySize, "Category"},
    };
    return static_cast<int>(fields.size());
}

int GetNoteFieldAliases(std::vector<ImportAlias>& aliases)
{
    aliases.clear();
    for (const AliasText& alias : kAliases)
        aliases.push_back({std::string(alias.fieldName), std::string(alias.columnName)});
    return static_cast<int>(aliases.size());
}

}  // namespace jotlet
