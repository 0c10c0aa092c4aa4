#include "engine/built_ins.h"

#include <gtest/gtest.h>

#include "tests/engine/bytes.h"
#include "tests/support/expect_error.h"

namespace engine {
namespace {

using test::Hex;

TEST(Radix40, CompressesThreeCharactersIntoTwoBytes) {
    const struct {
        std::string Text;
        std::string Bytes;
        std::string PaddedText;
    } cases[]{
        {"ABC", Hex("59 E8"), "ABC"},           {"AB", Hex("59 D8"), "AB "},  {"A", Hex("57 80"), "A  "},
        {"Z9.", Hex("F5 CB"), "Z9."},           {"abc", Hex("00 00"), "abc"}, {"", "", ""},
        {"ZZZZ", Hex("F9 FF F3 C0"), "ZZZZ  "},
    };
    for (const auto& c : cases) {
        ByteString source = c.Text;
        EXPECT_EQ(Crm(source), c.Bytes) << c.Text;
        EXPECT_EQ(source, c.PaddedText);
    }
}

TEST(Radix40, ExpandsTwoBytesIntoThreeCharacters) {
    const struct {
        std::string Bytes;
        std::string Text;
        std::string PaddedBytes;
    } cases[]{
        {Hex("59 E8"), "ABC", Hex("59 E8")},
        {Hex("00 00"), "   ", Hex("00 00")},
        {Hex("59"), "A5K", Hex("59 00")},
        // 64000 and above: the first of the three lies beyond the alphabet.
        {Hex("FF FF"), "YB", Hex("FF FF")},
        {Hex("FA 00 59 E8"), "  ABC", Hex("FA 00 59 E8")},
        {"", "", ""},
    };
    for (const auto& c : cases) {
        ByteString source = c.Bytes;
        EXPECT_EQ(Ucm(source), c.Text);
        EXPECT_EQ(source, c.PaddedBytes);
    }
}

TEST(Radix40, EveryGroupComesBack) {
    for (std::size_t value = 0; value < 64000; ++value) {
        const ByteString text{StandardCodeChars[value / 1600], StandardCodeChars[value / 40 % 40],
                              StandardCodeChars[value % 40]};
        ByteString source = text;
        const ByteString packed = Crm(source);
        ASSERT_EQ(packed, test::Big(static_cast<std::int64_t>(value), 2));
        ASSERT_EQ(Ucm(std::string_view(packed)), text);
    }
    EXPECT_EQ(Ucm(std::string_view("\x59")), "A5K");
}

TEST(Radix40, ReadsTheAlphabetInUse) {
    gCodeChars = "-" + ByteString(StandardCodeChars.substr(1));
    ByteString text = "-A ";
    const ByteString packed = Crm(text);
    EXPECT_EQ(packed, test::Big(14 * 40, 2));
    ByteString bytes = packed;
    EXPECT_EQ(Ucm(bytes), "-A-");
    gCodeChars = StandardCodeChars;
}

TEST(TextBuiltIns, StrPosFindsExactly) {
    EXPECT_EQ(StrPos("abcabc", "c"), 3);
    EXPECT_EQ(StrPos("abc", "C"), 0);
    EXPECT_EQ(StrPos("", ""), 0);
    EXPECT_EQ(StrPos("abc", "abcd"), 0);
}

TEST(TextBuiltIns, TrunRemovesTheTail) {
    const std::string tail("AB\0\r\n\t  ", 8);
    EXPECT_EQ(Trun(tail, 1), "AB");
    EXPECT_EQ(Trun(tail, -5), "AB");
    EXPECT_EQ(Trun(tail), tail.substr(0, 6));
    EXPECT_EQ(Trun(std::string("AB\0", 3), 0), std::string("AB\0", 3));
    EXPECT_EQ(Trun("AB\x01  ", 1), "AB\x01");
    EXPECT_EQ(Trun(" AB ", 1), " AB");
    EXPECT_EQ(Trun("   "), "");
    EXPECT_EQ(Trun(std::string("\0 \t", 3), 1), "");
}

TEST(TextBuiltIns, SplitDropsEmptyFieldsAndThoseWithTheDelimiter) {
    using Pieces = std::vector<ByteString>;
    EXPECT_EQ(Split(",a,,b,", ",", -1, 0), (Pieces{"a", "b"}));
    EXPECT_EQ(Split("a b  c"), (Pieces{"a", "b", "c"}));
    EXPECT_EQ(Split("a,b,c", ",", 2), (Pieces{"a"}));
    EXPECT_EQ(Split("a,b", ",", 2), (Pieces{"a", "b"}));
    EXPECT_EQ(Split("a,b", ",", 1), Pieces{});
    EXPECT_EQ(Split("a,b", ",", 0), Pieces{});
    EXPECT_EQ(Split("", ","), Pieces{});
    EXPECT_EQ(Split("a,b", ""), Pieces{});
    EXPECT_EQ(Split("1x2X3", "x", -1, 0), (Pieces{"1", "2X3"}));
    EXPECT_EQ(Split("1x2X3", "x", -1, 1), (Pieces{"1", "2", "3"}));
    EXPECT_EQ(Split("1andn2", "nd"), (Pieces{"1a", "n2"}));
    EXPECT_EQ(test::ErrorOf([] { Split("a", ",", -2); }).Number, 5);
    EXPECT_EQ(test::ErrorOf([] { Split("a", ",", -1, 2); }).Number, 5);
}

TEST(HexDumps, ShowSixteenBytesALine) {
    EXPECT_EQ(HexDump(""), "");
    EXPECT_EQ(HexDump(Hex("41 7F 91 80 A0 1F 92")),
              "000001 41 7F 91 80 A0 1F 92" + std::string(28, ' ') + "  A.\x91.\xA0.\x92\r\n");
    const std::string full = "0123456789abcdef";
    EXPECT_EQ(HexDump(full + "x"),
              "000001 30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66   0123456789abcdef\r\n"
              "000017 78" +
                  std::string(46, ' ') + "  x\r\n");
}

}  // namespace
}  // namespace engine
