#include "notes/model/record_holder.h"

#include <algorithm>
#include <new>

namespace jotlet {

int RecordHolder::Store(std::span<const std::byte> record, std::int32_t recordTag)
{
    Clear();
    try {
        data.assign(record.begin(), record.end());
    } catch (const std::bad_alloc&) {
        return 0;
    }
    tag = recordTag;
    return 1;
}

int RecordHolder::GetSize(std::uint32_t& size) const
{
    if (IsEmpty())
        return 0;
    size = static_cast<std::uint32_t>(data.size());
    return 1;
}

int RecordHolder::Fetch(std::span<std::byte> buffer) const
{
    if (IsEmpty() || buffer.size() < data.size())
        return 0;
    std::ranges::copy(data, buffer.begin());
    return 1;
}

void RecordHolder::Clear()
{
    data = {};
    tag = 0;
}

}  // namespace jotlet
