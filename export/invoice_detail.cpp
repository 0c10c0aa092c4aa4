#include "export/invoice_detail.h"

#include <array>
#include <cstdlib>
#include <iterator>
#include <optional>

#include "engine/built_ins.h"
#include "engine/business_basic.h"
#include "engine/field_codec.h"
#include "platform/checked.h"
#include "platform/error.h"

namespace exporting {

using platform::ByteString;
using platform::Mid;
using platform::Put;

namespace {

// Positions in a history record, 1-based.
constexpr std::int32_t DescriptionPosition = 86;
constexpr std::int32_t DescriptionLength = 20;
constexpr std::int32_t InvoicePosition = 106;
constexpr std::int32_t InvoiceLength = 4;
constexpr std::int32_t LinkPosition = 110;
constexpr std::int32_t SequencePosition = 115;
constexpr std::int32_t TypePosition = 123;
constexpr std::int32_t LineCountPosition = 146;
constexpr std::int32_t FirstLinePosition = 161;
constexpr std::int32_t LineLength = 44;

// Positions in a detail record.
constexpr std::size_t DetailLength = 76;
constexpr std::int32_t StatusAt = 1;
constexpr std::int32_t InvoiceAt = 3;
constexpr std::int32_t LineNumberAt = 7;
constexpr std::int32_t LineAt = 9;
constexpr std::int32_t LineTypeLength = 2;
constexpr std::int32_t RemarkAt = 11;
constexpr std::int32_t RemarkLength = 24;
constexpr std::int32_t AmountsAt = 35;
constexpr std::size_t AmountsLength = 17;
constexpr std::int32_t SignAt = 39;
constexpr std::int32_t MagnitudeAt = 41;
constexpr std::int32_t AmountAt = 44;
constexpr std::size_t AmountLength = 3;
constexpr std::int32_t RemarkFlagAt = 49;
constexpr std::int32_t DescriptionAt = 53;

// Lengths of blanks before compression: three characters become two bytes.
constexpr std::size_t TemplateLineBlanks = 39;
constexpr std::size_t RemarkBlanks = 42;
constexpr std::size_t DescriptionBlanks = 36;

constexpr std::string_view RemarkType = "REM";
constexpr std::string_view WarrantyReconciliation = " WARRANTY RECONCILIATION";
constexpr std::int32_t WarrantyType = 95;
constexpr std::int32_t SplitAmountTypes = 5;  // types that this divides
constexpr std::int32_t SignWeight = 10;
constexpr std::int32_t RemoveControlCharacters = 1;

ByteString Compressed(ByteString text) {
    return engine::Crm(text);
}

ByteString CompressedBlanks(std::size_t characters) {
    return Compressed(ByteString(characters, ' '));
}

/// Slot s holds the record with sequence number s, slot 0 the highest sequence number met, the last slot the
/// number of lines of the chain. A sequence number is an unsigned byte.
class ChainRecords {
  public:
    static constexpr std::int32_t LastSlot = 200;

    std::int32_t& operator()(std::int32_t slot) {
        if (slot > LastSlot) throw platform::Error(platform::SubscriptOutOfRange);
        return mSlots[static_cast<std::size_t>(slot)];
    }

  private:
    std::array<std::int32_t, LastSlot + 1> mSlots{};
};

/// One chain on its way into detail records.
class ChainExpansion {
  public:
    ChainExpansion(const std::shared_ptr<engine::cLogicalFile>& historyFile, DetailLines& detailLines)
        : mHistoryFile(historyFile), mDetailLines(detailLines) {}

    /// Reads the chain to its end; false when the operator stopped it.
    bool CollectHistoryChain(std::int32_t& Rec, const StopRequest& stopRequested);

    void Expand();

  private:
    const ByteString& HistoryRecord(std::int32_t record);
    void ReadHeader();
    void MakeTemplate(const ByteString& header);
    void AddLine(const ByteString& history, std::int32_t lineOfRecord);
    void MoveRemark();
    void CompleteOrdinaryLine();
    void SplitAmount();

