#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace jotlet {

// One record kept in memory, outside any file: the note clipboard and the slot of the recycle bin are such holders.
// Owns:   a copy of the record.
// Errors: no memory leaves it empty and is told by Store.
class RecordHolder {
public:
    // Replaces what is held. 0, and empty, when there is no memory.
    int Store(std::span<const std::byte> record, std::int32_t recordTag);
    // 1 and the size of what is held; 0 when empty.
    int GetSize(std::uint32_t& size) const;
    // 1 and a copy of the record. 0 when empty or when `buffer` is smaller than the record.
    int Fetch(std::span<std::byte> buffer) const;
    std::int32_t Tag() const { return tag; }
    void Clear();
    bool IsEmpty() const { return data.empty(); }

private:
    std::vector<std::byte> data;
    std::int32_t tag = 0;
};

}  // namespace jotlet
