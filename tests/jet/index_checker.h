// Reads the pages of an index byte by byte, with nothing of the code under test but the page cache, and says
// which rule of index trees they break.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "platform/jet/bytes.h"
#include "platform/jet/page_file.h"
#include "platform/jet/usage_map.h"

namespace test {

class IndexChecker {
  public:
    IndexChecker(jet::PageFile& file, std::uint32_t tablePage) : mFile(file), mTablePage(tablePage) {}

    /// Checks every rule and collects the leaf entries in Entries, the pages in Pages.
    void Check(std::uint32_t root, const jet::UsageMap& map) {
        Visit(root, 0);
        for (std::size_t i = 0; i < mLeaves.size(); ++i) {
            const Page& leaf = mLeaves[i];
            Expect(leaf.Previous == (i == 0 ? 0 : mLeaves[i - 1].Number), "leaf chain, backwards");
            Expect(leaf.Next == (i + 1 == mLeaves.size() ? 0 : mLeaves[i + 1].Number),
                   "leaf chain, forwards");
        }
        for (std::size_t i = 1; i < Entries.size(); ++i) Expect(Entries[i - 1] < Entries[i], "ascending");
        std::set<std::uint32_t> mapped;
        for (auto page = map.Next(0); page; page = map.Next(*page + 1)) mapped.insert(*page);
        Expect(mapped == Pages, "map names the pages of the tree");
    }

    std::vector<std::string> Entries;
    std::set<std::uint32_t> Pages;
    std::vector<std::string> BrokenRules;
    std::size_t Levels = 0;

    std::size_t LeafCount() const { return mLeaves.size(); }
    /// Bytes that no entry uses, over all leaves but the last.
    std::size_t FreeInFullLeaves() const {
        std::size_t free = 0;
        for (std::size_t i = 0; i + 1 < mLeaves.size(); ++i) free += mLeaves[i].Free;
        return free;
    }

  private:
    struct Page {
        std::uint32_t Number = 0;
        bool Leaf = true;
        std::uint32_t Previous = 0;
        std::uint32_t Next = 0;
        std::uint32_t Tail = 0;
        std::size_t Free = 0;
        std::vector<std::string> Entries;
    };

    void Expect(bool held, const std::string& rule) {
        if (!held) BrokenRules.push_back(rule);
    }

    Page ReadPage(std::uint32_t number) {
        const bool jet4 = mFile.PageSize() == 4096;
        const std::size_t links = jet4 ? 12 : 8;
        const std::size_t mask = jet4 ? 27 : 22;
        const std::size_t area = jet4 ? 480 : 248;
        const jet::PageHandle handle = mFile.Read(number);
        const std::uint8_t* bytes = handle.Data();
        Page page{number,
                  bytes[0] == 4,
                  jet::LoadU32(bytes + links),
                  jet::LoadU32(bytes + links + 4),
                  jet::LoadU32(bytes + links + 8),
                  jet::LoadU16(bytes + 2),
                  {}};
        Expect(bytes[0] == 3 || bytes[0] == 4, "page type");
        Expect(jet::LoadU32(bytes + 4) == mTablePage, "owner");
        const std::size_t prefix = jet4 ? jet::LoadU16(bytes + 24) : bytes[20];
        std::size_t start = 0;
        for (std::size_t bit = 1; bit <= mFile.PageSize() - area; ++bit) {
            if ((bytes[mask + bit / 8] >> (bit % 8) & 1) == 0) continue;
            const std::string stored(reinterpret_cast<const char*>(bytes) + area + start, bit - start);
            page.Entries.push_back(start == 0 ? stored : page.Entries[0].substr(0, prefix) + stored);
            start = bit;
        }
        Expect(page.Free == mFile.PageSize() - area - start, "free field");
        return page;
    }

    /// Visits the subtree and returns its last leaf entry.
    std::string Visit(std::uint32_t number, std::size_t level) {
        Expect(Pages.insert(number).second, "a page twice in the tree");
        const Page page = ReadPage(number);
        Levels = std::max(Levels, level + 1);
        if (page.Leaf) {
            Expect(page.Tail == 0, "no tail on leaves");
            Expect(level == 0 || !page.Entries.empty(), "no empty leaf below a node");
            Entries.insert(Entries.end(), page.Entries.begin(), page.Entries.end());
            mLeaves.push_back(page);
            return page.Entries.empty() ? std::string() : page.Entries.back();
        }
        return VisitNode(page, level);
    }

    std::string VisitNode(const Page& page, std::size_t level) {
        Expect(!page.Entries.empty(), "an entry on every node");
        std::string last;
        std::vector<std::uint32_t> children;
        for (const std::string& entry : page.Entries) {
            std::uint32_t child = 0;
            for (const char c : entry.substr(entry.size() - 4))
                child = child << 8 | static_cast<unsigned char>(c);
            children.push_back(child);
            last = Visit(child, level + 1);
            Expect(entry.substr(0, entry.size() - 4) == last, "separator equals the child's last entry");
        }
        if (page.Tail != 0) {
            children.push_back(page.Tail);
            last = Visit(page.Tail, level + 1);
        }
        for (std::size_t i = 0; i < children.size(); ++i) {
            const Page child = ReadPage(children[i]);
            if (child.Leaf) continue;
            const bool chained = child.Previous == (i == 0 ? 0 : children[i - 1]) &&
                                 child.Next == (i + 1 == children.size() ? 0 : children[i + 1]);
            Expect(chained, "nodes chained under one parent");
        }
        return last;
    }

    jet::PageFile& mFile;
    std::uint32_t mTablePage;
    std::vector<Page> mLeaves;
};

}  // namespace test
