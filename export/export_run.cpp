// A run walks the records of one table in one of two ways. A table whose key the catalogue describes is
// walked in key order, from the start key to the end value. Any other table is walked by record number, from
// 1 to the highest record in use, and only records whose status lies in the table's range are written.

#include "export/export_run.h"

#include <optional>

#include "catalogue/row_fields.h"
#include "engine/business_basic.h"
#include "engine/field_codec.h"
#include "export/end_value.h"
#include "export/invoice_detail.h"
#include "export/key_range.h"
#include "export/record_decoding.h"
#include "export/supersession.h"
#include "export/target_row.h"
#include "platform/checked.h"
#include "platform/dao/errors.h"

namespace exporting {

namespace {

constexpr std::size_t KeyFileSlot = 1;
constexpr std::size_t FirstDataSlot = 2;
constexpr std::int32_t StatusPosition = 1;
constexpr int CancelUpdateButton = 2;
constexpr const char* CompleteText = "Complete";

/// What a keyed run needs of the key's description.
struct KeyRange {
    FieldDecoder Decoder;
    std::int32_t EndValue;
};

struct StatusRange {
    std::int32_t StartingStatus;
    std::int32_t EndingStatus;
    std::int32_t LastRecord;
};

class ExportRun {
  public:
    ExportRun(catalogue::InterfaceState& state, platform::WindowServices& window, std::u16string tableName)
        : mState(state),
          mWindow(window),
          mTableName(std::move(tableName)),
          mIsDetail(mTableName == InvoiceDetailTable),
          mFiles(state.TableFiles),
          mMap(state.LogicalMapRecordset) {}

    void SetUp();

    /// False when the operator cancelled.
    bool CopyRecords();

  private:
    void StartByRecordNumber();
    void StartByKey(dao::Recordset& indexDefinition);
    bool BuildRecord();
    bool TakeDetailLine();
    void ReadDataFiles();
    bool StatusIsSelected() const;
    bool WriteRow();
    bool IndexColumnExceedsEnd();
    void Advance();
    void TestKey();
    bool CancelIsRequested();
    std::int32_t HighestDataRecord() const;

    catalogue::InterfaceState& mState;
    platform::WindowServices& mWindow;
    const std::u16string mTableName;
    const bool mIsDetail;
    const catalogue::TableFileSlots mFiles;
    const std::shared_ptr<dao::Recordset> mMap;  // on the table's row

    std::optional<KeyRange> mKey;        // a keyed run
    std::optional<StatusRange> mStatus;  // a run by record number
    std::int32_t mRecordNumber = 0;
    std::int32_t mProgressCount = 0;
    bool mMore = false;
    bool mIsCancelled = false;

    std::shared_ptr<dao::Recordset> mTarget;
    std::optional<TargetRow> mRow;
    dao::RecordsetField* mIndexColumn = nullptr;

