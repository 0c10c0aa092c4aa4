// A field's value as bytes, as the cell that an export shows, and as the export's own decoding of the bytes.
#include "tools/sample_site/field_packing.h"

#include <cmath>
#include <gtest/gtest.h>

#include "export/record_decoding.h"
#include "platform/code_page.h"
#include "tests/support/expect_error.h"
#include "tools/sample_site/canonical_cell.h"

namespace {

using sample::DateValue;
using sample::FieldSpec;
using sample::FieldValue;
using sample::PartNumber;

struct PackCase {
    char Code;
    int Length;
    int Specifier;
    FieldValue Value;
    std::string Bytes;
    std::optional<std::string> Cell;
};

std::string Nul(std::size_t count) {
    return std::string(count, '\0');
}

const PartNumber Dashed{"ABC123456         36 ", "AB-C1-23456         "};

const std::vector<PackCase> Cases{
    {'A', 4, 0, std::string("x\xE9"), "x\xE9  ", "x\xC3\xA9  "},
    {'B', 1, 0, true, "\x01", "Y"},
    {'B', 2, 15, true, "\x80" + Nul(1), "Y"},
    {'B', 4, 30, true, "\x40" + Nul(3), "Y"},
    {'B', 1, 3, false, Nul(1), "N"},
    {'C', 4, 0, std::string("ABC"), "\x59\xE8" + Nul(2), "ABC   "},
    {'C', 3, 0, std::string("ABC"), "\x59\xE8" + Nul(1), "ABC   "},
    {'L', 2, 0, std::string("Z9."), "\xF5\xCB", "Z9."},
    {'L', 4, 0, std::string("ABCABC"), "\x59\xE8\x59\xE8", std::nullopt},
    {'D', 3, 0, DateValue{platform::CalendarDay{1999, 12, 31}}, "\x01\xE1\x3F", "1999-12-31"},
    {'D', 3, 0, DateValue{std::nullopt, true}, "\x0F\x42\x3F", "1968-01-01"},
    {'D', 3, 0, DateValue{}, Nul(3), "1968-01-01"},
    {'R', 3, 0, DateValue{platform::CalendarDay{2000, 1, 1}}, Nul(2) + "\x65", "2000-01-01"},
    {'R', 3, 0, DateValue{platform::CalendarDay{1999, 12, 31}}, "\x0F\x1F\xFF", "1999-12-31"},
    {'J', 2, 0, DateValue{platform::CalendarDay{2000, 1, 1}}, "\x2D\xA9", "2000-01-01"},
    {'J', 2, 0, DateValue{}, Nul(2), "1968-01-01"},
    {'I', 3, 2, std::int64_t{-100}, "\xFF\xFF\x9C", "-1"},
    {'U', 3, 2, std::int64_t{0xFFFF9C}, "\xFF\xFF\x9C", "167771.16"},
    {'U', 4, -3, std::int64_t{250}, Nul(3) + "\xFA", "250000"},
    {'U', 4, -3, std::int64_t{5'000'000}, Nul(1) + "\x4C\x4B\x40", std::nullopt},
    {'I', 1, 0, std::int64_t{-128}, "\x80", "-128"},
    {'M', 2, 5, std::int64_t{-1}, "\xFF\xFF", "-0.0100"},
    {'m', 2, 0, std::int64_t{65535}, "\xFF\xFF", "655.3500"},
    {'W', 1, 0, std::int64_t{-20}, "\xEC", "-20.0000"},
    {'P', 14, 0, Dashed, "\x59\xE8\x20\x37\x33\x72" + Nul(6) + "\x2D\x50", "AB-C1-23456         "},
};

FieldSpec Spec(const PackCase& one, int start) {
    return {"Field", one.Code, one.Length, start, one.Specifier, {}};
}

/// The cell that a column of the field's type makes of a decoded value.
std::string CellOf(const exporting::ColumnValue& value, const sample::ColumnSpec& column) {
    if (const auto* const text = std::get_if<std::string>(&value)) return sample::TextCell(*text);
    if (const auto* const date = std::get_if<platform::OleDate>(&value))
        return sample::DateCell(date->Calendar());
    const auto* const whole = std::get_if<std::int32_t>(&value);
    const double number = whole != nullptr ? *whole : std::get<double>(value);
    if (column.Type == dao::FieldType::Currency)
        return sample::CurrencyCell(static_cast<std::int64_t>(std::nearbyint(number * 10'000)));
    if (column.Type == dao::FieldType::Single) return sample::SingleCell(static_cast<float>(number));
    return sample::LongCell(static_cast<std::int64_t>(std::nearbyint(number)));
}

class FieldPacking : public testing::TestWithParam<PackCase> {
  protected:
    sample::CompressionAlphabet mAlphabet;
};

TEST_P(FieldPacking, BytesLieWhereTheFieldIs) {
    constexpr int Start = 3;
    const PackCase& one = GetParam();
    std::string record = Nul(static_cast<std::size_t>(Start + one.Length));
    sample::PackField(Spec(one, Start), one.Value, record);
    EXPECT_EQ(record, Nul(Start - 1) + one.Bytes + Nul(1));
}

TEST_P(FieldPacking, CellIsWhatDecodingTheBytesGives) {
    const PackCase& one = GetParam();
    const FieldSpec spec = Spec(one, 1);
    EXPECT_EQ(sample::ExpectedCell(spec, one.Value), one.Cell);
    if (!one.Cell) return;
    std::string record = Nul(static_cast<std::size_t>(one.Length));
    sample::PackField(spec, one.Value, record);
    const catalogue::cInterface item{
        u"Field", std::u16string(1, platform::WideFromByte(static_cast<std::uint8_t>(one.Code))), one.Length,
        1, one.Specifier};
    EXPECT_EQ(CellOf(exporting::Unpack(item, record), sample::ColumnOf(spec)), *one.Cell);
}

INSTANTIATE_TEST_SUITE_P(Codes, FieldPacking, testing::ValuesIn(Cases), [](const auto& tested) {
    const std::string code = tested.param.Code == 'm' ? "m_" : std::string(1, tested.param.Code);
    return code + std::to_string(tested.index);
});

TEST(FieldPackingBits, FlagsOfOneByteKeepEachOther) {
    std::string record(1, '\0');
    sample::PackField({"First", 'B', 1, 1, 0, {}}, true, record);
    sample::PackField({"Second", 'B', 1, 1, 4, {}}, true, record);
    sample::PackField({"Third", 'B', 1, 1, 0, {}}, false, record);
    EXPECT_EQ(record, "\x11");
}

TEST(FieldPackingErrors, ATextThatDoesNotFitIsRefused) {
    std::string record(2, '\0');
    for (const char code : {'A', 'C'}) {
        EXPECT_EQ(test::NumberRaised([&] {
                      sample::PackField({"Field", code, 2, 1, 0, {}}, std::string("ABCD"), record);
                  }),
                  platform::InvalidArgument);
    }
}

TEST(FieldPackingAlphabet, TheFormerAlphabetComesBack) {
    const std::string before = engine::gCodeChars;
    {
        const sample::CompressionAlphabet alphabet;
        EXPECT_EQ(engine::gCodeChars.substr(0, 4), " ,-.");
    }
    EXPECT_EQ(engine::gCodeChars, before);
}

}  // namespace
