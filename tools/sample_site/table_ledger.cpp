#include "tools/sample_site/table_ledger.h"

#include <algorithm>
#include <stdexcept>

#include "platform/error.h"
#include "tools/sample_site/canonical_cell.h"
#include "tools/sample_site/field_packing.h"

namespace sample {

std::size_t FieldPlace(const TableSpec& spec, const std::string& name) {
    const auto found = std::find_if(spec.Fields.begin(), spec.Fields.end(),
                                    [&](const FieldSpec& field) { return field.Name == name; });
    if (found == spec.Fields.end()) throw std::logic_error("no field " + name + " in " + spec.Name);
    return static_cast<std::size_t>(found - spec.Fields.begin());
}

std::vector<std::size_t> PrimaryKeyPlaces(const TableSpec& spec) {
    std::vector<std::size_t> places;
    for (const IndexSpec& index : spec.Indexes) {
        if (!index.Primary) continue;
        for (const IndexColumn& column : index.Columns) places.push_back(FieldPlace(spec, column.Field));
    }
    return places;
}

TableLedger::TableLedger(const TableSpec& spec, const std::optional<std::filesystem::path>& expectedFolder)
    : mSpec(spec), mKeyColumns(PrimaryKeyPlaces(spec)), mCells(spec.Fields.size()) {
    mAccount.Columns.resize(spec.Fields.size());
    if (!expectedFolder) return;
    std::filesystem::create_directories(*expectedFolder);
    mExpected.open(*expectedFolder / (spec.Name + ".tsv"), std::ios::binary);
    for (std::size_t i = 0; i < spec.Fields.size(); ++i)
        mExpected << (i == 0 ? "" : "\t") << spec.Fields[i].Name;
    mExpected << '\n';
}

void TableLedger::Offer(const std::vector<FieldValue>& values) {
    for (std::size_t i = 0; i < values.size(); ++i) mCells[i] = ExpectedCell(mSpec.Fields[i], values[i]);
    if (!Accepts()) return;
    Enter(values);
    if (mExpected.is_open()) WriteRow();
}

bool TableLedger::Accepts() {
    Cells key;
    for (const std::size_t column : mKeyColumns) key.push_back(mCells[column]);
    if (std::find(key.begin(), key.end(), std::nullopt) != key.end()) {
        ++mAccount.RefusedUnsetKey;
        return false;
    }
    if (!key.empty() && key == mLastKey) {
        ++mAccount.RefusedRepeatedKey;
        return false;
    }
    mLastKey.swap(key);
    return true;
}

void TableLedger::Enter(const std::vector<FieldValue>& values) {
    ++mAccount.Rows;
    for (std::size_t i = 0; i < values.size(); ++i) {
        ColumnAccount& column = mAccount.Columns[i];
        if (!mCells[i]) {
            ++column.Unset;
            continue;
        }
        column.Checksum += CellChecksum(*mCells[i]);
        if (HasSum(mSpec.Fields[i])) column.Sum += SumPart(mSpec.Fields[i], values[i]);
    }
}

void TableLedger::WriteRow() {
    for (std::size_t i = 0; i < mCells.size(); ++i) {
        if (i > 0) mExpected << '\t';
        if (mCells[i]) mExpected << *mCells[i];
    }
    mExpected << '\n';
}

TableAccount TableLedger::Finish() {
    if (mExpected.is_open()) {
        mExpected.close();
        if (mExpected.fail()) throw platform::Error(platform::DiskFull);
    }
    return mAccount;
}

}  // namespace sample
