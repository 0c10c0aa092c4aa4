// The keyed collections of the engine (cLinks, cOpenFiles, cLogicalFiles): ordered by insertion, reached by
// 1-based index or by key, keys without regard to letter case. Members may be added without a key.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/code_page.h"
#include "platform/error.h"

namespace engine {

template <typename Member>
class cCollection {
  public:
    using Handle = std::shared_ptr<Member>;

    std::int32_t Count() const { return static_cast<std::int32_t>(mEntries.size()); }

    /// The member at 1-based index. Raises 9 outside 1 to Count.
    Handle Item(std::int32_t index) const {
        if (index < 1 || index > Count()) throw platform::Error(platform::SubscriptOutOfRange);
        return mEntries[static_cast<std::size_t>(index) - 1].Value;
    }

    /// The member under key. Raises 5 when there is none.
    Handle Item(std::string_view key) const {
        Handle found = Find(key);
        if (!found) throw platform::Error(platform::InvalidArgument);
        return found;
    }

    /// The member under key, or empty.
    Handle Find(std::string_view key) const {
        const auto place = mByKey.find(platform::FoldedBytes(key));
        return place == mByKey.end() ? nullptr : place->second;
    }

    /// Raises 9 outside 1 to Count.
    void Remove(std::int32_t index) {
        Handle removed = Item(index);
        const auto place = mEntries.begin() + (index - 1);
        mByKey.erase(place->Key);
        mEntries.erase(place);
    }

    /// Raises 5 when there is no such key.
    void Remove(std::string_view key) {
        const std::string folded = platform::FoldedBytes(key);
        if (mByKey.erase(folded) == 0) throw platform::Error(platform::InvalidArgument);
        std::erase_if(mEntries, [&](const Entry& entry) { return entry.Key == folded; });
    }

    /// The members in the order of insertion.
    std::vector<Handle> NewEnum() const {
        std::vector<Handle> members;
        members.reserve(mEntries.size());
        for (const Entry& entry : mEntries) members.push_back(entry.Value);
        return members;
    }

  protected:
    /// Adds under key, or without a key when it is empty. Raises 457 for a key in use.
    void Insert(Handle member, std::string_view key) {
        Entry entry{std::move(member), platform::FoldedBytes(key)};
        if (!key.empty() && !mByKey.emplace(entry.Key, entry.Value).second) {
            constexpr int KeyInUse = 457;
            throw platform::Error(KeyInUse, "",
                                  "This key is already associated with an element of this collection");
        }
        mEntries.push_back(std::move(entry));
    }

  private:
    struct Entry {
        Handle Value;
        std::string Key;  // folded; empty for a member without a key, which mByKey does not hold
    };

    std::vector<Entry> mEntries;
    std::unordered_map<std::string, Handle> mByKey;
};

}  // namespace engine
