#include "engine/field_codec.h"

#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <tuple>

#include "tests/engine/bytes.h"
#include "tests/support/expect_error.h"

namespace engine {
namespace {

using test::ErrorOf;
using test::Hex;

constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();

TEST(FieldCodec, WritesTheLowBytesInPlaceAndReadsThemBack) {
    std::mt19937 random(1);
    for (const auto& [opcode, bits, isSigned] : {std::tuple('B', 8, false),
                                                 {'C', 16, false},
                                                 {'D', 24, false},
                                                 {'I', 8, true},
                                                 {'J', 16, true},
                                                 {'K', 24, true},
                                                 {'L', 32, true}}) {
        for (int i = 0; i < 5000; ++i) {
            const auto value = static_cast<std::int32_t>(random() >> random() % 32);
            const std::int32_t position = 1 + i % 3;
            ByteString data = "......";
            ByteString packing(1, static_cast<char>(std::tolower(opcode)));
            ByteString reading = packing;
            Pack(packing, data, value, position);
            ASSERT_EQ(data,
                      test::With("......", static_cast<std::size_t>(position), test::Big(value, bits / 8)));
            const std::int64_t range = std::int64_t{1} << bits;
            std::int64_t kept = (value % range + range) % range;
            if (isSigned && kept >= range / 2) kept -= range;
            ASSERT_EQ(Unpack(reading, data, position), kept) << opcode << value;
            ASSERT_EQ(packing + reading, ByteString(2, opcode));
        }
    }
}

TEST(FieldCodec, UnknownOpcodesAreShownInUpperCase) {
    for (const char* text : {"", "x", "{", "cc", "A", "\xE9", "\x80"}) {
        ByteString opcode = text;
        ByteString data = "1234";
        const auto reading = ErrorOf([&] { Unpack(opcode, data, 99); });
        EXPECT_EQ(reading.Number, 100);
        EXPECT_EQ(reading.Source, "UnPack");
        const auto writing = ErrorOf([&] { Pack(opcode, data, 1, 99); });
        EXPECT_EQ(writing.Source, "Pack");
        EXPECT_EQ(writing.Description, reading.Description);
    }
    ByteString opcode = "x\xE9";
    EXPECT_EQ(ErrorOf([&] { Unpack(opcode, "", 1); }).Description, "Unknown OpCode = \"X\xC3\x89\"");
    EXPECT_EQ(opcode, "X\xC9");
}

TEST(FieldCodec, APositionTooCloseToTheEndIsNamed) {
    ByteString opcode = "l";
    ByteString data(10, '*');
    const auto writing = ErrorOf([&] { Pack(opcode, data, 0, 9); });
    EXPECT_EQ(writing.Number, 31);
    EXPECT_EQ(writing.Source, "Pack");
    EXPECT_EQ(writing.Description, "Invalid Subscript.  Pack \"L\", Data$, 9   Len(Data$) = 10");
    EXPECT_EQ(data, ByteString(10, '*'));
    Pack(opcode, data, 0, 7);

    opcode = "C";
    const auto reading = ErrorOf([&] { Unpack(opcode, ByteString(11, '*'), 12); });
    EXPECT_EQ(reading.Number, 31);
    EXPECT_EQ(reading.Source, "UnPack");
    EXPECT_EQ(reading.Description, "Invalid Subscript.  UnPack(\"C\", Data$, 12)   Len(Data$) = 11");
}

TEST(FieldCodec, OrderOfTheChecks) {
    const struct {
        char Opcode;
        std::int32_t Position;
        int Number;
    } cases[]{
        // The sign is read before the length is checked.
        {'I', 5, 5},       {'J', 5, 5},           {'K', 5, 5},
        {'J', 4, 31},      {'K', 3, 31},          {'I', 4, 0},
        {'B', 5, 31},      {'C', 4, 31},          {'D', 3, 31},
        {'L', 2, 31},      {'L', 1, 0},           {'B', 0, 5},
        {'L', 0, 5},       {'J', 0, 5},           {'L', -100, 5},
        {'B', Highest, 6}, {'L', Highest - 3, 6}, {'L', Highest - 4, 31},
        {'J', Highest, 5}, {'?', 1, 100},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(test::NumberRaised([&] { iUnpack(c.Opcode, "1234", c.Position); }), c.Number)
            << c.Opcode << c.Position;
    }
    ByteString data = "1234";
    EXPECT_EQ(test::NumberRaised([&] { iPack('J', data, 0, Highest); }), 6);
    EXPECT_EQ(test::NumberRaised([&] { iPack('J', data, 0, 5); }), 31);
    EXPECT_EQ(test::NumberRaised([&] { iPack('?', data, 0, 1); }), 100);
    EXPECT_EQ(test::NumberRaised([&] { iPack('J', data, 0, 0); }), 5);
    EXPECT_EQ(data, "1234");
}

}  // namespace
}  // namespace engine
