#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "notes/model/import_fields.h"

// Which source column goes into which field. A map is a list of names, one a source column: a field's name, or
// kIgnoredField.

namespace jotlet {

inline constexpr std::string_view kIgnoredField = "IGNORE THIS FIELD";
inline constexpr std::size_t kMaxImportFields = 200;

using ColumnMap = std::vector<std::string>;

// 0 when the names are equal without their blanks (byte 32) and without regard to the case of A to Z, as far as 255
// characters go; else 1 or -1.
int NamesMatch(std::string_view first, std::string_view second);

// Column i gets field i, and what has no field is ignored.
ColumnMap PositionalMap(std::span<const ImportField> fields, std::size_t columnCount);

// Columns by name: of the aliases that match a column's name the last one decides, and the first column that reaches a
// field keeps it. With no aliases `map` is returned as it is.
ColumnMap AliasMap(ColumnMap map, std::span<const std::string> columnNames, std::span<const ImportField> fields,
                   std::span<const ImportAlias> aliases);

// Gives the column the chosen name; the first other column with that name is ignored from then on. A column outside the
// map changes nothing.
void ChooseField(ColumnMap& map, std::size_t column, std::string_view name);

// Writes the map into the fields' `mapped` and `column`. False, with nothing changed, when no column is mapped to a
// field.
bool ApplyMap(std::span<const std::string> map, std::span<ImportField> fields);

}  // namespace jotlet
