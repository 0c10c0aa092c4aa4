// The bit mask of an index page: bit i is set when an entry ends i bytes behind the start of the entry area;
// least significant bit of a byte first.
#pragma once

#include <cstddef>
#include <cstdint>

namespace jet::entry_mask {

bool Test(const std::uint8_t* mask, std::size_t bit);
void Set(std::uint8_t* mask, std::size_t bit);

/// The lowest set bit from `from` on, limit when there is none below it.
std::size_t Next(const std::uint8_t* mask, std::size_t from, std::size_t limit);

/// The highest set bit at or below from; 0, where the first entry starts, when there is none.
std::size_t Previous(const std::uint8_t* mask, std::size_t from);

/// Moves all bits above `after` up by count; the bits that this uncovers are clear. length is that of the
/// mask in bytes; no set bit leaves it.
void MoveUp(std::uint8_t* mask, std::size_t length, std::size_t after, std::size_t count);

/// Moves all bits above `after` down by count, to after + 1 - count and up; the bits from after + 1 - count
/// to after are lost.
void MoveDown(std::uint8_t* mask, std::size_t length, std::size_t after, std::size_t count);

}  // namespace jet::entry_mask
