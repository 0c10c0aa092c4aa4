#include "tools/mdb_check/index_check.h"

#include <utility>

namespace mdb_check {

namespace {

constexpr unsigned DeepestTree = 32;

std::string RowName(jet::RowPointer row) {
    return "row " + std::to_string(row.Row) + " of page " + std::to_string(row.Page);
}

}  // namespace

IndexCheck::IndexCheck(jet::PageFile& file, const jet::Table& table, std::size_t realIndex, std::string user,
                       const RowSet& rows, PageClaims& claims, Report& report)
    : mFile(file),
      mTable(table),
      mIndex(table.Definition().RealIndexes[realIndex]),
      mRules(file, table.Definition(), mIndex),
      mUser(std::move(user)),
      mRows(rows),
      mClaims(claims),
      mReport(report),
      mMap(file, mIndex.Map),
      mValues(table.Definition().Columns.size()) {
    for (const jet::IndexKeyColumn& part : mIndex.Columns) {
        const auto position = table.Definition().FindColumnNumber(part.ColumnNumber);
        mHasText =
            mHasText || (position && table.Definition().Columns[*position].Type == jet::ColumnType::Text);
    }
}

void IndexCheck::Run() {
    mClaims.ClaimMap(mIndex.Map, mUser);
    Visit(mIndex.RootPage, 1);
    if (mAnnouncedNext != 0) Damage("the last leaf names a next one, page " + std::to_string(mAnnouncedNext));
    CheckMap();
    CheckCounts();
}

void IndexCheck::Visit(std::uint32_t page, unsigned depth) {
    if (depth > DeepestTree)
        return Damage("the tree is deeper than " + std::to_string(DeepestTree) + " levels");
    if (!mClaims.Claim(page, mUser)) return;
    ++mPages;
    if (!mMap.Contains(page))
        Damage("page " + std::to_string(page) + " of the tree is not in the index's map");
    const jet::IndexPage node = jet::IndexPage::Read(mFile, page, mTable.Definition().Page);
    if (node.IsLeaf()) {
        VisitLeaf(node, depth);
    } else {
        VisitNode(node, depth);
    }
}

void IndexCheck::VisitNode(const jet::IndexPage& node, unsigned depth) {
    const std::string name = "node page " + std::to_string(node.Number());
    const std::vector<std::string> entries = node.Entries();
    if (entries.empty()) Damage(name + " has no entry");
    for (const std::string& entry : entries) {
        Visit(jet::PointerOf(entry), depth + 1);
        if (jet::KeyOf(entry) != mLastEntry) Damage(name + ": an entry is not the last one below its child");
    }
    if (node.Tail() != 0) Visit(node.Tail(), depth + 1);
}

void IndexCheck::VisitLeaf(const jet::IndexPage& leaf, unsigned depth) {
    const std::string name = "leaf page " + std::to_string(leaf.Number());
    if (mLeafDepth == 0) mLeafDepth = depth;
    if (depth != mLeafDepth) Damage(name + " stands on another level than the leaves before it");
    if (mLastLeaf != 0 && mAnnouncedNext != leaf.Number())
        Damage(name + " is not the next one of the leaf before it");
    if (leaf.Previous() != mLastLeaf) Damage(name + " does not name the leaf before it");
    if (leaf.IsEmpty() && depth > 1) Damage(name + " is empty");
    mLastLeaf = leaf.Number();
    mAnnouncedNext = leaf.Next();
    for (const std::string& entry : leaf.Entries()) CheckEntry(entry);
}

void IndexCheck::CheckEntry(const std::string& entry) {
    const auto row = jet::RowPointer::FromDword(jet::PointerOf(entry));
    const std::string key(jet::KeyOf(entry));
    if (mEntries > 0 && entry <= mLastEntry) Damage("entries do not ascend at " + RowName(row));
    const bool isNew = mEntries == 0 || key != jet::KeyOf(mLastEntry);
    ++mEntries;
    if (isNew) ++mDistinct;
    mLastEntry = entry;

    if (!mRows.Contains(row))
        return Damage("an entry names " + RowName(row) + ", which the table does not have");
    if (!mSeen.Add(row)) return Damage("two entries name " + RowName(row));
    CheckKey(key, row);
    if (!isNew && mIndex.IsUnique() && mKeysCanBeMade && !mKey.HasNull)
        Damage("a duplicate key at " + RowName(row));
}

void IndexCheck::CheckKey(const std::string& key, jet::RowPointer row) {
    if (!mKeysCanBeMade || !MakeKey(row)) return;
    if (mKey.Bytes == key) {
        mReport.CountKey(mHasText);
    } else {
        Damage("the key of " + RowName(row) + " is not the one that its values make");
    }
    if (mIndex.IsRequired() && mKey.HasNull) Damage("a Null in the key of " + RowName(row));
}

bool IndexCheck::MakeKey(jet::RowPointer row) {
    for (std::size_t column = 0; column < mValues.size(); ++column) {
        if (mRules.Covers(column)) mValues[column] = mTable.ReadColumn(row, column);
    }
    try {
        mRules.MakeKey(mValues, mKey);
    } catch (const platform::Error& error) {
        if (error.Number == jet::DamagedDatabase) throw;
        // Keys of some column types (GUID, Decimal, other sort orders) are not ours to make.
        mKeysCanBeMade = false;
        mReport.Note(mUser + ": keys of this type are not compared");
    }
    return mKeysCanBeMade;
}

void IndexCheck::CheckMap() {
    std::uint32_t mapped = 0;
    for (auto page = mMap.Next(0); page; page = mMap.Next(*page + 1)) ++mapped;
    if (mapped != mPages) {
        Damage("the map names " + std::to_string(mapped) + " pages, the tree has " + std::to_string(mPages));
    }
}

void IndexCheck::CheckCounts() {
    const std::uint64_t expected = mIndex.IgnoresNulls() ? RowsListed() : mRows.Count();
    if (mEntries != expected) {
        Damage(std::to_string(mEntries) + " entries for " + std::to_string(expected) + " rows");
    }
    if (mIndex.Distinct != mDistinct) {
        mReport.Note(mUser + ": the definition counts " + std::to_string(mIndex.Distinct) +
                     " different keys, there are " + std::to_string(mDistinct));
    }
}

/// Rows that an index which ignores Nulls has an entry for.
std::uint64_t IndexCheck::RowsListed() {
    std::uint64_t listed = 0;
    for (auto row = mTable.FirstRow(); row; row = mTable.NextRow(*row)) {
        if (!mKeysCanBeMade || !MakeKey(*row)) return mEntries;
        if (mRules.Lists(mKey)) ++listed;
    }
    return listed;
}

}  // namespace mdb_check
