#pragma once

#include <cstdint>

namespace jotlet {

// A part of a record, for scans that need little of it.
struct FieldRange {
    std::uint32_t offset = 0;
    std::uint32_t size = 0;
};

}  // namespace jotlet
