#include "store/table_schema.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "platform/base/text.h"

namespace jotlet {
namespace {

constexpr std::array<std::string_view, 15> kDefaultCategories = {
    "Calls",    "Clients",  "Expenses", "Follow up", "Ideas",  "Meetings", "Issues", "People",
    "Personal", "Projects", "Public",   "Holiday",   "Travel", "Vacation", "Test"};
constexpr std::string_view kLocalName = "Pinwell";
constexpr std::string_view kLocalEmail = "PinwellMail";

// Fills the field to its last byte: a text as long as the field has no terminator.
void FillField(std::span<char> field, std::string_view text)
{
    const std::size_t count = std::min(field.size(), text.size());
    std::copy_n(text.begin(), count, field.begin());
    std::fill(field.begin() + static_cast<std::ptrdiff_t>(count), field.end(), '\0');
}

}  // namespace

IdentityBlock TableHeader::OwnerIdentity() const
{
    IdentityBlock identity;
    std::memcpy(&identity, &fileOwner, sizeof identity);
    return identity;
}

int InitTableHeader(TableHeader& header, std::string_view fileType, std::string_view family, std::uint32_t version,
                    const IniFile& suiteSettings)
{
    header = TableHeader{};
    header.blockSize = kHeaderBlockSize;
    FillField(header.fileType, fileType);
    FillField(header.family, family);
    header.version = version;
    header.formatFlag = 1;
    FillLocalIdentity(header.fileUser);
    // The local identity has no key, so the three passwords that lie in its place start empty.
    std::memcpy(&header.fileOwner, &header.fileUser, sizeof header.fileOwner);
    header.serverFlag = 1;
    ReadServerSettings(header.server, header.port, suiteSettings);
    header.changeStamp = kFirstChangeStamp;
    return 0;
}

void InitCategories(CategoryBlock& categories)
{
    categories = CategoryBlock{};
    categories.blockSize = kCategoryBlockSize;
    categories.categoryCount = kDefaultCategories.size();
    for (std::size_t i = 0; i < kDefaultCategories.size(); ++i) {
        StoreText(categories.entries[i].name, kDefaultCategories[i]);
        categories.entries[i].tag = -1;
    }
}

int FillLocalIdentity(IdentityBlock& identity)
{
    identity = IdentityBlock{};
    StoreText(identity.name, kLocalName);
    StoreText(identity.email, kLocalEmail);
    return 1;
}

void ReadServerSettings(std::span<char> server, std::span<char> port, const IniFile& suiteSettings)
{
    StoreText(server, suiteSettings.IniReadText("Gateway", "server").value_or(""));
    StoreText(port, suiteSettings.IniReadText("Gateway", "port").value_or(""));
}

}  // namespace jotlet