    DetailLines mDetailLines;
    std::int32_t mLineIndex = 0;
    std::int32_t mRemainingLines = 0;
};

void ExportRun::SetUp() {
    dao::Recordset& indexDefinition = *mState.IndexDefinitionRecordset;
    indexDefinition.SetIndex(u"PrimaryKey");
    indexDefinition.Seek("=", mMap->Fields(u"LogicalIndex").GetValue());
    if (indexDefinition.NoMatch()) {
        StartByRecordNumber();
    } else {
        StartByKey(indexDefinition);
    }
    mTarget = mState.TargetDatabase->OpenRecordset(mTableName);
    mState.TargetRecordset = mTarget;
    mRow.emplace(mState.FieldList, *mTarget);
}

/// `TotalRecords` keeps what the last ticking found.
void ExportRun::StartByRecordNumber() {
    mStatus = StatusRange{.StartingStatus = catalogue::LongOf(*mMap, u"StartingStatus"),
                          .EndingStatus = catalogue::LongOf(*mMap, u"EndingStatus"),
                          .LastRecord = HighestDataRecord()};
    mRecordNumber = 1;
    mMore = mRecordNumber <= mStatus->LastRecord;
}

void ExportRun::StartByKey(dao::Recordset& indexDefinition) {
    engine::cBusinessBasic& engine = *engine::gEngine;
    mState.CurrentKey = PackKey(indexDefinition);
    engine.KFind(mFiles[KeyFileSlot], mState.KeyBuffer, mState.CurrentKey, mRecordNumber, false);
    if (mRecordNumber < 0) mRecordNumber = platform::CheckedNegate(mRecordNumber);

    const ColumnValue keyValue = UnpackKey(indexDefinition, mState.CurrentKey);
    const std::int32_t overrideEnd = catalogue::LongOf(indexDefinition, u"overrideEnd");
    mKey = KeyRange{
        .Decoder = FieldDecoder(KeyDescriptor(indexDefinition)),
        .EndValue = overrideEnd != 0 ? overrideEnd : catalogue::LongOf(indexDefinition, u"EndValue")};
    mMore = !Exceeds(keyValue, mKey->EndValue);
    mState.TotalRecords = engine.KCount(mFiles[KeyFileSlot], true);
}

bool ExportRun::CopyRecords() {
    while (mRecordNumber >= 1 && mMore) {
        if (CancelIsRequested()) return false;
        mProgressCount = platform::CheckedAdd(mProgressCount, 1);
        mWindow.SetProgress(mProgressCount, mState.TotalRecords);
        if (BuildRecord() && StatusIsSelected() && !WriteRow()) return true;
        if (mIsCancelled) return false;  // in the middle of a chain without end
        Advance();
    }
    return true;
}

/// The request is looked at where events are handled, and nowhere else.
bool ExportRun::CancelIsRequested() {
    mWindow.Yield();
    mIsCancelled = mState.CancelRequested;
    return mIsCancelled;
}

/// Fills `CurrentRecord`; false when the record in hand gives no row.
bool ExportRun::BuildRecord() {
    mState.CurrentRecord.clear();
    if (mIsDetail) return TakeDetailLine();
    ReadDataFiles();
    if (!mState.CurrentRecord.empty()) return true;
    mState.CurrentRecord = mState.CurrentKey;
    if (mTableName == SupersessionTable) FoldSupersession(mState, mFiles[KeyFileSlot], mRecordNumber);
    return true;
}

bool ExportRun::TakeDetailLine() {
    if (mRemainingLines <= 0) {
        ExpandInvoiceDetail(mFiles[FirstDataSlot], mRecordNumber, mDetailLines,
                            [this] { return CancelIsRequested(); });
        mRemainingLines = mDetailLines.Count();
        mLineIndex = 0;
        if (mRemainingLines == 0) return false;
    }
    ++mLineIndex;
    --mRemainingLines;
    mState.CurrentRecord = mDetailLines.Line(mLineIndex);
    return true;
}

/// The probe for a further data file runs past the last slot when a table fills them all.
void ExportRun::ReadDataFiles() {
    for (std::size_t slot = FirstDataSlot;; ++slot) {
        if (slot >= mFiles.size()) throw platform::Error(platform::SubscriptOutOfRange);
        if (!mFiles[slot]) return;
        ByteString record = engine::gEngine->LreadFile(mFiles[slot], mRecordNumber, false);
        if (slot == FirstDataSlot) {
            mState.CurrentRecord = std::move(record);
        } else {
            mState.CurrentRecord += record;
        }
    }
}

bool ExportRun::StatusIsSelected() const {
    if (!mStatus) return true;
    const std::int32_t status = engine::iUnpack('J', mState.CurrentRecord, StatusPosition);
    return status >= mStatus->StartingStatus && status <= mStatus->EndingStatus;
}

/// False when the row lies beyond the end of the key range: it is not written, and the run ends.
bool ExportRun::WriteRow() {
    mTarget->AddNew();
    mRow->Fill(mState.CurrentRecord);
    if (mKey && IndexColumnExceedsEnd()) return false;
    try {
        mTarget->Update();
    } catch (const platform::Error& error) {
        if (dao::IsFileError(error)) throw;  // a row that the table refuses is dropped, and the run goes on
    }
    return true;
}

bool ExportRun::IndexColumnExceedsEnd() {
    if (mIndexColumn == nullptr)
        mIndexColumn = &mTarget->Fields(catalogue::TextOf(*mMap, u"IndexFieldinDataFile"));
    return Exceeds(mIndexColumn->GetValue(), mKey->EndValue);
}

void ExportRun::Advance() {
    if (mRemainingLines > 0) return;  // the next detail line belongs to the same record
    if (mStatus) {
        mRecordNumber = platform::CheckedAdd(mRecordNumber, 1);
        if (mRecordNumber > mStatus->LastRecord) mMore = false;
        return;
    }
    engine::gEngine->KNext(mFiles[KeyFileSlot], mState.KeyBuffer, mState.CurrentKey, mRecordNumber, false);
    TestKey();
}

void ExportRun::TestKey() {
    if (Exceeds(mKey->Decoder.Decode(mState.CurrentKey), mKey->EndValue)) mMore = false;
}

std::int32_t ExportRun::HighestDataRecord() const {
    if (!mFiles[FirstDataSlot]) throw platform::Error(platform::ObjectNotSet);
    return mFiles[FirstDataSlot]->HighUsedRecord(true);
}

}  // namespace

void AddData(catalogue::InterfaceState& state, const catalogue::TableList& list,
             platform::WindowServices& window, std::int16_t Index) {
    if (state.CancelRequested) return;
    ExportRun run(state, window, list.Caption(Index));
    run.SetUp();
    if (!run.CopyRecords()) return;
    window.EnableAction(CancelUpdateButton, false);
    window.SetStatus(CompleteText);
}

}  // namespace exporting
