#include "platform/jet/index_key.h"

#include <gtest/gtest.h>

#include "tests/support/expect_error.h"
#include "tests/support/hex.h"

namespace jet {
namespace {

using test::ToHex;

std::string KeyOf(const Value& value, ColumnType type, bool ascending, Version version = Version::Jet4) {
    std::string key;
    AppendKey(key, value, type, ascending, version);
    return ToHex(key);
}

struct KeyCase {
    Value Held;
    ColumnType Type;
    const char* Ascending;
    const char* Descending;
};

using platform::OleDate;

TEST(Keys, AreTheEnginesOwn) {
    const KeyCase cases[] = {
        {10314, ColumnType::Long, "7F 80 00 28 4A", "80 7F FF D7 B5"},
        {-12, ColumnType::Long, "7F 7F FF FF F4", "80 80 00 00 0B"},
        {INT32_MIN, ColumnType::Long, "7F 00 00 00 00", "80 FF FF FF FF"},
        {-32400, ColumnType::Integer, "7F 01 70", "80 FE 8F"},
        {255, ColumnType::Byte, "7F FF", "80 00"},
        {-8540981760.0, ColumnType::Single, "7F 30 01 75 7A", "80 CF FE 8A 85"},
        {903809.0, ColumnType::Single, "7F C9 5C A8 10", "80 36 A3 57 EF"},
        {-349809345.0, ColumnType::Double, "7F 3E 4B 26 55 3E FF FF FF", "80 C1 B4 D9 AA C1 00 00 00"},
        {309840983.0, ColumnType::Double, "7F C1 B2 77 CC 57 00 00 00", "80 3E 4D 88 33 A8 FF FF FF"},
        {Currency{-3498093450000}, ColumnType::Currency, "7F 7F FF FC D1 89 61 EC F0",
         "80 80 00 03 2E 76 9E 13 0F"},
        {Currency{9038090000}, ColumnType::Currency, "7F 80 00 00 02 1A B6 4F 10",
         "80 7F FF FF FD E5 49 B0 EF"},
        {OleDate{-34534.0}, ColumnType::Date, "7F 3F 1F 23 3F FF FF FF FF", "80 C0 E0 DC C0 00 00 00 00"},
        {OleDate{903809.0}, ColumnType::Date, "7F C1 2B 95 02 00 00 00 00", "80 3E D4 6A FD FF FF FF FF"},
        {true, ColumnType::Boolean, "7F 00", "80 FF"},
        {false, ColumnType::Boolean, "7F FF", "80 00"},
        {Value{}, ColumnType::Double, "00", "FF"},
        {Binary{"\x01\x02"}, ColumnType::Binary, "7F 01 02 00 00 00 00 00 00 02",
         "80 FE FD FF FF FF FF FF FF FD"},
        {Binary{"abcdefghi"}, ColumnType::Binary, "7F 61 62 63 64 65 66 67 68 09 69 00 00 00 00 00 00 00 01",
         "80 9E 9D 9C 9B 9A 99 98 97 09 96 FF FF FF FF FF FF FF FE"},
        {Binary{"abcdefgh"}, ColumnType::Binary, "7F 61 62 63 64 65 66 67 68 08",
         "80 9E 9D 9C 9B 9A 99 98 97 F7"},
        {Binary{test::Hex("00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F")}, ColumnType::Guid,
         "7F 03 02 01 00 05 04 07 06 09 08 09 0A 0B 0C 0D 0E 0F 08",
         "80 FC FD FE FF FA FB F8 F9 09 F7 F6 F5 F4 F3 F2 F1 F0 F7"}};
    for (const KeyCase& row : cases) {
        EXPECT_EQ(KeyOf(row.Held, row.Type, true), row.Ascending);
        EXPECT_EQ(KeyOf(row.Held, row.Type, false), row.Descending);
        EXPECT_EQ(KeyOf(row.Held, row.Type, true, Version::Jet3), row.Ascending);
    }
}

TEST(Keys, TextsFollowTheVersion) {
    EXPECT_EQ(KeyOf(u"abcdefg", ColumnType::Text, true), "7F 4A 4C 4D 4F 51 53 55 01 00");
    EXPECT_EQ(KeyOf(u"abcdefg", ColumnType::Text, true, Version::Jet3), "7F 60 61 62 64 66 67 68 00");
}

TEST(Keys, ColumnsFollowEachOtherWithoutSeparator) {
    std::string key;
    AppendKey(key, u"stuff", ColumnType::Text, false, Version::Jet4);
    AppendKey(key, 13, ColumnType::Long, true, Version::Jet4);
    EXPECT_EQ(ToHex(key), "80 94 92 90 AC AC FE FF 00 7F 80 00 00 0D");

    key.clear();
    AppendKey(key, u"more", ColumnType::Text, false, Version::Jet3);
    AppendKey(key, Value{}, ColumnType::Long, false, Version::Jet3);
    EXPECT_EQ(ToHex(key), "80 90 8D 8A 99 FF FF");
}

TEST(Keys, RefuseAValueOfAnotherKindAndColumnsWithoutOrder) {
    EXPECT_EQ(test::ErrorOf([] { KeyOf(u"1", ColumnType::Long, true); }).Number, 3421);
    EXPECT_EQ(test::ErrorOf([] { KeyOf(Binary{"x"}, ColumnType::Guid, true); }).Number, 3421);
    EXPECT_EQ(test::ErrorOf([] { KeyOf(Binary{"x"}, ColumnType::LongBinary, true); }).Number, 3001);
    EXPECT_TRUE(IsIndexable(ColumnType::Memo, Version::Jet4));
    EXPECT_FALSE(IsIndexable(ColumnType::Memo, Version::Jet3));
    EXPECT_FALSE(IsIndexable(ColumnType::LongBinary, Version::Jet4));
}

}  // namespace
}  // namespace jet
