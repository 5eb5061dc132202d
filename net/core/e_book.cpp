#include "net/core/e_book.h"

#include <memory>

#include "platform/base/paths.h"
#include "platform/base/text.h"
#include "store/create_table.h"
#include "store/open_table.h"
#include "store/record_hold.h"
#include "store/record_query.h"
#include "store/table_file.h"

namespace jotlet {

namespace {

// One contact book a user, shared by the windows that have it open at the same time.
std::unique_ptr<TableFile> bookTable;
std::unique_ptr<RecordQuery> bookQuery;

void CreateBook(const std::string& path)
{
    TableFile file(path, "");
    if (file.GetOpenFailure() == OpenFailure::Missing)
        CreateTable(file, kContactTable);
}

}  // namespace

std::string GetEBookPath()
{
    return GetDataFilePath("E-Book.tb1");
}

TableFile* BookTable()
{
    return bookTable.get();
}

RecordQuery* BookQuery()
{
    return bookQuery.get();
}

int OpenEBook()
{
    if (!bookTable) {
        const std::string path = GetEBookPath();
        if (!TableFile::Exists(path))
            CreateBook(path);
        bookTable = OpenTable(path, "", kContactRecordSize).table;
        if (!bookTable)
            return 0;
        bookQuery = std::make_unique<RecordQuery>();
        bookQuery->Reset();
        bookQuery->PrepareResults();
        bookQuery->AddAllTerm();
    }
    RefreshEBook();
    return 1;
}

int CloseEBook()
{
    bookQuery.reset();
    bookTable.reset();
    return 1;
}

int RefreshEBook()
{
    if (!bookTable || bookTable->RunQuery(*bookQuery) != 1)
        return 0;
    return bookQuery->Sort(*bookTable, kBookNameOffset, kBookNameSize, CompareTitles);
}

EBookRecord MakeContact(std::string_view name, std::string_view email)
{
    EBookRecord contact{};
    StoreText(contact.bookName, name);
    StoreText(contact.bookEmail, email);
    return contact;
}

int AddContact(EBookRecord& contact)
{
    if (!bookTable)
        return 0;
    InitRecordHeader(*bookTable, contact, kContactRecordSize);
    return AddSaved(*bookTable, BytesOf(contact)) ? 1 : 0;
}

}  // namespace jotlet
