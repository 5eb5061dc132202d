#include "store/create_table.h"

namespace jotlet {

int CreateTable(TableFile& table, const TableKind& kind, const IniFile& suiteSettings)
{
    TableHeader header{};
    InitTableHeader(header, kind.fileType, kind.family, kind.version, suiteSettings);
    CategoryBlock categories{};
    InitCategories(categories);
    return table.Create(header, sizeof header, categories, sizeof categories, kind.recordSize);
}

}  // namespace jotlet
