#include "platform/jet/entry_mask.h"

#include <algorithm>
#include <array>
#include <bit>

#include "platform/jet/bytes.h"

namespace jet::entry_mask {

namespace {

constexpr std::size_t WordBits = 64;
constexpr std::size_t WordBytes = 8;
constexpr std::size_t MaximumWords = 57;  // the 453 bytes of a Jet 4 page

using Words = std::array<std::uint64_t, MaximumWords>;

// The last word of a mask reaches into the entry area behind it, so reading it never leaves the page.
std::uint64_t WordAt(const std::uint8_t* mask, std::size_t index) {
    return LoadU64(mask + index * WordBytes);
}

/// Bits 0 to bit of a word.
std::uint64_t UpTo(std::size_t bit) {
    return ~std::uint64_t{0} >> (WordBits - 1 - bit);
}

/// The words of the mask from word `first` on with all bits up to `after` cleared, and no bit beyond length.
Words LoadAbove(const std::uint8_t* mask, std::size_t length, std::size_t after) {
    std::array<std::uint8_t, MaximumWords * WordBytes> bytes{};
    std::copy_n(mask, length, bytes.begin());
    Words words{};
    for (std::size_t i = after / WordBits; i < MaximumWords; ++i) words[i] = LoadU64(&bytes[i * WordBytes]);
    words[after / WordBits] &= ~UpTo(after % WordBits);
    return words;
}

/// Clears the bits above `after` and puts those of words in their place.
void StoreAbove(std::uint8_t* mask, std::size_t length, std::size_t after, const Words& words) {
    std::uint8_t kept = static_cast<std::uint8_t>(mask[after / 8] & UpTo(after % 8));
    for (std::size_t i = after / 8; i < length; ++i) {
        const auto moved = static_cast<std::uint8_t>(words[i / WordBytes] >> (8 * (i % WordBytes)));
        mask[i] = kept | moved;
        kept = 0;
    }
}

}  // namespace

bool Test(const std::uint8_t* mask, std::size_t bit) {
    return (unsigned{mask[bit / 8]} >> (bit % 8) & 1U) != 0;
}

void Set(std::uint8_t* mask, std::size_t bit) {
    mask[bit / 8] = static_cast<std::uint8_t>(mask[bit / 8] | 1U << (bit % 8));
}

std::size_t Next(const std::uint8_t* mask, std::size_t from, std::size_t limit) {
    std::size_t index = from / WordBits;
    std::uint64_t word = WordAt(mask, index) & (~std::uint64_t{0} << (from % WordBits));
    while (word == 0) {
        if (++index * WordBits >= limit) return limit;
        word = WordAt(mask, index);
    }
    return std::min(limit, index * WordBits + static_cast<std::size_t>(std::countr_zero(word)));
}

std::size_t Previous(const std::uint8_t* mask, std::size_t from) {
    std::size_t index = from / WordBits;
    std::uint64_t word = WordAt(mask, index) & UpTo(from % WordBits);
    while (word == 0) {
        if (index == 0) return 0;
        word = WordAt(mask, --index);
    }
    return index * WordBits + WordBits - 1 - static_cast<std::size_t>(std::countl_zero(word));
}

void MoveUp(std::uint8_t* mask, std::size_t length, std::size_t after, std::size_t count) {
    const Words words = LoadAbove(mask, length, after);
    Words moved{};
    const std::size_t whole = count / WordBits;
    const std::size_t part = count % WordBits;
    for (std::size_t i = MaximumWords; i-- > whole;) {
        moved[i] = words[i - whole] << part;
        if (part != 0 && i > whole) moved[i] |= words[i - whole - 1] >> (WordBits - part);
    }
    StoreAbove(mask, length, after, moved);
}

void MoveDown(std::uint8_t* mask, std::size_t length, std::size_t after, std::size_t count) {
    const Words words = LoadAbove(mask, length, after);
    Words moved{};
    const std::size_t whole = count / WordBits;
    const std::size_t part = count % WordBits;
    for (std::size_t i = 0; i + whole < MaximumWords; ++i) {
        moved[i] = words[i + whole] >> part;
        if (part != 0 && i + whole + 1 < MaximumWords) moved[i] |= words[i + whole + 1] << (WordBits - part);
    }
    StoreAbove(mask, length, after - count, moved);
}

}  // namespace jet::entry_mask
