// The bit mask of an index page: bit i is set when an entry ends i bytes behind the start of the entry area;
// least significant bit of a byte first. It is read and moved a word at a time; the words at its end reach
// into the entry area, which lies behind it on the same page and is left as it is.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "platform/jet/bytes.h"

namespace jet::entry_mask {

inline constexpr std::size_t WordBits = 64;
inline constexpr std::size_t WordBytes = WordBits / 8;

/// Bits 64 * index to 64 * index + 63.
inline std::uint64_t WordAt(const std::uint8_t* mask, std::size_t index) {
    return LoadU64(mask + index * WordBytes);
}

/// Whether a bit, counted from 0, is set.
inline bool Test(const std::uint8_t* mask, std::size_t bit) {
    return (unsigned{mask[bit / 8]} >> (bit % 8) & 1U) != 0;
}

/// Sets a bit, counted from 0.
inline void Set(std::uint8_t* mask, std::size_t bit) {
    mask[bit / 8] = static_cast<std::uint8_t>(mask[bit / 8] | 1U << (bit % 8));
}

/// The lowest set bit from `from` on, limit when there is none below it.
inline std::size_t Next(const std::uint8_t* mask, std::size_t from, std::size_t limit) {
    std::size_t index = from / WordBits;
    std::uint64_t word = WordAt(mask, index) & (~std::uint64_t{0} << (from % WordBits));
    while (word == 0) {
        if (++index * WordBits >= limit) return limit;
        word = WordAt(mask, index);
    }
    return std::min(limit, index * WordBits + static_cast<std::size_t>(std::countr_zero(word)));
}

/// The highest set bit at or below from; 0, where the first entry starts, when there is none.
inline std::size_t Previous(const std::uint8_t* mask, std::size_t from) {
    std::size_t index = from / WordBits;
    std::uint64_t word = WordAt(mask, index) & (~std::uint64_t{0} >> (WordBits - 1 - from % WordBits));
    while (word == 0) {
        if (index == 0) return 0;
        word = WordAt(mask, --index);
    }
    return index * WordBits + WordBits - 1 - static_cast<std::size_t>(std::countl_zero(word));
}

/// Moves the bits above `after`, of which `last` is the highest, up by count. Those it uncovers are clear.
void MoveUp(std::uint8_t* mask, std::size_t after, std::size_t last, std::size_t count);

/// Moves the bits above `after`, of which `last` is the highest, down by count. Those that stood in their new
/// places are lost, and those they leave are clear.
void MoveDown(std::uint8_t* mask, std::size_t after, std::size_t last, std::size_t count);

}  // namespace jet::entry_mask
