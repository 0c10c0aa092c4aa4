// Little-endian integers in page bytes.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace jet {

/// The little-endian integer of type T at bytes. The caller has checked that it lies inside the page.
template <typename T>
T Load(const std::uint8_t* bytes) {
    static_assert(std::is_unsigned_v<T>);
    T value = 0;
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(&value, bytes, sizeof value);
    } else {
        for (std::size_t i = 0; i < sizeof(T); ++i) {
            value = static_cast<T>(value | static_cast<T>(T{bytes[i]} << (8 * i)));
        }
    }
    return value;
}

/// Writes an unsigned number, little-endian.
template <typename T>
void Store(std::uint8_t* bytes, T value) {
    static_assert(std::is_unsigned_v<T>);
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(bytes, &value, sizeof value);
    } else {
        for (std::size_t i = 0; i < sizeof(T); ++i) bytes[i] = static_cast<std::uint8_t>(value >> (8 * i));
    }
}

/// Reading and writing numbers of 16, 32 and 64 bits.
inline std::uint16_t LoadU16(const std::uint8_t* bytes) {
    return Load<std::uint16_t>(bytes);
}
inline std::uint32_t LoadU32(const std::uint8_t* bytes) {
    return Load<std::uint32_t>(bytes);
}
inline std::uint64_t LoadU64(const std::uint8_t* bytes) {
    return Load<std::uint64_t>(bytes);
}
inline void StoreU16(std::uint8_t* bytes, std::uint16_t value) {
    Store(bytes, value);
}
inline void StoreU32(std::uint8_t* bytes, std::uint32_t value) {
    Store(bytes, value);
}
inline void StoreU64(std::uint8_t* bytes, std::uint64_t value) {
    Store(bytes, value);
}

}  // namespace jet
