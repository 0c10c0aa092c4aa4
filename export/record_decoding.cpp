#include "export/record_decoding.h"

#include <cmath>
#include <iterator>
#include <utility>

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
constexpr std::u16string_view TextCodes = u"ABCLPXYZ";
constexpr std::u16string_view UnsignedCodes = u"BUm";

char16_t OneLetter(std::u16string_view code) {
    return code.size() == 1 ? code.front() : u'\0';
}

/// The opcode of an integer of that many bytes; NUL when no integer has that many.
char OpcodeFor(char16_t code, std::int32_t length) {
    const bool isUnsigned = UnsignedCodes.find(code) != std::u16string_view::npos;
    const std::string_view opcodes = isUnsigned ? UnsignedOpcodes : SignedOpcodes;
    if (length < 1 || length > std::ssize(opcodes)) return '\0';
    return opcodes[static_cast<std::size_t>(length) - 1];
}

}  // namespace

void RecordTexts::Begin(const ByteString& record) {
    mRecord = &record;
    mExpandedPosition = 0;
}

std::string_view RecordTexts::Plain(std::int32_t position, std::int32_t length) const {
    return platform::Mid(*mRecord, position, length);
}

std::string_view RecordTexts::Expanded(std::int32_t position, std::int32_t length) {
    const std::string_view plain = Plain(position, length);
    if (position != mExpandedPosition || length != mExpandedLength) {
        engine::UcmInto(plain, mExpanded);
        mExpandedPosition = position;
        mExpandedLength = length;
    }
    return mExpanded;
}

std::string_view RecordTexts::Keep(ByteString text) {
    mKept = std::move(text);
    return mKept;
}

FieldDecoder::FieldDecoder(const catalogue::cInterface& Item)
    : mCode(OneLetter(Item.DataType)),
      mOpcode(OpcodeFor(mCode, Item.Length)),
      mIsText(mCode != 0 && TextCodes.find(mCode) != std::u16string_view::npos),
      mLength(Item.Length),
      mStart(Item.Start),
      mTypeSpec(Item.TypeSpec),
      mPower(mCode == u'B' ? std::ldexp(1.0, Item.TypeSpec) : platform::PowerOfTen(Item.TypeSpec)) {}

std::string_view FieldDecoder::Text(RecordTexts& record) const {
    switch (mCode) {
        case u'A':
            return record.Plain(mStart, mLength);
        case u'B':
            return Flag(record.Record());
        case u'P':
            return record.Keep(FormatPartNumber(record.Expanded(mStart, mLength)));
        case u'X':
            return platform::Mid(record.Expanded(mStart, mLength), mTypeSpec, 1);
        case u'Y':
            return record.Keep(StateCode(record.Expanded(mStart, mLength)));
        case u'Z':
            return record.Keep(PostalCode(record.Expanded(mStart, mLength)));
        default:
            return record.Expanded(mStart, mLength);
    }
}

ColumnValue FieldDecoder::Decode(const ByteString& Rec) const {
    if (mIsText) {
        RecordTexts texts;
        texts.Begin(Rec);
        return ByteString(Text(texts));
    }
    switch (mCode) {
        case u'D':
            return engine::UnPackDate("D", Rec, mStart);
        case u'I':
            return Scaled(Integer(Rec));
        case u'J':
            return engine::UnPackDate("J", Rec, mStart);
        case u'M':
        case u'm':
            return Integer(Rec) / Hundredths;
        case u'R':
            return engine::UnPackDate("R", Rec, mStart);
        case u'U':
            return Scaled(Integer(Rec));
        case u'W':
            return Integer(Rec);
        default:
            return {};
    }
}

std::int32_t FieldDecoder::Integer(const ByteString& Rec) const {
    if (mOpcode != '\0') return engine::iUnpack(mOpcode, Rec, mStart);
    if (mLength < 1) throw platform::Error(platform::InvalidArgument);
    ByteString none;
    return engine::Unpack(none, Rec, mStart);  // raises the error of an opcode that is empty
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

std::string_view FieldDecoder::Flag(const ByteString& Rec) const {
    const std::int32_t value = Integer(Rec);
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
