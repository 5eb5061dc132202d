#include "interchange/engine/import_map.h"

#include <algorithm>

#include "platform/base/text.h"

namespace jotlet {

namespace {

constexpr std::size_t kNameLimit = 255;
constexpr std::size_t kLongestColumnName = 252;  // a longer one is no name

std::string WithoutBlanks(std::string_view text)
{
    std::string out;
    for (const char c : text) {
        if (c != ' ' && out.size() < kNameLimit)
            out += c;
    }
    return out;
}

bool HasField(std::span<const ImportField> fields, std::string_view name)
{
    return std::ranges::any_of(fields, [&](const ImportField& field) { return field.name == name; });
}

// The first column that reached a field keeps it.
void IgnoreRepeats(ColumnMap& map)
{
    for (std::size_t i = 0; i < map.size(); ++i) {
        if (map[i] == kIgnoredField)
            continue;
        for (std::size_t later = i + 1; later < map.size(); ++later) {
            if (map[later] == map[i])
                map[later] = kIgnoredField;
        }
    }
}

}  // namespace

int NamesMatch(std::string_view first, std::string_view second)
{
    const int order = CompareFolded(WithoutBlanks(first), WithoutBlanks(second));
    return (order > 0) - (order < 0);
}

ColumnMap PositionalMap(std::span<const ImportField> fields, std::size_t columnCount)
{
    ColumnMap map(columnCount, std::string(kIgnoredField));
    for (std::size_t i = 0; i < std::min(columnCount, fields.size()); ++i)
        map[i] = fields[i].name;
    return map;
}

ColumnMap AliasMap(ColumnMap map, std::span<const std::string> columnNames, std::span<const ImportField> fields,
                   std::span<const ImportAlias> aliases)
{
    if (aliases.empty())
        return map;
    std::ranges::fill(map, std::string(kIgnoredField));
    for (std::size_t i = 0; i < std::min(map.size(), columnNames.size()); ++i) {
        if (columnNames[i].size() > kLongestColumnName)
            continue;
        for (const ImportAlias& alias : aliases) {
            if (NamesMatch(alias.columnName, columnNames[i]) == 0 && HasField(fields, alias.fieldName))
                map[i] = alias.fieldName;
        }
    }
    IgnoreRepeats(map);
    return map;
}

void ChooseField(ColumnMap& map, std::size_t column, std::string_view name)
{
    if (column >= map.size())
        return;
    map[column] = name;
    if (name == kIgnoredField)
        return;
    for (std::size_t i = 0; i < map.size(); ++i) {
        if (i != column && map[i] == name) {
            map[i] = kIgnoredField;
            return;
        }
    }
}

bool ApplyMap(std::span<const std::string> map, std::span<ImportField> fields)
{
    if (std::ranges::all_of(map, [](const std::string& name) { return name == kIgnoredField; }))
        return false;
    for (ImportField& field : fields)
        field.mapped = false;
    for (std::size_t i = 0; i < map.size(); ++i) {
        for (ImportField& field : fields) {
            if (field.name == map[i]) {
                field.mapped = true;
                field.column = static_cast<std::int32_t>(i);
            }
        }
    }
    return true;
}

}  // namespace jotlet
