#include "tools/sample_site/history_lines.h"

#include <cstdlib>

#include "tools/sample_site/field_packing.h"
#include "tools/sample_site/history_layout.h"
#include "tools/sample_site/part_numbers.h"
#include "tools/sample_site/table_ledger.h"

namespace sample {

namespace {

using platform::ByteString;

constexpr std::int64_t RemarkChances = 6;
constexpr const char* RemarkType = "REM";

}  // namespace

HistoryLineMaker::HistoryLineMaker(const TableSpec& detail)
    : mDetail(detail),
      mLineNumber(FieldPlace(detail, "LineNumber")),
      mLineType(FieldPlace(detail, "LineType")),
      mPartNumber(FieldPlace(detail, "PartNumber")),
      mReference(FieldPlace(detail, "Reference")),
      mUnitPrice(FieldPlace(detail, "UnitPrice")),
      mQuantityFactor(FieldPlace(detail, "QuantityFactor")),
      mQuantity(FieldPlace(detail, "Quantity")),
      mExtendedCost(FieldPlace(detail, "ExtendedCost")),
      mLocation(FieldPlace(detail, "Location")),
      mPriceCode(FieldPlace(detail, "PriceCode")),
      mCostCentre(FieldPlace(detail, "CostCentre")),
      mDescription(FieldPlace(detail, "Description")) {}

HistoryLine HistoryLineMaker::Make(RowContext& row, std::int64_t lineNumber, bool rewritten) const {
    std::vector<FieldValue> values;
    values.reserve(mDetail.Fields.size());
    for (const FieldSpec& field : mDetail.Fields) values.push_back(field.Make(row));
    values[mLineNumber] = lineNumber;
    if (row.Numbers.OneIn(RemarkChances)) return Remark(row, std::move(values));
    if (rewritten) return Rewritten(row, std::move(values));
    ByteString bytes = Packed(values);
    return {std::move(bytes), std::move(values)};
}

/// The export finds no bytes for it and treats those of the line before, as it left them, once more: the text
/// of a remark has moved away, and of a rewritten line only zeros are left to split, and no plain type.
HistoryLine HistoryLineMaker::Repeated(const HistoryLine& before, std::int64_t lineNumber,
                                       bool rewritten) const {
    HistoryLine line{{}, before.Row};
    line.Row[mLineNumber] = lineNumber;
    if (std::get<std::string>(line.Row[mLineType]) == RemarkType) {
        line.Row[mDescription] = std::string();
    } else if (rewritten) {
        line.Row[mLineType] = std::string();
        line.Row[mQuantity] = line.Row[mQuantityFactor] = std::int64_t{0};
    }
    return line;
}

ByteString HistoryLineMaker::Packed(const std::vector<FieldValue>& values) const {
    ByteString detail(history::DetailLength, '\0');
    for (std::size_t i = 0; i < values.size(); ++i) PackField(mDetail.Fields[i], values[i], detail);
    return ByteString(platform::Mid(detail, history::DetailLine, history::LineLength));
}

/// The text lies where other lines have part and reference. The export moves it to the description and clears
/// everything up to the last byte of the line, the price code to a blank.
HistoryLine HistoryLineMaker::Remark(RowContext& row, std::vector<FieldValue> values) const {
    constexpr std::int32_t TextInLine = history::DetailLineBody - history::DetailLine + 1;
    const std::string text = ::sample::Remark(row.Numbers);
    values[mLineType] = std::string(RemarkType);
    HistoryLine line{Packed(values), {}};
    platform::Put(line.Bytes, TextInLine, Compressed(text, history::RemarkTextLength));

    values[mPartNumber] = NoPartNumber();
    values[mReference] = std::string();
    values[mLocation] = std::string();
    values[mPriceCode] = std::string();
    for (const std::size_t cleared : {mUnitPrice, mQuantityFactor, mQuantity, mExtendedCost, mCostCentre})
        values[cleared] = std::int64_t{0};
    values[mDescription] = text;
    line.Row = std::move(values);
    return line;
}

/// The signed number in place of the cost is split: its amount becomes the quantity, ten times its sign the
/// factor, and no cost is left.
HistoryLine HistoryLineMaker::Rewritten(RowContext& row, std::vector<FieldValue> values) const {
    constexpr std::int64_t MostReturned = 90;
    constexpr std::int64_t SignFactor = 10;
    const std::string type = std::get<std::string>(values[mLineType]).substr(0, 1);
    const std::int64_t quantity = row.Numbers.Between(-MostReturned, MostReturned);
    values[mExtendedCost] = quantity;
    HistoryLine line{Packed(values), {}};
    platform::Put(line.Bytes, 1, type + " ");

    values[mLineType] = type;
    values[mQuantity] = std::abs(quantity);
    values[mQuantityFactor] = quantity == 0 ? 0 : (quantity < 0 ? -SignFactor : SignFactor);
    values[mExtendedCost] = std::int64_t{0};
    line.Row = std::move(values);
    return line;
}

}  // namespace sample
