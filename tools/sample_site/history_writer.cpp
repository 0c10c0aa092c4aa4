#include "tools/sample_site/history_writer.h"

#include <algorithm>
#include <array>
#include <span>
#include <vector>

#include "tools/sample_site/field_packing.h"
#include "tools/sample_site/history_layout.h"
#include "tools/sample_site/history_lines.h"
#include "tools/sample_site/record_writer.h"

namespace sample {

namespace {

using platform::ByteString;

constexpr int StatusLength = 2;
constexpr std::int64_t ActiveStatus = 1;
constexpr std::int64_t InvoicesPerWindow = 1000;
constexpr std::int64_t InvoicesPerDeleted = 50;
constexpr std::int64_t ReconciliationChances = 25;
constexpr std::int64_t EmptyChances = 60;

constexpr std::int64_t RepeatChances = 4;

/// Records in the chain of invoice 1, 2, ..., over and over; every so many invoices, from the fourth on, one
/// has as many as a chain can number.
constexpr std::array<std::int64_t, 10> ChainLengths{1, 2, 1, 1, 3, 1, 1, 1, 2, 1};
constexpr std::int64_t LongChain = 199;
constexpr std::int64_t InvoicesPerLongChain = 2000;
constexpr std::int64_t FirstLongChain = 4;
constexpr std::array<std::int64_t, 8> TransactionTypes{0, 1, 2, 3, 5, 11, 25, 26};

std::int64_t ChainLength(std::int64_t ordinal) {
    if (ordinal % InvoicesPerLongChain == FirstLongChain) return LongChain;
    return ChainLengths[static_cast<std::size_t>(ordinal - 1) % ChainLengths.size()];
}

std::int64_t RecordsOf(std::int64_t first, std::int64_t last) {
    std::int64_t records = 0;
    for (std::int64_t ordinal = first; ordinal <= last; ++ordinal) records += ChainLength(ordinal);
    return records;
}

class HistoryWriter {
  public:
    HistoryWriter(const SiteContext& site, const TableSpec& records, const TableSpec& lines)
        : mSpec(records),
          mInvoices(site.Plan.HistoryInvoices),
          mRandom(site.Seed, records.Name),
          mRow{mRandom, site.Plan, 0, 0, {}, {}},
          mLineMaker(lines),
          mRecordLedger(records, site.ExpectedFolder),
          mLineLedger(lines, site.ExpectedFolder),
          mFile(ReserveRecords(site, records, records.DataFiles.front(),
                               RecordsOf(1, mInvoices) + mInvoices / InvoicesPerDeleted + 1)),
          mIndex(ReserveIndex(site, records, mInvoices, mRandom)),
          mDescription(FieldPlace(records, "Description")),
          mNextRecord(FieldPlace(records, "NextRecord")),
          mSequence(FieldPlace(records, "RecordsInChain")),
          mType(FieldPlace(records, "TransactionType")),
          mLineCount(FieldPlace(records, "LinesInRecord")) {}

    void Write() {
        RecordNumbers numbers(mRandom);
        for (std::int64_t first = 1; first <= mInvoices; first += InvoicesPerWindow) {
            const std::int64_t last = std::min(first + InvoicesPerWindow - 1, mInvoices);
            const RecordWindow window =
                numbers.Next(RecordsOf(first, last), (last - first + 1) / InvoicesPerDeleted,
                             RecordNumbers::Order::Shuffled);
            mFile.Open(window);
            auto next = window.Rows.begin();
            for (std::int64_t ordinal = first; ordinal <= last; ++ordinal) {
                const auto end = next + ChainLength(ordinal);
                WriteInvoice(ordinal, {next, end});
                next = end;
            }
            mFile.Close();
        }
        mFile.Finish();
        mIndex.Finish();
    }

    TableReport RecordReport(const TableSpec& spec) {
        TableReport report;
        report.Spec = spec;
        report.RecordsStored = mFile.Active();
        report.RecordsDeleted = mFile.Deleted();
        ReportIndex(mIndex, report);
        report.Account = mRecordLedger.Finish();
        return report;
    }

    TableReport LineReport(const TableSpec& spec) {
        TableReport report = RecordReport(spec);
        report.Account = mLineLedger.Finish();
        return report;
    }

