// Keyed indexes as bytes, made without the code under test: blocks given entry by entry, or a whole tree over
// sorted entries.
#pragma once

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "tests/engine/bytes.h"

namespace test {

struct IndexFormat {
    std::int32_t KeyLength = 4;
    bool Extended = false;
    bool Duplicates = false;

    std::size_t BlockLength() const { return Extended ? 2048 : 512; }
    std::int32_t LastLeaf() const { return Extended ? 0xFFFFFF : 0xFFFF; }
    bool HasMark() const { return Extended && Duplicates; }
    std::int32_t EntryLength() const { return KeyLength + 4 + (HasMark() ? 2 : 0); }
    std::size_t Capacity() const {
        return (BlockLength() - (Extended ? 8 : 4)) / static_cast<std::size_t>(EntryLength());
    }
};

struct KeyAndPointer {
    std::string Key;
    std::int32_t Pointer;
    bool operator==(const KeyAndPointer&) const = default;
};

inline KeyAndPointer Terminator(const IndexFormat& format) {
    return {std::string(static_cast<std::size_t>(format.KeyLength), '\xFF'), -1};
}

inline std::string HeaderBytes(const IndexFormat& format, std::int32_t root) {
    std::string header = Big(format.EntryLength(), 2) + Big(1, 2) + Big(0x0304, 2) + Big(0x0506, 2) +
                         Big(root, 2) + Nul(2) + Big(format.Duplicates ? 0xFFFF : 0, 2);
    if (format.Extended) header += "09" + Big(0x0708, 2) + Big(root >> 16, 1);
    return Padded(header, format.BlockLength(), '\0');
}

/// A block; what follows its entries is noise, as in a block that has been fuller.
inline std::string BlockBytes(const IndexFormat& format, std::int32_t leafLink,
                              const std::vector<KeyAndPointer>& entries) {
    std::string block = Big(static_cast<std::int64_t>(entries.size()), 2) + Big(leafLink, 2);
    if (format.Extended) block += "pp" + Big(leafLink >> 16, 1) + "p";
    for (const KeyAndPointer& entry : entries) {
        // The two bytes behind a duplicate key are no part of it; the terminator is all 255.
        const std::string mark = entry.Pointer == -1 ? "\xFF\xFF" : "~~";
        block += entry.Key + (format.HasMark() ? mark : "") + Big(entry.Pointer, 4);
    }
    return Padded(block, format.BlockLength(), 'n');
}

/// A tree over sorted entries: part-filled leaves and interior blocks of random sizes, block numbers in
/// random order.
class RandomTree {
  public:
    RandomTree(const IndexFormat& format, std::vector<KeyAndPointer> sorted, std::mt19937& random)
        : mFormat(format), mRandom(random) {
        sorted.push_back(Terminator(format));
        const auto leaves = Cut(std::move(sorted));
        mNumbers.resize(2 * leaves.size() + 2);
        std::iota(mNumbers.begin(), mNumbers.end(), 1);
        std::shuffle(mNumbers.begin(), mNumbers.end(), mRandom);
        mBlocks.resize(mNumbers.size() + 1, std::string(format.BlockLength(), '?'));
        std::vector<KeyAndPointer> level = PlaceLeaves(leaves);
        for (Levels = 1; level.size() > 1; ++Levels) level = PlaceInterior(Cut(std::move(level)));
        mBlocks[0] = HeaderBytes(format, level.front().Pointer);
    }

    std::string Bytes() const { return std::accumulate(mBlocks.begin(), mBlocks.end(), std::string()); }
    std::int32_t LastBlock() const { return static_cast<std::int32_t>(mBlocks.size()) - 1; }

    int Levels = 0;

  private:
    using Blocks = std::vector<std::vector<KeyAndPointer>>;

    /// Cuts a level into blocks of two entries at least, so that every level is smaller than the one below.
    Blocks Cut(std::vector<KeyAndPointer> entries) {
        Blocks blocks;
        for (std::size_t start = 0; start < entries.size();) {
            const std::size_t rest = entries.size() - start;
            std::size_t size = std::uniform_int_distribution<std::size_t>(2, mFormat.Capacity())(mRandom);
            if (rest <= size) size = rest;
            if (rest - size == 1) size = rest <= mFormat.Capacity() ? rest : size - 1;
            blocks.emplace_back(entries.begin() + static_cast<std::ptrdiff_t>(start),
                                entries.begin() + static_cast<std::ptrdiff_t>(start + size));
            start += size;
        }
        return blocks;
    }

    std::int32_t TakeNumber() {
        const std::int32_t number = mNumbers.back();
        mNumbers.pop_back();
        return number;
    }

    std::vector<KeyAndPointer> PlaceLeaves(const Blocks& leaves) {
        std::vector<std::int32_t> numbers(leaves.size());
        std::generate(numbers.begin(), numbers.end(), [&] { return TakeNumber(); });
        std::vector<KeyAndPointer> parents;
        for (std::size_t i = 0; i < leaves.size(); ++i) {
            const std::int32_t link = i + 1 < leaves.size() ? numbers[i + 1] : mFormat.LastLeaf();
            mBlocks[static_cast<std::size_t>(numbers[i])] = BlockBytes(mFormat, link, leaves[i]);
            parents.push_back({leaves[i].back().Key, numbers[i]});
        }
        return parents;
    }

    std::vector<KeyAndPointer> PlaceInterior(const Blocks& blocks) {
        std::vector<KeyAndPointer> parents;
        for (const auto& block : blocks) {
            const std::int32_t number = TakeNumber();
            mBlocks[static_cast<std::size_t>(number)] = BlockBytes(mFormat, 0, block);
            parents.push_back({block.back().Key, number});
        }
        return parents;
    }

    IndexFormat mFormat;
    std::mt19937& mRandom;
    std::vector<std::int32_t> mNumbers;
    std::vector<std::string> mBlocks;
};

}  // namespace test