    const std::shared_ptr<engine::cLogicalFile>& mHistoryFile;
    DetailLines& mDetailLines;
    ChainRecords mChainRecords;
    std::optional<std::int32_t> mRecordRead;  // the one that mHistory holds
    ByteString mHistory;
    std::int32_t mType = 0;
    ByteString mDescription;
    const ByteString mBlankDescription = CompressedBlanks(DescriptionBlanks);
    // Not reset between lines: what a rule leaves alone keeps the bytes of the line before.
    ByteString mTemplate;
};

/// Most chains are one record long: it is read once for its links, its header and its lines.
const ByteString& ChainExpansion::HistoryRecord(std::int32_t record) {
    if (mRecordRead != record) {
        mRecordRead.reset();
        mHistory = engine::gEngine->LreadFile(mHistoryFile, record, false);
        mRecordRead = record;
    }
    return mHistory;
}

bool ChainExpansion::CollectHistoryChain(std::int32_t& Rec, const StopRequest& stopRequested) {
    std::int32_t total = 0;
    for (std::int64_t read = 1;; ++read) {
        if (read > ChainRecords::LastSlot && stopRequested()) return false;
        const ByteString& history = HistoryRecord(Rec);
        const std::int32_t sequence = engine::iUnpack('B', history, SequencePosition);
        const std::int32_t lines = engine::iUnpack('B', history, LineCountPosition);
        const std::int32_t link = engine::iUnpack('K', history, LinkPosition);
        mChainRecords(sequence) = Rec;
        Rec = std::abs(link);
        if (sequence > mChainRecords(0)) mChainRecords(0) = sequence;
        total = platform::CheckedAdd(total, lines);
        if (sequence == 1) break;
    }
    mChainRecords(ChainRecords::LastSlot) = total;
    return true;
}

void ChainExpansion::Expand() {
    ReadHeader();
    const std::int32_t highest = mChainRecords(0);
    for (std::int32_t sequence = 1; sequence <= highest; ++sequence) {
        const ByteString& history = HistoryRecord(mChainRecords(sequence));
        const std::int32_t lines = engine::iUnpack('B', history, LineCountPosition);
        for (std::int32_t line = 0; line < lines; ++line) AddLine(history, line);
    }
}

/// The record with the highest sequence number stands for the whole invoice.
void ChainExpansion::ReadHeader() {
    const ByteString& header = HistoryRecord(mChainRecords(mChainRecords(0)));
    mType = engine::iUnpack('B', header, TypePosition);
    mDescription = engine::Trun(engine::Ucm(Mid(header, DescriptionPosition, DescriptionLength)),
                                RemoveControlCharacters);
    MakeTemplate(header);
}

void ChainExpansion::MakeTemplate(const ByteString& header) {
    mTemplate.assign(DetailLength, '\0');
    engine::iPack('C', mTemplate, 1, StatusAt);
    Put(mTemplate, InvoiceAt, Mid(header, InvoicePosition, InvoiceLength));
    Put(mTemplate, LineAt, CompressedBlanks(TemplateLineBlanks));
    Put(mTemplate, DescriptionAt, mBlankDescription);
}

void ChainExpansion::AddLine(const ByteString& history, std::int32_t lineOfRecord) {
    engine::iPack('C', mTemplate, mDetailLines.Count() + 1, LineNumberAt);
    Put(mTemplate, LineAt, Mid(history, FirstLinePosition + LineLength * lineOfRecord, LineLength));
    if (engine::Ucm(Mid(mTemplate, LineAt, LineTypeLength)) == RemarkType) {
        MoveRemark();
    } else {
        CompleteOrdinaryLine();
    }
    mDetailLines.Add(mTemplate);
}

/// The order matters: the blanks reach four bytes into the amounts, which end up zero, and the flag lies
/// inside them.
void ChainExpansion::MoveRemark() {
    Put(mTemplate, DescriptionAt, ByteString(Mid(mTemplate, RemarkAt, RemarkLength)));
    Put(mTemplate, RemarkAt, CompressedBlanks(RemarkBlanks));
    Put(mTemplate, AmountsAt, ByteString(AmountsLength, '\0'));
    Put(mTemplate, RemarkFlagAt, " ");
}

void ChainExpansion::CompleteOrdinaryLine() {
    Put(mTemplate, DescriptionAt, mBlankDescription);
    if (mDescription == WarrantyReconciliation) mType = WarrantyType;
    if (mType % SplitAmountTypes == 0) SplitAmount();
}

/// These types carry a signed amount and one character of line type: sign and magnitude get places of their
/// own, and the type is compressed from its first byte.
void ChainExpansion::SplitAmount() {
    Put(mTemplate, LineAt, Compressed(ByteString(Mid(mTemplate, LineAt, 1)) + "  "));
    const std::int32_t amount = engine::iUnpack('K', mTemplate, AmountAt);
    const std::int32_t sign = (amount > 0) - (amount < 0);
    Put(mTemplate, AmountAt, ByteString(AmountLength, '\0'));
    engine::iPack('D', mTemplate, std::abs(amount), MagnitudeAt);
    engine::iPack('J', mTemplate, sign * SignWeight, SignAt);
}

}  // namespace

void DetailLines::Add(const ByteString& detailRecord) {
    if (Count() >= MostLines) throw platform::Error(platform::SubscriptOutOfRange);
    if (mCount == std::ssize(mLines)) mLines.emplace_back();
    mLines[static_cast<std::size_t>(mCount++)] = detailRecord;
}

const ByteString& DetailLines::Line(std::int32_t index) const {
    if (index < 1 || index > Count()) throw platform::Error(platform::SubscriptOutOfRange);
    return mLines[static_cast<std::size_t>(index) - 1];
}

void ExpandInvoiceDetail(const std::shared_ptr<engine::cLogicalFile>& historyFile, std::int32_t& Rec,
                         DetailLines& detailLines, const StopRequest& stopRequested) {
    detailLines.Clear();
    ChainExpansion chain(historyFile, detailLines);
    if (chain.CollectHistoryChain(Rec, stopRequested)) chain.Expand();
}

}  // namespace exporting
