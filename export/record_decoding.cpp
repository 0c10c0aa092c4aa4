#include "export/record_decoding.h"

#include <cmath>
#include <iterator>

#include "catalogue/row_fields.h"
#include "engine/built_ins.h"
#include "engine/dates.h"
#include "engine/field_codec.h"
#include "export/address_block.h"
#include "export/part_number.h"
#include "platform/error.h"
#include "platform/numbers.h"

namespace exporting {

using catalogue::SignedOpcodes;
using catalogue::UnsignedOpcodes;

namespace {

constexpr double Hundredths = 100;

char16_t OneLetter(std::u16string_view code) {
    return code.size() == 1 ? code.front() : u'\0';
}

}  // namespace

FieldDecoder::FieldDecoder(const catalogue::cInterface& Item)
    : mCode(OneLetter(Item.DataType)),
      mLength(Item.Length),
      mStart(Item.Start),
      mTypeSpec(Item.TypeSpec),
      mPower(std::pow(mCode == u'B' ? 2.0 : 10.0, Item.TypeSpec)) {}

ColumnValue FieldDecoder::Decode(const ByteString& Rec) {
    switch (mCode) {
        case u'A':
            return ByteString(platform::Mid(Rec, mStart, mLength));
        case u'B':
            return Flag(Rec);
        case u'C':
        case u'L':
            return engine::Ucm(platform::Mid(Rec, mStart, mLength));
        case u'D':
            return engine::UnPackDate("D", Rec, mStart);
        case u'I':
            return Scaled(Integer(SignedOpcodes, Rec));
        case u'J':
            return engine::UnPackDate("J", Rec, mStart);
        case u'M':
            return Integer(SignedOpcodes, Rec) / Hundredths;
        case u'm':
            return Integer(UnsignedOpcodes, Rec) / Hundredths;
        case u'P':
            return FormatPartNumber(Expanded(Rec));
        case u'R':
            return engine::UnPackDate("R", Rec, mStart);
        case u'U':
            return Scaled(Integer(UnsignedOpcodes, Rec));
        case u'W':
            return Integer(SignedOpcodes, Rec);
        case u'X':
            return ByteString(platform::Mid(Expanded(Rec), mTypeSpec, 1));
        case u'Y':
            return StateCode(Expanded(Rec));
        case u'Z':
            return PostalCode(Expanded(Rec));
        default:
            return {};
    }
}

/// The text of a compressed field that is only looked at.
const ByteString& FieldDecoder::Expanded(const ByteString& Rec) {
    engine::Ucm(platform::Mid(Rec, mStart, mLength), mExpanded);
    return mExpanded;
}

std::int32_t FieldDecoder::Integer(std::string_view opcodes, const ByteString& Rec) const {
    if (mLength >= 1 && mLength <= std::ssize(opcodes))
        return engine::iUnpack(opcodes[static_cast<std::size_t>(mLength) - 1], Rec, mStart);
    ByteString opcode(platform::Mid(opcodes, mLength, 1));  // raises, or is empty
    return engine::Unpack(opcode, Rec, mStart);
}

/// The power of ten leaves a double's range at 309 decimals, and vanishes at -324. Zero divided by zero is an
/// overflow too.
double FieldDecoder::Scaled(std::int32_t value) const {
    if (std::isinf(mPower)) throw platform::Error(platform::Overflow);
    if (mPower == 0) throw platform::Error(value == 0 ? platform::Overflow : platform::DivisionByZero);
    const double scaled = value / mPower;
    if (std::isinf(scaled)) throw platform::Error(platform::Overflow);
    return scaled;
}

ByteString FieldDecoder::Flag(const ByteString& Rec) const {
    const std::int32_t value = Integer(UnsignedOpcodes, Rec);
    return (value & platform::RoundToLong(mPower)) != 0 ? "Y" : "N";
}

ColumnValue Unpack(const catalogue::cInterface& Item, const ByteString& Rec) {
    return FieldDecoder(Item).Decode(Rec);
}

catalogue::cInterface KeyDescriptor(dao::Recordset& Item) {
    return {.Name = {},
            .DataType = catalogue::TextOf(Item, u"DataType"),
            .Length = catalogue::LongOf(Item, u"Size"),
            .Start = 1,
            .TypeSpec = 0};
}

ColumnValue UnpackKey(dao::Recordset& Item, const ByteString& Rec) {
    return Unpack(KeyDescriptor(Item), Rec);
}

}  // namespace exporting
