#include "tools/mdb_check/table_check.h"

#include <utility>

#include "platform/code_page.h"
#include "platform/jet/bytes.h"
#include "tools/mdb_check/index_check.h"

namespace mdb_check {

namespace {

constexpr std::size_t NextDefinitionPageAt = 4;

std::string PageName(std::uint32_t page) {
    return "page " + std::to_string(page);
}

/// Runs one check of a structure that may be too damaged to be read.
template <typename Check>
void Guarded(Report& report, const std::string& place, Check check) {
    try {
        check();
    } catch (const platform::Error& error) {
        report.Damage(place + ": " + error.Description);
    }
}

}  // namespace

TableCheck::TableCheck(jet::PageFile& file, std::uint32_t definitionPage, std::string name,
                       PageClaims& claims, Report& report)
    : mFile(file),
      mPage(definitionPage),
      mName("table " + std::move(name)),
      mClaims(claims),
      mReport(report),
      mTable(file, definitionPage) {}

void TableCheck::Run() {
    const jet::TableDef& definition = mTable.Definition();
    ClaimDefinition();
    Guarded(mReport, mName, [&] { CheckMaps(definition.OwnedMap, definition.FreeMap, mPage, mName); });
    for (const jet::LongValueMaps& maps : definition.LongValues) {
        const std::string user = mName + ", long values of column " + std::to_string(maps.ColumnNumber);
        if (maps.Owned.Page == 0 || maps.Free.Page == 0 || !definition.FindColumnNumber(maps.ColumnNumber)) {
            mReport.Note(user + ": a map without a page, or without its column");
            continue;
        }
        Guarded(mReport, user, [&] { CheckMaps(maps.Owned, maps.Free, jet::LongValueOwner, user); });
    }
    Guarded(mReport, mName, [&] { CheckRows(); });
    CheckIndexes();
}

void TableCheck::ClaimDefinition() {
    for (std::uint32_t page = mPage; page != 0 && mClaims.Claim(page, mName);) {
        page = jet::LoadU32(mFile.Read(page, jet::PageType::TableDef).Data() + NextDefinitionPageAt);
    }
}

void TableCheck::CheckMaps(jet::RowPointer owned, jet::RowPointer free, std::uint32_t owner,
                           const std::string& user) {
    mClaims.ClaimMap(owned, user);
    mClaims.ClaimMap(free, user);
    const jet::UsageMap ownedPages(mFile, owned);
    for (auto page = ownedPages.Next(0); page; page = ownedPages.Next(*page + 1)) {
        if (mClaims.Claim(*page, user)) CheckPage(*page, owner, user);
    }
    const jet::UsageMap freePages(mFile, free);
    for (auto page = freePages.Next(0); page; page = freePages.Next(*page + 1)) {
        if (!ownedPages.Contains(*page))
            mReport.Damage(user + ": " + PageName(*page) + " has room but is not owned");
    }
}

void TableCheck::CheckPage(std::uint32_t page, std::uint32_t owner, const std::string& user) {
    const std::string place = user + ", " + PageName(page);
    Guarded(mReport, place, [&] {
        const jet::PageHandle raw = mFile.Read(page);
        if (raw.Type() == jet::PageType::FreedData) return mReport.Note(place + ": all its rows are gone");
        const jet::DataPage data(mFile, page);
        if (data.Owner() != owner) return mReport.Damage(place + ": belongs to another owner");

        std::size_t lowest = mFile.PageSize();
        for (unsigned row = 0; row < data.RowCount(); ++row)
            lowest = std::min<std::size_t>(lowest, data.Slot(row).Start);
        const std::size_t tableEnd = mFile.Format().RowTableAt + data.RowCount() * jet::RowTableEntry;
        if (jet::LoadU16(raw.Data() + jet::PageFreeBytes) != lowest - tableEnd) {
            mReport.Damage(place + ": its count of free bytes is wrong");
        }
        if (owner == mPage) CheckMovedRows(data);
    });
}

/// A row that moved away points to a slot marked as such, on a page of the same table.
void TableCheck::CheckMovedRows(const jet::DataPage& page) {
    for (unsigned row = 0; row < page.RowCount(); ++row) {
        if (!page.Slot(row).IsMovedAway()) continue;
        const auto target = jet::RowPointer::FromDword(jet::LoadU32(page.Row(row).data()));
        const jet::DataPage there(mFile, target.Page);
        const std::uint16_t flags = there.Slot(target.Row).Flags;
        if (there.Owner() != mPage || (flags & jet::RowMovedHere) == 0 || flags == jet::RowDeleted) {
            Damage("a moved row leads to slot " + std::to_string(target.Row) + " of " +
                   PageName(target.Page) + ", which is none of its own");
        }
    }
}

void TableCheck::CheckRows() {
    std::vector<jet::Value> values;
    for (auto row = mTable.FirstRow(); row; row = mTable.NextRow(*row)) {
        mRows.Add(*row);
        Guarded(mReport, mName + ", row " + std::to_string(row->Row) + " of " + PageName(row->Page),
                [&] { mTable.Read(*row, values); });
    }
    if (mRows.Count() != mTable.RowCount()) {
        mReport.Note(mName + ": the definition counts " + std::to_string(mTable.RowCount()) +
                     " rows, there are " + std::to_string(mRows.Count()));
    }
}

void TableCheck::CheckIndexes() {
    const jet::TableDef& definition = mTable.Definition();
    for (std::size_t number = 0; number < definition.RealIndexes.size(); ++number) {
        std::string name = std::to_string(number);
        for (const jet::LogicalIndex& logical : definition.LogicalIndexes) {
            if (logical.RealIndexNumber == number) name = platform::Utf8FromWide(logical.Name);
        }
        const std::string user = mName + ", index " + name;
        Guarded(mReport, user,
                [&] { IndexCheck(mFile, mTable, number, user, mRows, mClaims, mReport).Run(); });
    }
}

}  // namespace mdb_check
