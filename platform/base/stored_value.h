#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <type_traits>

namespace jotlet {

// A value as it lies in a file block: its bytes, with no alignment. Reads and assigns like the value itself, and makes
// a struct of such members a byte-for-byte picture of the block. (Files are little-endian, and so is every machine that
// this builds for.)
template <typename T>
class StoredValue {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    StoredValue() = default;
    StoredValue(const T& value) { std::memcpy(bytes.data(), &value, sizeof value); }

    operator T() const { return Get(); }
    T Get() const
    {
        T value;
        std::memcpy(&value, bytes.data(), sizeof value);
        return value;
    }

private:
    std::array<std::byte, sizeof(T)> bytes;
};

}  // namespace jotlet
