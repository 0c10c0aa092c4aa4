#include "export/part_number.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

struct PartNumberCase {
    std::string Number;  // padded to 18 characters
    std::string Mask;
    std::string Formatted;  // without trailing blanks
};

std::string WithMask(std::string number, const std::string& mask) {
    number.resize(18, ' ');
    return number + mask;
}

std::string WithoutBlanks(const std::string& text) {
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

TEST(PartNumber, TheMaskPutsDashesBeforeItsPositions) {
    const std::vector<PartNumberCase> cases{
        {"ABC123456", "36 ", "AB-C1-23456"},  // the second position counts the first dash
        {"ABC123456", "   ", "ABC123456"},    // no mask
        {"ABC123456", "1  ", "-ABC123456"},   // before the first character
        {"ABC123456", "3 6", "AB-C1-23456"},  // a blank inside inserts nothing
        {"ABC123456", "J  ", "ABC123456"},    // beyond the positions
        {"ABC123456", "KL0", "ABC123456"},    // no positions at all
        {"ABC123456", "a  ", "ABC123456"},    // letter case matters
        {"ABC123456", "63 ", "AB-C12-3456"},  // in the order of the mask
        {"ABCDEFGHIJKLMNOPQR", "AI ", "ABCDEFGHI-JKLMNOP-QR"},
    };
    for (const PartNumberCase& each : cases) {
        const std::string formatted = exporting::FormatPartNumber(WithMask(each.Number, each.Mask));
        EXPECT_EQ(WithoutBlanks(formatted), each.Formatted) << each.Mask;
    }
}

TEST(PartNumber, OnlyNumberAndMaskMatter) {
    EXPECT_EQ(exporting::FormatPartNumber(WithMask("ABC123456", "36 ")), "AB-C1-23456         ")
        << "blanks are kept";
    EXPECT_EQ(exporting::FormatPartNumber(WithMask("ABC", "2  ") + "REST"), "A-BC               ");
    EXPECT_EQ(exporting::FormatPartNumber(WithMask("ABC", "36")), WithMask("ABC", "36"))
        << "too short for a mask";
    EXPECT_EQ(exporting::FormatPartNumber(""), "");
}

}  // namespace
