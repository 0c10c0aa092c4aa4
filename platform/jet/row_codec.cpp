#include "platform/jet/row_codec.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "platform/jet/bytes.h"
#include "platform/jet/long_value.h"
#include "platform/jet/text_codec.h"

namespace jet {

namespace {

constexpr std::size_t Jet4Count = 2;  // size of a count or an offset
constexpr std::size_t Jet3Count = 1;
constexpr std::size_t JumpDistance = 256;

std::size_t MaskLength(std::size_t columns) {
    return (columns + 7) / 8;
}

Value DecodeValue(const PageFile& file, ColumnType type, std::span<const std::uint8_t> bytes) {
    const auto need = [&](std::size_t size) {
        if (bytes.size() < size) throw file.Damaged();
        return bytes.data();
    };
    switch (type) {
        case ColumnType::Byte:
            return std::int32_t{*need(1)};
        case ColumnType::Integer:
            return std::int32_t{static_cast<std::int16_t>(LoadU16(need(2)))};
        case ColumnType::Long:
            return static_cast<std::int32_t>(LoadU32(need(4)));
        case ColumnType::Currency:
            return Currency{static_cast<std::int64_t>(LoadU64(need(8)))};
        case ColumnType::Single:
            return double{std::bit_cast<float>(LoadU32(need(4)))};
        case ColumnType::Double:
            return std::bit_cast<double>(LoadU64(need(8)));
        case ColumnType::Date:
            return platform::OleDate{std::bit_cast<double>(LoadU64(need(8)))};
        case ColumnType::Text:
            return DecodeText(bytes, file.FileVersion());
        default:
            return Binary{std::string(bytes.begin(), bytes.end())};
    }
}

/// The alternative of the value that a column stores. Raises 3421 for a value of another kind.
template <typename T>
const T& Expect(const Value& value) {
    const T* held = std::get_if<T>(&value);
    if (held == nullptr) throw DataError(DataConversion);
    return *held;
}

std::int32_t ExpectInteger(const Value& value, std::int32_t lowest, std::int32_t highest) {
    const auto integer = Expect<std::int32_t>(value);
    if (integer < lowest || integer > highest) throw DataError(DataConversion);
    return integer;
}

float ExpectSingle(const Value& value) {
    const auto real = Expect<double>(value);
    if (std::abs(real) > double{std::numeric_limits<float>::max()}) throw DataError(DataConversion);
    return static_cast<float>(real);
}

bool IsNull(const Value& value) {
    return std::holds_alternative<std::monostate>(value);
}

std::span<const std::uint8_t> BytesOf(const Value& value) {
    const std::string& bytes = Expect<Binary>(value).Bytes;
    return {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
}

}  // namespace

// RowReader

RowReader::RowReader(const PageFile& file, const TableDef& table, std::span<const std::uint8_t> row)
    : mFile(file), mRow(row), mJet4(file.FileVersion() == Version::Jet4) {
    mFixedAt = mJet4 ? Jet4Count : Jet3Count;
    if (row.size() <= mFixedAt) throw file.Damaged();
    mColumnCount = mJet4 ? LoadU16(row.data()) : row[0];
    if (MaskLength(mColumnCount) + mFixedAt > row.size()) throw file.Damaged();
    mMaskAt = row.size() - MaskLength(mColumnCount);
    if (table.VariableColumns == 0) return;
    if (mJet4) {
        ReadJet4Offsets();
    } else {
        ReadJet3Offsets();
    }
}

void RowReader::ReadJet4Offsets() {
    if (mMaskAt < mFixedAt + Jet4Count) throw mFile.Damaged();
    const std::size_t countAt = mMaskAt - Jet4Count;
    const std::size_t count = LoadU16(&mRow[countAt]);
    if (countAt < mFixedAt + (count + 1) * Jet4Count) throw mFile.Damaged();
    const std::size_t endAt = countAt - (count + 1) * Jet4Count;

    mOffsets.resize(count + 1);
    for (std::size_t i = 0; i <= count; ++i) mOffsets[count - i] = LoadU16(&mRow[endAt + i * Jet4Count]);
    if (mOffsets.back() > endAt || !std::ranges::is_sorted(mOffsets)) throw mFile.Damaged();
}

void RowReader::ReadJet3Offsets() {
    // Only the low bytes are stored. No value is longer than 255 bytes, so each offset is the nearest one
    // below its successor with that low byte; the end of the last value is known from the row's length.
    const std::size_t jumps = (mRow.size() - 1) / JumpDistance;
    if (mMaskAt < mFixedAt + Jet3Count) throw mFile.Damaged();
    const std::size_t countAt = mMaskAt - Jet3Count;
    const std::size_t count = mRow[countAt];
    if (countAt < mFixedAt + jumps + count + 1) throw mFile.Damaged();
    const std::size_t endAt = countAt - jumps - count - 1;

    mOffsets.resize(count + 1);
    std::size_t offset = endAt - (endAt - mRow[endAt]) % JumpDistance;
    if (mRow[endAt] > endAt) throw mFile.Damaged();
    mOffsets[count] = offset;
    for (std::size_t i = 1; i <= count; ++i) {
        const std::size_t back = (offset - mRow[endAt + i]) % JumpDistance;
        if (back > offset) throw mFile.Damaged();
        offset -= back;
        mOffsets[count - i] = offset;
    }
}

bool RowReader::Bit(const Column& column) const {
    if (!Holds(column)) return false;
    const unsigned byte = mRow[mMaskAt + column.Number / 8U];
    return (byte >> (column.Number % 8U) & 1U) != 0;
}

std::optional<std::span<const std::uint8_t>> RowReader::Field(const Column& column) const {
    if (!Bit(column)) return std::nullopt;
    if (column.IsFixed()) {
        const std::size_t start = mFixedAt + column.FixedOffset;
        if (start + column.Size > mMaskAt) throw mFile.Damaged();
        return mRow.subspan(start, column.Size);
    }
    if (column.VariableIndex + std::size_t{1} >= mOffsets.size()) return std::nullopt;
    const std::size_t start = mOffsets[column.VariableIndex];
    return mRow.subspan(start, mOffsets[column.VariableIndex + std::size_t{1}] - start);
}

Value RowReader::Read(const Column& column) const {
    if (column.Type == ColumnType::Boolean) return Bit(column);
    const auto bytes = Field(column);
    if (!bytes) return {};
    return DecodeValue(mFile, column.Type, *bytes);
}

// Encoding

bool BooleanOf(const Value& value) {
    return !IsNull(value) && Expect<bool>(value);
}

void EncodeFixed(const Column& column, const Value& value, std::uint8_t* target) {
    switch (column.Type) {
        case ColumnType::Byte:
            *target = static_cast<std::uint8_t>(ExpectInteger(value, 0, 0xFF));
            return;
        case ColumnType::Integer:
            StoreU16(target, static_cast<std::uint16_t>(ExpectInteger(value, -0x8000, 0x7FFF)));
            return;
        case ColumnType::Long:
            StoreU32(target, static_cast<std::uint32_t>(Expect<std::int32_t>(value)));
            return;
        case ColumnType::Currency:
            StoreU64(target, static_cast<std::uint64_t>(Expect<Currency>(value).Scaled));
            return;
        case ColumnType::Single:
            StoreU32(target, std::bit_cast<std::uint32_t>(ExpectSingle(value)));
            return;
        case ColumnType::Double:
            StoreU64(target, std::bit_cast<std::uint64_t>(Expect<double>(value)));
            return;
        case ColumnType::Date:
            StoreU64(target, std::bit_cast<std::uint64_t>(Expect<platform::OleDate>(value).Serial));
            return;
        default:
            if (BytesOf(value).size() != column.Size) throw DataError(DataConversion);
            std::ranges::copy(BytesOf(value), target);
    }
}

RowEncoder::RowEncoder(const TableDef& table)
    : mVariableCount(table.VariableColumns),
      mColumnCount(table.MaxColumnNumber),
      mFixedEnd(Jet4Count),
      mOffsets(table.VariableColumns) {
    std::size_t variableRoom = 0;
    for (std::size_t i = 0; i < table.Columns.size(); ++i) {
        const Column& column = table.Columns[i];
        if (column.IsFixed()) {
            mFixed.push_back({column, i});
            if (column.Type == ColumnType::Boolean) continue;
            mFixedEnd = std::max<std::size_t>(mFixedEnd, Jet4Count + column.FixedOffset + column.Size);
        } else {
            mVariable.push_back({column, i});
            variableRoom += column.IsLongValue() ? LongValueReferenceLength + Jet4Layout.MaxInlineLongValue
                                                 : std::size_t{column.Size};
        }
    }
    std::ranges::sort(mVariable, {}, [](const Place& place) { return place.Definition.VariableIndex; });
    mRow.resize(mFixedEnd + variableRoom + (mVariableCount + 2) * Jet4Count + MaskLength(mColumnCount));
}

void RowEncoder::Encode(std::span<const Value> values) {
    mLongParts.clear();
    mLongBytes.clear();
    std::fill_n(mRow.begin(), mFixedEnd, std::uint8_t{0});
    StoreU16(mRow.data(), static_cast<std::uint16_t>(mColumnCount));
    for (const Place& place : mFixed) {
        const Value& value = values[place.Position];
        if (IsNull(value) || place.Definition.Type == ColumnType::Boolean) continue;
        EncodeFixed(place.Definition, value, &mRow[Jet4Count + place.Definition.FixedOffset]);
    }
    mLength = mFixedEnd;
    std::size_t next = 0;
    for (const Place& place : mVariable) {
        // Deleted columns between this one and the last are empty.
        for (; next <= place.Definition.VariableIndex; ++next) mOffsets[next] = mLength;
        if (!IsNull(values[place.Position])) AppendVariable(place, values[place.Position]);
    }
    for (; next < mVariableCount; ++next) mOffsets[next] = mLength;
    AppendTrailer(values);
    if (mLength > Jet4Layout.MaxRowLength) throw DataError(RecordTooLarge);
}

void RowEncoder::AppendVariable(const Place& place, const Value& value) {
    const Column& column = place.Definition;
    if (column.IsLongValue()) {
        AppendLongValue(column, value);
    } else if (column.Type == ColumnType::Text) {
        AppendText(column, Expect<std::u16string>(value));
    } else if (column.Type == ColumnType::Binary) {
        if (BytesOf(value).size() > column.Size) throw DataError(FieldTooSmall);
        AppendBytes(BytesOf(value));
    } else {
        EncodeFixed(column, value, &mRow[mLength]);
        mLength += column.Size;
    }
}

void RowEncoder::AppendText(const Column& column, const std::u16string& text) {
    if (2 * text.size() > column.Size) throw DataError(FieldTooSmall);
    CheckEncodable(text);
    const std::uint8_t* end =
        EncodeText(text, column.Compressed && IsCompressible(text), mRow.data() + mLength);
    mLength = static_cast<std::size_t>(end - mRow.data());
}

void RowEncoder::AppendLongValue(const Column& column, const Value& value) {
    const std::size_t start = mLongBytes.size();
    if (column.Type == ColumnType::Memo) {
        const auto& text = Expect<std::u16string>(value);
        CheckEncodable(text);
        const bool compressed = column.Compressed && text.size() <= MaxCompressedMemo && IsCompressible(text);
        mLongBytes.resize(start + EncodedLength(text, compressed));
        EncodeText(text, compressed, mLongBytes.data() + start);
    } else {
        const auto bytes = BytesOf(value);
        mLongBytes.insert(mLongBytes.end(), bytes.begin(), bytes.end());
    }

    const LongPart part{column.Number, mLength, start, mLongBytes.size() - start};
    if (part.Length > MaxLongValueLength) throw DataError(FieldTooSmall);
    mLength += LongValueReferenceLength;
    if (part.Length > Jet4Layout.MaxInlineLongValue) {
        mLongParts.push_back(part);
        return;
    }
    StoreInlineReference(&mRow[part.ReferenceAt], part.Length);
    AppendBytes(LongBytes(part));
    mLongBytes.resize(start);
}

void RowEncoder::AppendBytes(std::span<const std::uint8_t> bytes) {
    std::ranges::copy(bytes, mRow.data() + mLength);
    mLength += bytes.size();
}

void RowEncoder::AppendTrailer(std::span<const Value> values) {
    const auto appendCount = [this](std::size_t count) {
        StoreU16(&mRow[mLength], static_cast<std::uint16_t>(count));
        mLength += Jet4Count;
    };
    if (mVariableCount > 0) {
        appendCount(mLength);
        for (std::size_t i = mVariableCount; i > 0; --i) appendCount(mOffsets[i - 1]);
        appendCount(mVariableCount);
    }
    std::uint8_t* mask = mRow.data() + mLength;
    mLength += MaskLength(mColumnCount);
    std::fill(mask, mRow.data() + mLength, std::uint8_t{0});
    const auto setBit = [mask](const Place& place, bool set) {
        if (!set) return;
        const unsigned number = place.Definition.Number;
        mask[number / 8] = static_cast<std::uint8_t>(mask[number / 8] | 1U << (number % 8));
    };
    for (const Place& place : mFixed) {
        const Value& value = values[place.Position];
        setBit(place, place.Definition.Type == ColumnType::Boolean ? BooleanOf(value) : !IsNull(value));
    }
    for (const Place& place : mVariable) setBit(place, !IsNull(values[place.Position]));
}

}  // namespace jet
