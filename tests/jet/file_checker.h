// Checks a whole Jet 4 file page by page: that every page belongs to exactly one owner or is free, that data
// pages add up, that rows, counts, long values and indexes agree. What it says about pages and rows it reads
// from the bytes; definitions it reads through the code under test.
#pragma once

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/jet/bytes.h"
#include "platform/jet/header_page.h"
#include "platform/jet/table_def.h"
#include "tests/jet/index_checker.h"

namespace test {

class FileChecker {
  public:
    explicit FileChecker(const std::string& path)
        : mFile(jet::PageFile::Open(path, jet::Sharing::Exclusive)) {
        std::ifstream stream(path, std::ios::binary);
        mBytes.assign(std::istreambuf_iterator<char>(stream), {});
        Claim(jet::HeaderPage, "header");
        Claim(jet::GlobalMapPage, "global map");
        CheckDataPage(jet::GlobalMapPage, jet::GlobalMapOwner);
        CheckTable(jet::ObjectsPage, "MSysObjects");
        for (const auto& [page, name] : UserTables()) CheckTable(page, name);
        CheckGlobalMap();
        Expect(mBytes.size() % PageSize == 0, "whole pages");
    }

    const std::vector<std::string>& BrokenRules() const { return mBroken; }

  private:
    static constexpr std::size_t PageSize = 4096;

    const std::uint8_t* Page(std::uint32_t page) const { return &mBytes[page * PageSize]; }
    std::uint32_t PageCount() const { return static_cast<std::uint32_t>(mBytes.size() / PageSize); }

    void Expect(bool held, const std::string& rule) {
        if (!held) mBroken.push_back(rule);
    }

    bool Claim(std::uint32_t page, const std::string& owner) {
        Expect(page < PageCount(), owner + ": page beyond the end");
        const auto [place, isNew] = mOwners.emplace(page, owner);
        Expect(isNew || place->second == owner, owner + ": shares a page with " + place->second);
        return page < PageCount() && isNew;
    }

    struct Slot {
        unsigned Flags;
        std::size_t Start;
        std::size_t Length;
    };

    std::vector<Slot> Slots(std::uint32_t page) const {
        std::vector<Slot> slots;
        std::size_t end = PageSize;
        for (unsigned i = 0; i < jet::LoadU16(Page(page) + 12); ++i) {
            const unsigned entry = jet::LoadU16(Page(page) + 14 + 2 * i);
            slots.push_back({entry & 0xC000U, entry & 0x1FFFU, end - (entry & 0x1FFFU)});
            end = entry & 0x1FFFU;
        }
        return slots;
    }

    void CheckDataPage(std::uint32_t page, std::uint32_t owner) {
        const std::string name = "data page " + std::to_string(page);
        Expect(Page(page)[0] == 1 && Page(page)[1] == 1, name + ": type");
        Expect(jet::LoadU32(Page(page) + 4) == owner, name + ": owner");
        const std::vector<Slot> slots = Slots(page);
        const std::size_t lowest = slots.empty() ? PageSize : slots.back().Start;
        const std::size_t tableEnd = 14 + 2 * slots.size();
        Expect(lowest >= tableEnd && jet::LoadU16(Page(page) + 2) == lowest - tableEnd,
               name + ": free bytes");
        for (const Slot& slot : slots) Expect(slot.Length <= PageSize, name + ": starts descend");
    }

    /// The pages that a map names, read from its bytes; claims the pages of the map itself.
    std::set<std::uint32_t> MapPages(jet::RowPointer map, const std::string& name) {
        if (map.Page != jet::GlobalMapPage && Claim(map.Page, "usage maps")) CheckDataPage(map.Page, 0);
        const Slot slot = Slots(map.Page)[map.Row];
        const std::uint8_t* row = Page(map.Page) + slot.Start;
        std::set<std::uint32_t> pages;
        const auto collect = [&pages](const std::uint8_t* bits, std::size_t bytes, std::uint32_t first) {
            for (std::uint32_t i = 0; i < 8 * bytes; ++i) {
                if ((bits[i / 8] >> (i % 8) & 1) != 0) pages.insert(first + i);
            }
        };
        if (row[0] == 0) {
            collect(row + 5, slot.Length - 5, jet::LoadU32(row + 1));
            return pages;
        }
        for (std::uint32_t i = 0; 5 + 4 * i <= slot.Length; ++i) {
            const std::uint32_t bitmap = jet::LoadU32(row + 1 + 4 * i);
            if (bitmap == 0) continue;
            Claim(bitmap, name + " bitmaps");
            Expect(Page(bitmap)[0] == 5 && Page(bitmap)[1] == 1, name + ": type of bitmap page");
            collect(Page(bitmap) + 4, PageSize - 4, i * 32736);
        }
        return pages;
    }

