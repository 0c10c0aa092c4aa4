#include "export/address_block.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using exporting::PostalCode;
using exporting::StateCode;

struct AddressCase {
    std::string Address;
    std::string State;
    std::string Postal;
};

/// Three full lines of 30 characters, and what follows them.
std::string FourLines(const std::string& third, const std::string& fourth) {
    std::string address(60, ' ');
    address += third;
    address.resize(90, ' ');
    return address + fourth;
}

constexpr const char* NoPostal = "     -    ";

TEST(AddressBlock, StateAndPostalCodeAreFoundFromTheEnd) {
    const std::vector<AddressCase> cases{
        {"12 OAK ST   SPRINGFIELD IL 62701", "IL", "62701"},
        {"SPRINGFIELD IL 62701-1234", "IL", "62701-1234"},
        {"SPRINGFIELD IL 627011234", "IL", "627011234"},
        {"SPRINGFIELD IL 6270112345", "IL", "6270112345"},
        {"SPRINGFIELD IL 62701-12345", "IL", "62701"},
        {"SPRINGFIELD IL 627011", "IL", "62701"},
        {"SPRINGFIELD IL 6270112", "IL", "62701"},
        {"SPRINGFIELD IL 62701-12", "IL", "62701"},
        {"PO BOX 12 SPRINGFIELD", "PO", NoPostal},
        {"12345 MAIN ST NY 1234", "NY", "12345"},
        {"SPRINGFIELD", "  ", NoPostal},
        {"", "  ", NoPostal},
        {"AB CD EF ", "EF", NoPostal},
        {"IL", "IL", NoPostal},
        {"ABC DE FGH", "DE", NoPostal},
        {"il springfield 62701", "  ", "62701"},
        {"A1IL2B", "IL", NoPostal},
    };
    for (const AddressCase& each : cases) {
        EXPECT_EQ(StateCode(each.Address), each.State) << each.Address;
        EXPECT_EQ(PostalCode(each.Address), each.Postal) << each.Address;
    }
}

TEST(AddressBlock, APostalRunAtTheVeryStartIsJudgedByItsLengthAbove10Only) {
    EXPECT_EQ(PostalCode("12 SPRINGFIELD"), "12");
    EXPECT_EQ(PostalCode("627011 X"), "627011");
    EXPECT_EQ(PostalCode("62701123 X"), "62701123");
    EXPECT_EQ(PostalCode("6270112345 X"), "6270112345");
    EXPECT_EQ(PostalCode("62701123456 X"), "62701");
}

TEST(AddressBlock, AFourthLineThatBeginsWithAPeriodIsIgnored) {
    const std::string plain = FourLines("SPRINGFIELD IL 62701", "MO 12345");
    EXPECT_EQ(StateCode(plain), "MO");
    EXPECT_EQ(PostalCode(plain), "12345");

    const std::string ignored = FourLines("SPRINGFIELD IL 62701", ".MO 12345");
    EXPECT_EQ(StateCode(ignored), "IL");
    EXPECT_EQ(PostalCode(ignored), "62701");
}

TEST(AddressBlock, WhatFollowsTheFourthLineCounts) {
    std::string address = FourLines("SPRINGFIELD IL 62701", ".NO 99999");
    address.resize(120, 'X');
    EXPECT_EQ(PostalCode(address + "KS 54321"), "54321");
    EXPECT_EQ(StateCode(address + "KS 54321"), "KS");
}

}  // namespace
