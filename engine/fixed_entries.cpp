#include "engine/fixed_entries.h"

#include <span>
#include <string>

namespace engine {

void ForEachEntry(const platform::File& file, std::size_t length,
                  const std::function<bool(std::string_view)>& take) {
    constexpr std::size_t EntriesPerRead = 128;
    std::string run(length * EntriesPerRead, '\0');
    for (std::uint64_t offset = 0;; offset += run.size()) {
        const std::size_t got = file.ReadAt(offset, std::as_writable_bytes(std::span(run)));
        const std::string_view entries = std::string_view(run).substr(0, got);
        for (std::size_t start = 0; start < got; start += length) {
            if (!take(entries.substr(start, length))) return;
        }
        if (got < run.size()) return;
    }
}

}  // namespace engine
