// Positions of names, found without regard to letter case and without making a copy of the name.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/code_page.h"

namespace dao {

class FieldNames {
  public:
    explicit FieldNames(std::vector<std::u16string> names)
        : mNames(std::move(names)), mSlots(std::bit_ceil(2 * mNames.size() + 1), Empty) {
        for (std::size_t i = 0; i < mNames.size(); ++i) SlotOf(mNames[i]) = static_cast<std::uint16_t>(i);
    }

    /// The 0-based position of a name; nothing when there is none.
    std::optional<std::size_t> Find(std::u16string_view name) {
        const std::uint16_t found = SlotOf(name);
        return found == Empty ? std::nullopt : std::optional<std::size_t>(found);
    }

  private:
    static constexpr std::uint16_t Empty = 0xFFFF;

    /// Where the name stands, or the empty slot where it would.
    std::uint16_t& SlotOf(std::u16string_view name) {
        std::size_t hash = 0x811C9DC5;  // FNV-1a over the folded characters
        for (const char16_t c : name) hash = (hash ^ platform::FoldCase(c)) * 0x01000193;
        const std::size_t last = mSlots.size() - 1;
        std::size_t slot = hash & last;
        while (mSlots[slot] != Empty && !platform::EqualFolded(mNames[mSlots[slot]], name))
            slot = (slot + 1) & last;
        return mSlots[slot];
    }

    std::vector<std::u16string> mNames;
    std::vector<std::uint16_t> mSlots;  // at most half of them taken
};

}  // namespace dao
