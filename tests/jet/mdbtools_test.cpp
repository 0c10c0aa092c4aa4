// What another reader of the format makes of a file that this code wrote.
#include <array>
#include <cstdio>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/code_page.h"
#include "tests/jet/database_fixture.h"

namespace jet {
namespace {

using test::Row;

/// What a command prints on standard output and standard error.
std::string OutputOf(const std::string& command) {
    std::FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) return {};
    std::string output;
    std::array<char, 4096> buffer;
    while (const std::size_t length = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
        output.append(buffer.data(), length);
    }
    pclose(pipe);
    return output;
}

class OtherReaders : public test::NewDatabase {
  protected:
    void SetUp() override {
        if (std::system("command -v mdb-export > /dev/null") != 0)
            GTEST_SKIP() << "mdbtools are not installed";
    }

    std::string Run(const std::string& program, const std::string& rest = {}) {
        return OutputOf(program + " '" + Path() + "' " + rest);
    }
};

TEST_F(OtherReaders, SeeTablesColumnsAndIndexes) {
    MakeTable({{u"Id", ColumnType::Long},
               {u"Name", ColumnType::Text, 40},
               {u"Paid", ColumnType::Boolean},
               {u"Amount", ColumnType::Currency},
               {u"Day", ColumnType::Date},
               {u"Ratio", ColumnType::Double},
               {u"Note", ColumnType::Memo}},
              {{u"PrimaryKey", {{u"Id"}}, true}, {u"ByName", {{u"Name"}, {u"Day", false}}}});
    mDatabase->CreateTable(u"Order Details", {{u"A", ColumnType::Long}});
    mDatabase->Close();
    EXPECT_EQ(Run("mdb-tables -1"), "T\nOrder Details\n");
    const std::string columns = Run("mdb-schema", "access");
    for (const char* line :
         {"[Id]\t\t\tLong Integer", "[Name]\t\t\tText (40)", "[Paid]\t\t\tBoolean", "[Amount]\t\t\tCurrency",
          "[Day]\t\t\tDateTime", "[Ratio]\t\t\tDouble", "[Note]\t\t\tMemo"}) {
        EXPECT_THAT(columns, testing::HasSubstr(line));
    }
    const std::string indexes = OutputOf("mdb-schema --indexes '" + Path() + "' postgres");
    EXPECT_THAT(indexes, testing::HasSubstr("ADD CONSTRAINT \"t_pkey\" PRIMARY KEY (\"id\")"));
    EXPECT_THAT(indexes, testing::HasSubstr("ON \"t\" (\"name\", \"day\" DESC)"));
}

TEST_F(OtherReaders, ReadTheValues) {
    auto table = MakeTable({{u"Id", ColumnType::Long},
                            {u"Name", ColumnType::Text, 40},
                            {u"Paid", ColumnType::Boolean},
                            {u"Amount", ColumnType::Currency},
                            {u"Day", ColumnType::Date},
                            {u"Small", ColumnType::Byte},
                            {u"Ratio", ColumnType::Double}});
    table->Insert(
        Row{-5, u"M\u00FCller", true, Currency{-1'234'500}, platform::OleDate{36526.5}, 200, 0.125});
    table->Insert(Row{2147483647, u"\u041C\u0438\u0440 \u20AC", false, Currency{1}, {}, {}, {}});
    table->Insert(Row{{}, u"", true, {}, platform::OleDate{1.0}, 0, -2.5});
    mDatabase->Close();
    EXPECT_EQ(Run("mdb-export", "-H -D '%Y-%m-%d' -T '%Y-%m-%d %H:%M:%S' T"),
              "-5,\"M\u00FCller\",1,-123.4500,\"2000-01-01 12:00:00\",200,0.125\n"
              "2147483647,\"\u041C\u0438\u0440 \u20AC\",0,0.0001,,,\n"
              ",,1,,\"1899-12-31 00:00:00\",0,-2.5\n");
}

TEST_F(OtherReaders, ReadMemosOfEveryKind) {
    auto table = MakeTable({{u"Id", ColumnType::Long}, {u"Memo", ColumnType::Memo}});
    std::string expected;
    for (const std::size_t length : {1U, 32U, 33U, 62U, 63U, 1024U, 1025U, 2038U, 2039U, 4000U, 100'000U}) {
        table->Insert(Row{1, std::u16string(length, u'm')});
        expected += "1,\"" + std::string(length, 'm') + "\"\n";
    }
    mDatabase->Close();
    EXPECT_EQ(Run("mdb-export", "-H T"), expected);
}

}  // namespace
}  // namespace jet
