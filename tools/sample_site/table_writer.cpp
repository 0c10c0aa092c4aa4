#include "tools/sample_site/table_writer.h"

#include <algorithm>
#include <vector>

#include "tools/sample_site/field_packing.h"
#include "tools/sample_site/record_writer.h"

namespace sample {

namespace {

using platform::ByteString;

constexpr int StatusLength = 2;
constexpr std::int64_t ActiveStatus = 1;
constexpr std::int64_t RowsPerDeleted = 40;

std::int64_t DeletedAmong(const TableSpec& spec, std::int64_t rows) {
    return spec.HasDeleted ? rows / RowsPerDeleted + 1 : 0;
}

/// Every window but the last one is full, so the sum over all windows is known beforehand.
std::int64_t RecordsFor(const TableSpec& spec, std::int64_t rows) {
    const std::int64_t full = rows / RowsPerWindow;
    const std::int64_t rest = rows % RowsPerWindow;
    return rows + full * DeletedAmong(spec, RowsPerWindow) + (rest > 0 ? DeletedAmong(spec, rest) : 0);
}

class TableWriter {
  public:
    TableWriter(const SiteContext& site, const TableSpec& spec, std::int64_t rows)
        : mSpec(spec),
          mRandom(site.Seed, spec.Name),
          mRow{mRandom, site.Plan, 0, 0, {}, {}},
          mLedger(spec, site.ExpectedFolder),
          mKeyPlaces(PrimaryKeyPlaces(spec)),
          mValues(spec.Fields.size()) {
        for (const DataFileSpec& file : spec.DataFiles)
            mFiles.emplace_back(ReserveRecords(site, spec, file, RecordsFor(spec, rows)));
        if (spec.IsKeyed()) mIndex.emplace(ReserveIndex(site, spec, rows, mRandom));
    }

    TableReport Write(std::int64_t rows) {
        RecordNumbers numbers(mRandom);
        const auto order = mSpec.IsKeyed() ? RecordNumbers::Order::Shuffled : RecordNumbers::Order::Ascending;
        for (std::int64_t done = 0; done < rows; done += RowsPerWindow) {
            const std::int64_t count = std::min(RowsPerWindow, rows - done);
            WriteWindow(numbers.Next(count, DeletedAmong(mSpec, count), order));
        }
        return Finish(rows);
    }

  private:
    void WriteWindow(const RecordWindow& window) {
        for (RecordWriter& file : mFiles) file.Open(window);
        for (const std::int32_t number : window.Rows) WriteRow(number);
        for (RecordWriter& file : mFiles) file.Close();
    }

    void WriteRow(std::int32_t number) {
        MakeValues();
        PackRecord();
        PutRecord(number);
        if (mIndex) mIndex->Add(KeyOfRecord(), number);
        if (IsExported()) {
            mLedger.Offer(mValues);
        } else {
            mLedger.PassOver();
        }
    }

    void MakeValues() {
        ++mRow.Ordinal;
        mRow.Key = mSpec.Key.ValueAt ? mSpec.Key.ValueAt(mRow.Ordinal) : mRow.Ordinal;
        std::vector<FieldValue> before;
        const bool repeats =
            mSpec.RepeatEvery > 0 && mRow.Ordinal % mSpec.RepeatEvery == 0 && mRow.Ordinal > 1;
        if (repeats) before = mValues;
        for (std::size_t i = 0; i < mValues.size(); ++i) mValues[i] = mSpec.Fields[i].Make(mRow);
        if (!repeats) return;
        for (const std::size_t place : mKeyPlaces) mValues[place] = before[place];
    }

    /// Every file's record begins with its own status.
    void PackRecord() {
        mRecord.assign(static_cast<std::size_t>(mSpec.RecordLength()), '\0');
        int start = 1;
        for (const DataFileSpec& file : mSpec.DataFiles) {
            PackInteger(mRecord, start, StatusLength, ActiveStatus);
            start += file.RecordLength;
        }
        for (std::size_t i = 0; i < mValues.size(); ++i) PackField(mSpec.Fields[i], mValues[i], mRecord);
    }

    void PutRecord(std::int32_t number) {
        int start = 1;
        for (std::size_t i = 0; i < mFiles.size(); ++i) {
            const int length = mSpec.DataFiles[i].RecordLength;
            mFiles[i].Put(number, platform::Mid(mRecord, start, length));
            start += length;
        }
    }

    ByteString KeyOfRecord() const {
        ByteString key;
        for (const KeySegment& segment : mSpec.Key.Segments)
            key += platform::Mid(mRecord, segment.Start, segment.Length);
        return key;
    }

    /// A walk by record number looks at the status, which is the first field of such a table.
    bool IsExported() const {
        if (mSpec.IsKeyed()) return true;
        const std::int64_t status = std::get<std::int64_t>(mValues.front());
        return status >= mSpec.Status.Lowest && status <= mSpec.Status.Highest;
    }

    TableReport Finish(std::int64_t rows) {
        TableReport report;
        report.Spec = mSpec;
        report.RecordsStored = rows;
        for (RecordWriter& file : mFiles) {
            file.Finish();
            report.RecordsDeleted = file.Deleted();
        }
        if (mIndex) {
            mIndex->Finish();
            ReportIndex(*mIndex, report);
        }
        report.Account = mLedger.Finish();
        return report;
    }

    const TableSpec& mSpec;
    Random mRandom;
    RowContext mRow;
    TableLedger mLedger;
    std::vector<std::size_t> mKeyPlaces;
    std::vector<RecordWriter> mFiles;
    std::optional<IndexWriter> mIndex;
    std::vector<FieldValue> mValues;
    ByteString mRecord;
};

}  // namespace

IndexShape ShapeOf(const KeySpec& key) {
    return {key.Format, key.Length(), key.Duplicates};
}

IndexWriter ReserveIndex(const SiteContext& site, const TableSpec& spec, std::int64_t keys, Random& random) {
    const IndexShape shape = ShapeOf(spec.Key);
    return {shape,
            site.Share.Reserve(spec.Area, spec.Key.FileName, 'I', shape.BlockSize(), shape.BlocksFor(keys)),
            random};
}

void ReportIndex(const IndexWriter& index, TableReport& report) {
    report.IndexEntries = index.Entries();
    report.IndexBlocks = index.Blocks();
    report.IndexLevels = index.Levels();
}

LogicalExtent ReserveRecords(const SiteContext& site, const TableSpec& spec, const DataFileSpec& file,
                             std::int64_t records) {
    constexpr std::int64_t SpareShare = 20;
    constexpr std::int64_t Spare = 10;
    return site.Share.Reserve(spec.Area, file.Name, 'L', file.RecordLength,
                              records + records / SpareShare + Spare);
}

TableReport WriteTable(const SiteContext& site, const TableSpec& spec, std::int64_t rows) {
    return TableWriter(site, spec, rows).Write(rows);
}

}  // namespace sample