    std::map<std::uint32_t, std::string> UserTables() {
        std::map<std::uint32_t, std::string> tables{{jet::AcesPage, "MSysACEs"},
                                                    {jet::QueriesPage, "MSysQueries"},
                                                    {jet::RelationshipsPage, "MSysRelationships"}};
        for (std::uint32_t page = 6; page < PageCount(); ++page) {
            // A definition begins where a string length and the mark stand.
            if (Page(page)[0] == 2 && jet::LoadU32(Page(page) + 12) == 1625 && Page(page)[0x28] == 0x4E) {
                tables[page] = "table " + std::to_string(page);
            }
        }
        return tables;
    }

    void CheckTable(std::uint32_t page, const std::string& name) {
        for (std::uint32_t part = page; part != 0; part = jet::LoadU32(Page(part) + 4)) Claim(part, name);
        const jet::TableDef table = jet::ReadTableDef(*mFile, page);
        const std::set<std::uint32_t> owned = MapPages(table.OwnedMap, name);
        const std::set<std::uint32_t> free = MapPages(table.FreeMap, name);
        Expect(std::ranges::includes(owned, free), name + ": pages with room belong to the table");

        std::set<jet::RowPointer> rows;
        for (const std::uint32_t data : owned) {
            if (!Claim(data, name)) continue;
            CheckDataPage(data, page);
            const std::vector<Slot> slots = Slots(data);
            for (std::size_t i = 0; i < slots.size(); ++i) {
                if ((slots[i].Flags & 0x8000) == 0) rows.insert({data, static_cast<std::uint8_t>(i)});
            }
        }
        Expect(rows.size() == table.RowCount, name + ": row count");
        CheckIndexes(table, rows, name);
        for (const jet::LongValueMaps& maps : table.LongValues) CheckLongValues(maps, name);
    }

    void CheckIndexes(const jet::TableDef& table, const std::set<jet::RowPointer>& rows,
                      const std::string& name) {
        for (const jet::RealIndex& index : table.RealIndexes) {
            IndexChecker checker(*mFile, table.Page);
            checker.Check(index.RootPage, jet::UsageMap(*mFile, index.Map));
            for (const std::string& rule : checker.BrokenRules) mBroken.push_back(name + ", index: " + rule);
            for (const std::uint32_t page : checker.Pages) Claim(page, name + " index");
            MapPages(index.Map, name);

            std::set<jet::RowPointer> indexed;
            for (const std::string& entry : checker.Entries) {
                std::uint32_t pointer = 0;
                for (const char c : entry.substr(entry.size() - 4))
                    pointer = pointer << 8 | static_cast<std::uint8_t>(c);
                indexed.insert(jet::RowPointer::FromDword(pointer));
            }
            Expect(indexed.size() == checker.Entries.size(), name + ": a row twice in an index");
            Expect(index.IgnoresNulls() ? std::ranges::includes(rows, indexed) : rows == indexed,
                   name + ": index holds every row");
        }
    }

    void CheckLongValues(const jet::LongValueMaps& maps, const std::string& name) {
        const std::set<std::uint32_t> owned = MapPages(maps.Owned, name);
        Expect(std::ranges::includes(owned, MapPages(maps.Free, name)),
               name + ": long-value pages with room");
        for (const std::uint32_t page : owned) {
            if (Claim(page, name + " long values")) CheckDataPage(page, jet::LongValueOwner);
        }
    }

    void CheckGlobalMap() {
        const std::set<std::uint32_t> free = MapPages({jet::GlobalMapPage, 0}, "global map");
        for (std::uint32_t page = 0; page < PageCount(); ++page) {
            Expect(
                mOwners.contains(page) != free.contains(page),
                "page " + std::to_string(page) + (free.contains(page) ? " is in use and free" : " is lost"));
        }
    }

    std::unique_ptr<jet::PageFile> mFile;
    std::vector<std::uint8_t> mBytes;
    std::map<std::uint32_t, std::string> mOwners;
    std::vector<std::string> mBroken;
};

}  // namespace test
