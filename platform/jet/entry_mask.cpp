#include "platform/jet/entry_mask.h"

namespace jet::entry_mask {

namespace {

/// The bits first to last that lie in the word at index.
std::uint64_t Span(std::size_t index, std::size_t first, std::size_t last) {
    const std::size_t start = index * WordBits;
    if (last < start || first >= start + WordBits) return 0;
    const std::uint64_t fromFirst = first <= start ? ~std::uint64_t{0} : ~std::uint64_t{0} << (first - start);
    const std::uint64_t toLast = ~std::uint64_t{0} >> (WordBits - 1 - std::min(last - start, WordBits - 1));
    return fromFirst & toLast;
}

void StoreWord(std::uint8_t* mask, std::size_t index, std::uint64_t word) {
    StoreU64(mask + index * WordBytes, word);
}

}  // namespace

void MoveUp(std::uint8_t* mask, std::size_t after, std::size_t last, std::size_t count) {
    const std::size_t words = count / WordBits;
    const std::size_t bits = count % WordBits;
    for (std::size_t i = (last + count) / WordBits + 1; i-- > after / WordBits;) {
        std::uint64_t moved = i >= words ? WordAt(mask, i - words) << bits : 0;
        if (bits != 0 && i > words) moved |= WordAt(mask, i - words - 1) >> (WordBits - bits);
        const std::uint64_t arriving = Span(i, after + count + 1, last + count);
        const std::uint64_t changing = Span(i, after + 1, last + count);
        StoreWord(mask, i, (WordAt(mask, i) & ~changing) | (moved & arriving));
    }
}

void MoveDown(std::uint8_t* mask, std::size_t after, std::size_t last, std::size_t count) {
    const std::size_t words = count / WordBits;
    const std::size_t bits = count % WordBits;
    for (std::size_t i = (after - count) / WordBits; i <= last / WordBits; ++i) {
        std::uint64_t moved = WordAt(mask, i + words) >> bits;
        if (bits != 0) moved |= WordAt(mask, i + words + 1) << (WordBits - bits);
        const std::uint64_t arriving = last > after ? Span(i, after + 1 - count, last - count) : 0;
        const std::uint64_t changing = Span(i, after + 1 - count, last);
        StoreWord(mask, i, (WordAt(mask, i) & ~changing) | (moved & arriving));
    }
}

}  // namespace jet::entry_mask
