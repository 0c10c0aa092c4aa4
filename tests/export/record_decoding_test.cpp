#include "export/record_decoding.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "engine/built_ins.h"
#include "tests/support/expect_error.h"

namespace {

using catalogue::cInterface;
using exporting::ByteString;
using exporting::ColumnValue;
using exporting::Unpack;
using platform::OleDate;

constexpr OleDate NullDate{24838};  // 1 January 1968
constexpr OleDate LastDayOf1999{36525};
constexpr OleDate FirstDayOf2000{36526};

/// Bytes out of a literal that may hold NULs.
template <std::size_t Length>
ByteString Bytes(const char (&literal)[Length]) {
    return ByteString(literal, Length - 1);
}

/// The alphabet as the window sets it: blank, comma, dash and period come first.
class RecordDecoding : public testing::Test {
  protected:
    RecordDecoding() : mBefore(engine::gCodeChars) { engine::gCodeChars.replace(0, 4, " ,-."); }
    ~RecordDecoding() override { engine::gCodeChars = mBefore; }

  private:
    ByteString mBefore;
};

struct DecodingCase {
    std::u16string Code;
    std::int32_t Start;
    std::int32_t Length;
    std::int32_t TypeSpec;
    ByteString Record;
    ColumnValue Value;
};

cInterface Descriptor(const DecodingCase& each) {
    return {u"F", each.Code, each.Length, each.Start, each.TypeSpec};
}

void ExpectValues(const std::vector<DecodingCase>& cases) {
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(Unpack(Descriptor(cases[i]), cases[i].Record), cases[i].Value)
            << "case " << i << ", code " << platform::Utf8FromWide(cases[i].Code);
    }
}

TEST_F(RecordDecoding, PlainTextIsKeptAsItIs) {
    ExpectValues({
        {u"A", 3, 4, 0, Bytes("xxAB\0 yy"), Bytes("AB\0 ")},
        {u"A", 3, 9, 0, "xxAB  ", ByteString("AB  ")},
        {u"A", 7, 2, 0, "xxAB  ", ByteString()},
        {u"A", 1, 0, 0, "xxAB", ByteString()},
    });
}

TEST_F(RecordDecoding, ABitIsYesOrNo) {
    ExpectValues({
        {u"B", 1, 1, 7, "\x80", ByteString("Y")},
        {u"B", 1, 1, 6, "\x80", ByteString("N")},
        {u"B", 2, 2, 0, Bytes("\xFF\x00\x01"), ByteString("Y")},
        {u"B", 2, 2, 1, Bytes("\xFF\x00\x01"), ByteString("N")},
        {u"B", 1, 3, 23, Bytes("\x80\x00\x00"), ByteString("Y")},
        {u"B", 1, 4, 30, Bytes("\x40\x00\x00\x00"), ByteString("Y")},
        {u"B", 1, 1, -1, "\xFF", ByteString("N")},  // 2 to the -1 rounds to 0
    });
}

TEST_F(RecordDecoding, CompressedTextIsThreeCharactersForTwoBytes) {
    ExpectValues({
        {u"C", 1, 4, 0, "\x59\xE8\xED\xDD", ByteString("ABCY-9")},
        {u"L", 2, 2, 0, "\x01\x59\xE8", ByteString("ABC")},
        {u"C", 1, 1, 0, "\x59", ByteString("A5K")},     // a zero byte completes the pair
        {u"C", 1, 2, 0, "\xFF\xFF", ByteString("YB")},  // beyond the alphabet: two characters
        {u"C", 5, 2, 0, "\x59\xE8", ByteString()},
    });
}

TEST_F(RecordDecoding, DatesOfThreeForms) {
    ExpectValues({
        {u"D", 1, 3, 0, Bytes("\x01\xE1\x3F"), LastDayOf1999},
        {u"D", 1, 3, 0, Bytes("\x00\x00\x00"), NullDate},
        {u"J", 2, 2, 0, Bytes("\x00\x2D\xA9"), FirstDayOf2000},
        {u"J", 1, 2, 0, Bytes("\x00\x00"), NullDate},
        {u"R", 1, 3, 0, Bytes("\x0F\x1F\xFF"), LastDayOf1999},
        {u"D", 9, 3, 0, "short", NullDate},  // beyond the record
        {u"J", 0, 2, 0, "short", NullDate},
    });
}

TEST_F(RecordDecoding, IntegersSignedAndUnsignedWithTheirScale) {
    ExpectValues({
        {u"I", 1, 3, 2, "\xFF\xFF\x9C", -1.0},
        {u"U", 1, 3, 2, "\xFF\xFF\x9C", 167771.16},
        {u"I", 1, 1, 0, "\x80", -128.0},
        {u"U", 1, 1, 0, "\x80", 128.0},
        {u"I", 1, 2, -2, Bytes("\x00\x07"), 700.0},
        {u"U", 1, 4, 0, "\xFF\xFF\xFF\xFF", -1.0},  // four bytes are signed in both tables
        {u"M", 1, 2, 0, "\x30\x39", 123.45},
        {u"M", 1, 2, 7, "\x30\x39", 123.45},
        {u"M", 1, 2, 0, "\xFF\x9C", -1.0},
        {u"m", 1, 2, 0, "\xFF\x9C", 654.36},
        {u"W", 1, 2, 3, "\xFF\x9C", std::int32_t{-100}},
        {u"W", 2, 4, 0, Bytes("\x01\x80\x00\x00\x00"), std::int32_t{-2147483647 - 1}},
    });
}

