#include "platform/jet/row_codec.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

#include "platform/jet/schema.h"
#include "platform/jet/text_codec.h"
#include "tests/jet/page_file_fixture.h"
#include "tests/support/expect_error.h"
#include "tests/support/hex.h"

namespace jet {
namespace {

std::span<const std::uint8_t> Bytes(const std::string& text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::string AsString(std::span<const std::uint8_t> bytes) {
    return {bytes.begin(), bytes.end()};
}

Column MakeColumn(ColumnType type, std::uint16_t size) {
    Column column;
    column.Type = type;
    column.Size = size;
    column.Flags = FixedSize(type) != 0 ? 3 : 2;
    return column;
}

/// Nine columns: Text, Text, Byte, Integer, Long, Double, Date, Currency, Boolean.
TableDef NineColumns(std::uint16_t charactersOfText) {
    using enum ColumnType;
    std::vector<Column> columns{MakeColumn(Text, charactersOfText), MakeColumn(Text, charactersOfText)};
    for (const ColumnType type : {Byte, Integer, Long, Double, Date, Currency, Boolean}) {
        columns.push_back(MakeColumn(type, static_cast<std::uint16_t>(FixedSize(type))));
    }
    columns[0].Compressed = true;
    return LayOutTable(10, TableType::User, columns);
}

const std::vector<Value> NineValues{
    u"abcdefg", u"hijklmnop", 2, 222, 333333333, 444.555, platform::OleDate{27293.0}, Currency{35000}, true};

// The same row as the engine wrote it in the two versions.
constexpr std::string_view Jet4Row =
    "09 00 02 DE 00 55 43 DE 13 7B 14 AE 47 E1 C8 7B 40 00 00 00 00 40 A7 DA 40 B8 88 00 00 00 00 00 00 "
    "FF FE 61 62 63 64 65 66 67 68 00 69 00 6A 00 6B 00 6C 00 6D 00 6E 00 6F 00 70 00 "
    "3C 00 2A 00 21 00 02 00 FF 01";
constexpr std::string_view Jet3Row =
    "09 02 DE 00 55 43 DE 13 7B 14 AE 47 E1 C8 7B 40 00 00 00 00 40 A7 DA 40 B8 88 00 00 00 00 00 00 "
    "61 62 63 64 65 66 67 68 69 6A 6B 6C 6D 6E 6F 70 30 27 20 02 FF 01";

class Rows : public testing::Test {
  protected:
    std::unique_ptr<PageFile> FileOf(Version version) {
        const std::string path = (mFolder / "rows.mdb").string();
        std::filesystem::remove(path);
        return test::EmptyFile(path, version);
    }

    std::vector<Value> Decode(const PageFile& file, const TableDef& table, const std::string& row) {
        const RowReader reader(file, table, Bytes(row));
        std::vector<Value> values;
        for (const Column& column : table.Columns) values.push_back(reader.Read(column));
        return values;
    }

    test::ScratchFolder mFolder;
};

TEST_F(Rows, AreWrittenAsTheEngineWritesThem) {
    const TableDef table = NineColumns(100);
    RowEncoder encoder(table);
    encoder.Encode(NineValues);
    EXPECT_EQ(test::ToHex(AsString(encoder.Row())), Jet4Row);
}

TEST_F(Rows, OfBothVersionsReadAlike) {
    EXPECT_EQ(Decode(*FileOf(Version::Jet4), NineColumns(100), test::Hex(Jet4Row)), NineValues);
    EXPECT_EQ(Decode(*FileOf(Version::Jet3), NineColumns(50), test::Hex(Jet3Row)), NineValues);
}

TEST_F(Rows, WithoutVariableColumnsHaveNoOffsets) {
    using enum ColumnType;
    const TableDef table = LayOutTable(10, TableType::User, {MakeColumn(Long, 4), MakeColumn(Boolean, 1)});
    RowEncoder encoder(table);
    encoder.Encode(std::vector<Value>{{}, true});
    EXPECT_EQ(test::ToHex(AsString(encoder.Row())), "02 00 00 00 00 00 02");
    EXPECT_EQ(Decode(*FileOf(Version::Jet4), table, AsString(encoder.Row())), (std::vector<Value>{{}, true}));
    EXPECT_EQ(Decode(*FileOf(Version::Jet3), table, test::Hex("02 2A 00 00 00 01")),
              (std::vector<Value>{42, false}));
}

TEST_F(Rows, HoldNumbersAmongTheVariableValuesAndNothingForDeletedColumns) {
    Column number = MakeColumn(ColumnType::Long, 4);
    number.Flags = 2;
    TableDef table = LayOutTable(10, TableType::User, {number, MakeColumn(ColumnType::Memo, 0)});
    table.VariableColumns = 3;
    RowEncoder encoder(table);
    encoder.Encode(std::vector<Value>{42, u"abc"});
    std::string row = AsString(encoder.Row());
    EXPECT_EQ(test::ToHex(row),
              "02 00 2A 00 00 00 06 00 00 80 00 00 00 00 00 00 00 00 61 00 62 00 63 00 "
              "18 00 18 00 06 00 02 00 03 00 03");
    table.Columns.pop_back();
    EXPECT_EQ(Decode(*FileOf(Version::Jet4), table, row), std::vector<Value>{42});
    row[28] = 3;
    EXPECT_EQ(test::NumberRaised([&] { Decode(*FileOf(Version::Jet4), table, row); }), 3428) << "cut";
}

TEST_F(Rows, OfNullsKeepTheirFixedArea) {
    RowEncoder encoder(NineColumns(100));
    encoder.Encode(std::vector<Value>(9));
    EXPECT_EQ(test::ToHex(AsString(encoder.Row())), test::ToHex(test::Hex("09 00") + std::string(31, '\0') +
                                                                test::Hex("21 00 21 00 21 00 02 00 00 00")));
}

TEST_F(Rows, OlderThanAColumnReadNullThere) {
    TableDef table = NineColumns(100);
    table.Columns.push_back(MakeColumn(ColumnType::Long, 4));
    table.Columns.back().Number = 9;
    table.Columns.push_back(MakeColumn(ColumnType::Text, 20));
    table.Columns.back().Number = 10;
    table.Columns.back().VariableIndex = 2;
    table.Columns.push_back(MakeColumn(ColumnType::Boolean, 1));
    table.Columns.back().Number = 16;
    std::vector<Value> expected = NineValues;
    expected.insert(expected.end(), {Value{}, Value{}, Value{false}});
    EXPECT_EQ(Decode(*FileOf(Version::Jet4), table, test::Hex(Jet4Row)), expected);
}

TEST_F(Rows, LongerThan256BytesInJet3HaveJumpBytes) {
    const TableDef table = LayOutTable(
        10, TableType::User, {MakeColumn(ColumnType::Text, 255), MakeColumn(ColumnType::Text, 255)});
    const std::string row = "\x02" + std::string(200, 'a') + std::string(150, 'b') +
                            test::Hex("5F C9 01 01 02 03");  // EOD 351, offsets 201 and 1, one jump
    EXPECT_EQ(Decode(*FileOf(Version::Jet3), table, row),
              (std::vector<Value>{std::u16string(200, u'a'), std::u16string(150, u'b')}));
}

struct BrokenRow {
    const char* Name;
    Version FileVersion;
    int At;  // negative: from the end
    int Byte;
};

TEST_F(Rows, ThatContradictThemselvesAreAnError) {
    const BrokenRow rows[] = {
        {"EndOfValuesOutside", Version::Jet4, -9, 0xFF},   {"OffsetsNotAscending", Version::Jet4, -8, 0x3D},
        {"VariableCount", Version::Jet4, -4, 0x30},        {"HugeVariableCount", Version::Jet4, -3, 0xFF},
        {"HugeColumnCount", Version::Jet4, 1, 0xFF},       {"EndOfValuesOutside3", Version::Jet3, -6, 0x40},
        {"OffsetsNotAscending3", Version::Jet3, -5, 0xFF}, {"VariableCount3", Version::Jet3, -3, 0xFF},
        {"ColumnCount3", Version::Jet3, 0, 0xFF}};
    for (const BrokenRow& broken : rows) {
        const bool jet4 = broken.FileVersion == Version::Jet4;
        std::string row = test::Hex(jet4 ? Jet4Row : Jet3Row);
        *(broken.At < 0 ? row.end() + broken.At : row.begin() + broken.At) = static_cast<char>(broken.Byte);
        const auto file = FileOf(broken.FileVersion);
        const TableDef table = NineColumns(jet4 ? 100 : 50);
        EXPECT_EQ(test::NumberRaised([&] { Decode(*file, table, row); }), 3428) << broken.Name;
    }
}

TEST_F(Rows, CutAnywhereAreAnErrorOrShorterButNeverReadOutside) {
    for (const Version version : {Version::Jet4, Version::Jet3}) {
        const std::string row = test::Hex(version == Version::Jet4 ? Jet4Row : Jet3Row);
        const auto file = FileOf(version);
        const TableDef table = NineColumns(version == Version::Jet4 ? 100 : 50);
        for (std::size_t length = 0; length < row.size(); ++length) {
            const int number = test::NumberRaised([&] { Decode(*file, table, row.substr(0, length)); });
            EXPECT_TRUE(number == 0 || number == 3428) << length;
        }
    }
}

struct Refused {
    ColumnType Type;
    std::uint16_t Size;
    Value Refusing;
    int Number;
};

TEST(RefusedValues, RaiseTheirNumber) {
    const Refused cases[] = {{ColumnType::Long, 4, u"1", 3421},
                             {ColumnType::Text, 20, 1, 3421},
                             {ColumnType::Boolean, 1, 1, 3421},
                             {ColumnType::Byte, 1, -1, 3421},
                             {ColumnType::Byte, 1, 256, 3421},
                             {ColumnType::Integer, 2, -32769, 3421},
                             {ColumnType::Integer, 2, 32768, 3421},
                             {ColumnType::Single, 4, 1e39, 3421},
                             {ColumnType::Text, 20, u"eleven chars", 3163},
                             {ColumnType::Binary, 3, Binary{"four"}, 3163},
                             {ColumnType::Guid, 16, Binary{"short"}, 3421},
                             {ColumnType::Text, 20, u"\xFEFFx", 3421}};
    for (const Refused& row : cases) {
        RowEncoder encoder(LayOutTable(10, TableType::User, {MakeColumn(row.Type, row.Size)}));
        const auto encode = [&] { encoder.Encode(std::vector<Value>{row.Refusing}); };
        EXPECT_EQ(test::NumberRaised(encode), row.Number) << "column type " << static_cast<int>(row.Type);
    }
}

TEST(Texts, AreCompressedWhereTheEngineDoes) {
    const std::pair<std::u16string, std::string_view> cases[] = {
        {u"", ""},
        {u"a", "61 00"},
        {u"ab", "61 00 62 00"},
        {u"abc", "FF FE 61 62 63"},
        {u"\u00FCmlaut", "FF FE FC 6D 6C 61 75 74"},
        {u"\u041C\u0438\u0440", "1C 04 38 04 40 04"},
        {u"10 \u20AC", "31 00 30 00 20 00 AC 20"},
        {std::u16string(u"a\0b", 3), "61 00 00 00 62 00"}};
    for (const auto& [text, hex] : cases) {
        std::vector<std::uint8_t> bytes(EncodedLength(text, IsCompressible(text)));
        EXPECT_EQ(EncodeText(text, IsCompressible(text), bytes.data()), bytes.data() + bytes.size());
        EXPECT_EQ(test::ToHex(AsString(bytes)), hex);
        EXPECT_EQ(DecodeText(bytes, Version::Jet4), text);
    }
}

TEST(CompressedTexts, SwitchToPairsAndBack) {
    const auto decoded = [](const std::string& bytes) { return DecodeText(Bytes(bytes), Version::Jet4); };
    EXPECT_EQ(decoded(test::Hex("FF FE 61 62 00 AC 20 38 04 00 63")), u"ab\u20AC\u0438c");
    EXPECT_EQ(decoded(test::Hex("FF FE 61 00 AC")), u"a") << "ends in half a pair";
}

}  // namespace
}  // namespace jet
