#include "platform/jet/pending_entries.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>

namespace jet {

namespace {

constexpr std::size_t ChunkBytes = std::size_t{256} << 10;
constexpr std::size_t HashNodeBytes = 48;

/// The first eight bytes as a number that compares as they do.
std::uint64_t Head(std::string_view entry) {
    std::array<unsigned char, sizeof(std::uint64_t)> bytes{};
    std::memcpy(bytes.data(), entry.data(), std::min(entry.size(), bytes.size()));
    std::uint64_t head = 0;
    for (const unsigned char byte : bytes) head = head << 8U | byte;
    return head;
}

struct Sortable {
    std::uint64_t Head;
    std::string_view Entry;

    friend bool operator<(const Sortable& a, const Sortable& b) {
        return a.Head != b.Head ? a.Head < b.Head : a.Entry < b.Entry;
    }
};

}  // namespace

void PendingEntries::Add(std::string_view key, RowPointer row) {
    const std::size_t length = key.size() + IndexPage::PointerLength;
    if (mChunks.empty() || ChunkBytes - mChunkUsed < length) {
        mChunks.push_back(std::make_unique_for_overwrite<char[]>(ChunkBytes));
        mChunkUsed = 0;
    }
    char* const place = mChunks.back().get() + mChunkUsed;
    mChunkUsed += length;
    std::memcpy(place, key.data(), key.size());
    StorePointer(place + key.size(), row.Dword());

    const Entry entry(place, length);
    mAscending = mAscending && (mEntries.empty() || mEntries.back() < entry);
    mEntries.push_back(entry);
    mSizes.Add(length);
    if (!mKeys.empty()) mKeys.insert(KeyOf(entry));
}

bool PendingEntries::Contains(std::string_view key) {
    if (mEntries.empty()) return false;
    if (mAscending && KeyOf(mEntries.back()) < key) return false;
    if (mKeys.empty()) {
        for (const Entry entry : mEntries) mKeys.insert(KeyOf(entry));
    }
    return mKeys.contains(key);
}

std::size_t PendingEntries::MemoryBytes() const {
    return mChunks.size() * ChunkBytes + mEntries.capacity() * sizeof(Entry) + mKeys.size() * HashNodeBytes;
}

std::span<const PendingEntries::Entry> PendingEntries::Sorted(const std::function<void()>& pause) {
    if (!mAscending) {
        std::vector<Sortable> sortable;
        sortable.reserve(mEntries.size());
        for (const Entry entry : mEntries) sortable.push_back({Head(entry), entry});
        constexpr unsigned ComparesBetweenPauses = 1 << 14;
        unsigned compares = 0;
        std::ranges::sort(sortable, [&](const Sortable& a, const Sortable& b) {
            if (++compares % ComparesBetweenPauses == 0) pause();
            return a < b;
        });
        std::ranges::transform(sortable, mEntries.begin(), &Sortable::Entry);
        mAscending = true;
    }
    return mEntries;
}

void PendingEntries::Clear() {
    *this = PendingEntries();
}

}  // namespace jet
