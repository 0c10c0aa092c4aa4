#include "tools/sample_site/field_packing.h"
#include "tools/sample_site/part_numbers.h"
#include "tools/sample_site/supersession_writer.h"
#include "tools/sample_site/table_builder.h"
#include "tools/sample_site/tables.h"

namespace sample {

namespace {

using platform::ByteString;

constexpr int PartLength = 14;
constexpr int RestPosition = 17;  // 1-based, in the key
constexpr int RestLength = 10;
constexpr int KeyLength = RestPosition + RestLength - 1;
constexpr int RestCharacters = 15;
constexpr int GroupKeys = 3;
constexpr int LostBytes = 4;
constexpr int LostCharacters = LostBytes / 2 * 3;
constexpr int RemarkLength = GroupKeys * RestLength - LostBytes;  // of the row
constexpr std::int64_t RemarkChances = 5;
constexpr const char* Replaced = "S";
constexpr const char* Remarked = "Z";

class SupersessionWriter {
  public:
    SupersessionWriter(const SiteContext& site, const TableSpec& spec)
        : mSpec(spec),
          mPlan(site.Plan),
          mRandom(site.Seed, spec.Name),
          mLedger(spec, site.ExpectedFolder),
          mIndex(ReserveIndex(site, spec, site.Plan.Supersessions * GroupKeys, mRandom)) {}

    TableReport Write() {
        for (std::int64_t ordinal = 1; ordinal <= mPlan.Supersessions; ++ordinal) {
            const PartNumber part = PartNumberAt(ordinal, mPlan.Parts);
            // The first part is always replaced, the second always remarked on.
            if (ordinal == 1 || (ordinal > 2 && !mRandom.OneIn(RemarkChances))) {
                WriteReplacement(ordinal, part);
            } else {
                WriteRemark(ordinal, part);
            }
        }
        mIndex.Finish();
        TableReport report;
        report.Spec = mSpec;
        report.RecordsStored = mIndex.Entries();
        ReportIndex(mIndex, report);
        report.Account = mLedger.Finish();
        return report;
    }

  private:
    void AddKey(std::int64_t ordinal, const PartNumber& part, const char* kind, std::int64_t sequence,
                const std::string& rest) {
        constexpr int SequenceLength = 1;
        ByteString key = Compressed(part.Stored, PartLength) + kind;
        key.resize(KeyLength);
        PackInteger(key, PartLength + 2, SequenceLength, sequence);
        platform::Put(key, RestPosition, Compressed(rest, RestLength));
        mIndex.Add(key, static_cast<std::int32_t>(ordinal));
    }

    /// Behind the first 15 characters of the new number the row has blanks, so its mask is lost.
    void WriteReplacement(std::int64_t ordinal, const PartNumber& part) {
        const std::int64_t sequence = mRandom.Between(1, 9);
        const PartNumber replacement = PartNumberAt(mRandom.Between(1, mPlan.Parts), mPlan.Parts);
        const std::string shortened = replacement.Stored.substr(0, RestCharacters);
        AddKey(ordinal, part, Replaced, sequence, shortened);
        PartNumber shown = NoPartNumber();
        shown.Shown.replace(0, shortened.size(), shortened);
        mLedger.Offer({part, std::string(Replaced), sequence, shown, std::string()});
    }

    void WriteRemark(std::int64_t ordinal, const PartNumber& part) {
        std::string remark = PartDescription(mRandom) + ". " + Remark(mRandom);
        remark.resize(static_cast<std::size_t>(GroupKeys) * RestCharacters, ' ');
        for (std::int64_t third = 0; third < GroupKeys; ++third) {
            const auto start = static_cast<std::size_t>(third) * RestCharacters;
            AddKey(ordinal, part, Remarked, third + 1, remark.substr(start, RestCharacters));
        }
        mLedger.Offer(
            {part, std::string(Remarked), std::int64_t{1}, NoPartNumber(), remark.substr(LostCharacters)});
    }

    const TableSpec& mSpec;
    const SitePlan& mPlan;
    Random mRandom;
    TableLedger mLedger;
    IndexWriter mIndex;
};

}  // namespace

/// The writer fills the fields.
TableSpec Supercedes() {
    TableBuilder table("SUPERCEDES", "Bottom Level", "PRT");
    table.Field("PartNumber", 'P', PartLength, 0, Maker{})
        .Field("Kind", 'A', 1, 0, Maker{})
        .Field("Sequence", 'U', 1, 0, Maker{})
        .Field("NewPartNumber", 'P', PartLength, 0, Maker{})
        .Field("Remark", 'C', RemarkLength, 0, Maker{})
        .Primary({{"PartNumber"}})
        .Index("NewPartNumber", {{"NewPartNumber"}});
    KeySpec& key = table.Spec().Key;
    key.FileName = "SUPKEY";
    key.Description = "Superseded part number";
    key.Segments = {{1, KeyLength}};
    key.DataType = 'P';
    key.Size = PartLength;
    key.EndValue = 0x7FFFFFFF;
    key.FieldName = "PartNumber";
    table.Spec().IsReshaped = true;
    return table.Done();
}

TableReport WriteSupersessions(const SiteContext& site, const TableSpec& spec) {
    return SupersessionWriter(site, spec).Write();
}

}  // namespace sample
