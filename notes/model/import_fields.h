#pragma once

#include <cstdint>
#include <string>
#include <vector>

// What a record kind tells the importer about itself.

namespace jotlet {

enum class ImportType : std::int32_t {
    Bytes = 1,    // `size` raw bytes
    Number2 = 2,  // 32-bit integer
    Number = 3,   // 32-bit integer
    Date = 4,     // DateValue
    Time = 5,     // TimeValue
    Text = 6,     // text in a field of `size` bytes
};

struct ImportField {
    bool mapped = false;
    std::int32_t column = 0;   // source column; counts when mapped. Starts as the field's own number
    std::uint32_t offset = 0;  // in the record
    ImportType type = ImportType::Text;
    std::uint32_t size = 0;  // bytes in the record
    std::string name;
};

// Another name under which a field is known in files of other programs.
struct ImportAlias {
    std::string fieldName;
    std::string columnName;
};

// The four fields of a note that travel in delimited text: "Title", "Text", "Color", "Category". Returns 4.
int GetNoteImportFields(std::vector<ImportField>& fields);
// Names for them. Returns the number of rows, 17.
int GetNoteFieldAliases(std::vector<ImportAlias>& aliases);

}  // namespace jotlet