TEST_F(RecordDecoding, PartNumberCharacterStateAndPostalCode) {
    ByteString part = "ABC123456         36 ";
    ByteString address = "12 OAK STREET                 SPRINGFIELD IL 62701-1234     ";
    const ByteString packedPart = engine::Crm(part);
    const ByteString packedAddress = engine::Crm(address);
    ExpectValues({
        {u"P", 1, 14, 0, packedPart, ByteString("AB-C1-23456         ")},
        {u"P", 1, 12, 0, packedPart, ByteString("ABC123456         ")},
        {u"X", 1, 2, 2, "\x59\xE8", ByteString("B")},
        {u"X", 1, 2, 4, "\x59\xE8", ByteString()},
        {u"Y", 1, 40, 0, packedAddress, ByteString("IL")},
        {u"Z", 1, 40, 0, packedAddress, ByteString("62701-1234")},
        {u"Z", 1, 10, 0, packedAddress, ByteString("12")},
        {u"Y", 60, 40, 0, packedAddress, ByteString("  ")},
    });
}

TEST_F(RecordDecoding, AnExpansionIsUsedAgainForTheSameBytesOfTheSameRecordOnly) {
    const exporting::FieldDecoder whole({u"F", u"C", 2, 1, 0});
    const exporting::FieldDecoder none({u"F", u"C", 0, 1, 0});
    exporting::RecordTexts texts;
    for (const ByteString record : {"\x59\xE8", "\xED\xDD"}) {
        texts.Begin(record);
        EXPECT_EQ(none.Text(texts), "");
        EXPECT_EQ(whole.Text(texts), engine::Ucm(std::string_view(record)));
        EXPECT_EQ(none.Text(texts), "");
    }
}

TEST_F(RecordDecoding, AnUnknownCodeIsEmptyAndReadsNothing) {
    for (const std::u16string code : {u"K", u"N", u"V", u"a", u"i", u" ", u"", u"II"}) {
        EXPECT_EQ(Unpack({u"F", code, -5, -5, 99}, ""), ColumnValue{});
    }
}

struct FailureCase {
    std::u16string Code;
    std::int32_t Start;
    std::int32_t Length;
    std::int32_t TypeSpec;
    int Number;
    std::string Source;
    std::string Description;
};

TEST_F(RecordDecoding, WhatCannotBeDecodedRaises) {
    const std::string invalid = platform::RunTimeErrorText(platform::InvalidArgument);
    const std::string overflow = platform::RunTimeErrorText(platform::Overflow);
    const std::vector<FailureCase> cases{
        {u"U", 1, 0, 0, 5, "", invalid},
        {u"B", 1, -1, 0, 5, "", invalid},
        {u"U", 1, 5, 0, 100, "UnPack", "Unknown OpCode = \"\""},
        {u"m", 4, 2, 0, 31, "UnPack", "Invalid Subscript.  UnPack(\"C\", Data$, 4)   Len(Data$) = 4"},
        {u"M", 4, 2, 0, 31, "UnPack", "Invalid Subscript.  UnPack(\"J\", Data$, 4)   Len(Data$) = 4"},
        {u"W", 5, 2, 0, 5, "", invalid},  // the sign is read before the range is tested
        {u"W", 5, 4, 0, 31, "UnPack", "Invalid Subscript.  UnPack(\"L\", Data$, 5)   Len(Data$) = 4"},
        {u"U", 0, 1, 0, 5, "", invalid},
        {u"A", 0, 1, 0, 5, "", invalid},
        {u"C", 1, -1, 0, 5, "", invalid},
        {u"P", -3, 1, 0, 5, "", invalid},
        {u"Y", 0, 1, 0, 5, "", invalid},
        {u"Z", 0, 1, 0, 5, "", invalid},
        {u"X", 1, 2, 0, 5, "", invalid},
        {u"B", 1, 1, 31, 6, "", overflow},
        {u"B", 1, 1, 5000, 6, "", overflow},
        {u"I", 1, 1, 309, 6, "", overflow},
        {u"U", 1, 4, -305, 6, "", overflow},
        {u"U", 1, 1, -400, 11, "", platform::RunTimeErrorText(platform::DivisionByZero)},
    };
    for (const FailureCase& each : cases) {
        const cInterface item{u"F", each.Code, each.Length, each.Start, each.TypeSpec};
        const platform::Error error = test::ErrorOf([&] { Unpack(item, "\x01\x02\x03\x04"); });
        const std::string name = platform::Utf8FromWide(each.Code) + std::to_string(each.Length);
        EXPECT_EQ(error.Number, each.Number) << name;
        EXPECT_EQ(error.Source, each.Source) << name;
        EXPECT_EQ(error.Description, each.Description) << name;
    }
    // 0 / 0 is no division by zero.
    EXPECT_EQ(test::NumberRaised([&] { Unpack({u"F", u"U", 1, 1, -400}, Bytes("\0")); }), platform::Overflow);
}

TEST_F(RecordDecoding, ADecoderDecodesOneRecordAfterAnother) {
    exporting::FieldDecoder decoder({u"F", u"U", 2, 1, 1});
    EXPECT_EQ(decoder.Decode(Bytes("\x00\x0A")), ColumnValue{1.0});
    EXPECT_EQ(test::NumberRaised([&] { decoder.Decode("x"); }), 31);
    EXPECT_EQ(decoder.Decode(Bytes("\x01\x00")), ColumnValue{25.6});
}

}  // namespace