  private:
    /// chain holds the record numbers from the highest sequence number down to 1.
    void WriteInvoice(std::int64_t ordinal, std::vector<std::int32_t> chain) {
        mRow.Ordinal = ordinal;
        mRow.Key = InvoiceNumber(ordinal);
        std::vector<FieldValue> values;
        for (const FieldSpec& field : mSpec.Fields) values.push_back(field.Make(mRow));
        const bool rewritten = ChooseType(values);

        ByteString head;
        std::int64_t lineNumber = 0;
        for (std::int64_t sequence = 1; sequence <= std::ssize(chain); ++sequence) {
            const auto place = chain.size() - static_cast<std::size_t>(sequence);
            values[mSequence] = sequence;
            values[mNextRecord] = LinkFrom(chain, place);
            std::vector<HistoryLine> lines = MakeLines(chain.size(), lineNumber, rewritten);
            values[mLineCount] = static_cast<std::int64_t>(lines.size());
            head = Packed(values, lines);
            mFile.Put(chain[place], head);
            for (const HistoryLine& line : lines) mLineLedger.Offer(line.Row);
        }
        // The key points at the highest sequence number, which was the last one written.
        const KeySegment key = mSpec.Key.Segments.front();
        mIndex.Add(ByteString(platform::Mid(head, key.Start, key.Length)), chain.front());
        mRecordLedger.Offer(values);
    }

    /// Whether lines are rewritten: by type, or by the description of a reconciliation.
    bool ChooseType(std::vector<FieldValue>& values) {
        const std::int64_t type = mRandom.Pick(std::span<const std::int64_t>(TransactionTypes));
        values[mType] = type;
        const bool reconciles = mRandom.OneIn(ReconciliationChances);
        if (reconciles) values[mDescription] = std::string(history::ReconciliationDescription);
        return reconciles || type % history::RewrittenTypes == 0;
    }

    /// Links are read without their sign. The last record leads back to the first, so a walk that goes on
    /// from the link it read last still stands on a record of the invoice.
    std::int64_t LinkFrom(const std::vector<std::int32_t>& chain, std::size_t place) {
        const bool isLast = place + 1 == chain.size();
        const std::int64_t next = isLast ? chain.front() : chain[place + 1];
        return isLast || mRandom.OneIn(3) ? -next : next;
    }

    /// A full record may count one line more than it holds. The longest chain does without: it has as many
    /// lines as an export takes.
    std::vector<HistoryLine> MakeLines(std::size_t chainLength, std::int64_t& lineNumber, bool rewritten) {
        std::int64_t count = mRandom.Between(1, history::LinesPerRecord);
        if (chainLength == 1 && mRandom.OneIn(EmptyChances)) count = 0;
        const bool repeats = count == history::LinesPerRecord && mRandom.OneIn(RepeatChances);
        std::vector<HistoryLine> lines;
        for (; count > 0; --count) lines.push_back(mLineMaker.Make(mRow, ++lineNumber, rewritten));
        if (repeats && chainLength < LongChain)
            lines.push_back(mLineMaker.Repeated(lines.back(), ++lineNumber, rewritten));
        return lines;
    }

    ByteString Packed(const std::vector<FieldValue>& values, const std::vector<HistoryLine>& lines) const {
        ByteString record(history::RecordLength, '\0');
        PackInteger(record, 1, StatusLength, ActiveStatus);
        for (std::size_t i = 0; i < values.size(); ++i) PackField(mSpec.Fields[i], values[i], record);
        int position = history::FirstLine;
        for (const HistoryLine& line : lines) {
            if (line.Bytes.empty()) continue;
            platform::Put(record, position, line.Bytes);
            position += history::LineLength;
        }
        return record;
    }

    const TableSpec& mSpec;
    std::int64_t mInvoices;
    Random mRandom;
    RowContext mRow;
    HistoryLineMaker mLineMaker;
    TableLedger mRecordLedger;
    TableLedger mLineLedger;
    RecordWriter mFile;
    IndexWriter mIndex;
    std::size_t mDescription;
    std::size_t mNextRecord;
    std::size_t mSequence;
    std::size_t mType;
    std::size_t mLineCount;
};

}  // namespace

std::pair<TableReport, TableReport> WriteHistory(const SiteContext& site, const TableSpec& records,
                                                 const TableSpec& lines) {
    HistoryWriter writer(site, records, lines);
    writer.Write();
    return {writer.RecordReport(records), writer.LineReport(lines)};
}

}  // namespace sample
