// Index entries that wait to be merged into their tree. Rows come in an order that is not the index's, and a
// tree that takes them one by one touches a page of its own for each; sorted and merged they cost a
// sequential pass.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "platform/jet/index_page.h"

namespace jet {

class PendingEntries {
  public:
    /// A key and, behind it, its row as AppendPointer puts it.
    using Entry = std::string_view;

    /// Keeps an entry; the key's bytes are copied.
    void Add(std::string_view key, RowPointer row);

    /// Whether a waiting entry has exactly this key.
    bool Contains(std::string_view key);

    bool IsEmpty() const { return mEntries.empty(); }

    const EntrySizes& Sizes() const { return mSizes; }

    /// Memory that the entries take up, about.
    std::size_t MemoryBytes() const;

    /// The entries in the order of the index. What it gives lives until the next Add or Clear. Sorting takes
    /// long and calls pause now and then.
    std::span<const Entry> Sorted(const std::function<void()>& pause);

    void Clear();

  private:
    std::vector<std::unique_ptr<char[]>> mChunks;
    std::size_t mChunkUsed = 0;
    std::vector<Entry> mEntries;
    EntrySizes mSizes;
    bool mAscending = true;
    std::unordered_set<std::string_view>
        mKeys;  // made with the first question that the order does not answer
};

}  // namespace jet
