// What another program makes of a database written here.
#include <array>
#include <cstdio>
#include <gmock/gmock.h>

#include "tests/dao/dao_fixture.h"

namespace dao {
namespace {

using testing::HasSubstr;

class WrittenDatabases : public test::DaoFixture {
  protected:
    void SetUp() override {
        if (std::system("command -v mdb-export > /dev/null 2>&1") != 0)
            GTEST_SKIP() << "mdbtools is not installed";
    }

    static std::string OutputOf(const std::string& command) {
        std::string output;
        FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
        std::array<char, 4096> buffer{};
        for (std::size_t n = 1; (n = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;)
            output.append(buffer.data(), n);
        EXPECT_EQ(pclose(pipe), 0) << command << ": " << output;
        return output;
    }
};

TEST_F(WrittenDatabases, AreReadByMdbtools) {
    MakeTable(u"Sales 2000",
              {{u"Id", FieldType::Long},
               {u"Name", FieldType::Text, 30},
               {u"Open", FieldType::Boolean},
               {u"Price", FieldType::Currency},
               {u"Ratio", FieldType::Double},
               {u"Day", FieldType::Date},
               {u"Note", FieldType::Memo}},
              {{u"PrimaryKey", {u"Id"}, true}, {u"ByName", {u"Name"}}});
    const auto rows = mDatabase->OpenRecordset(u"Sales 2000");
    const std::u16string longNote(150, u'n');
    Add(*rows, {2, u"Zoë “Quote”", true, 12.34, 0.5, platform::OleDate{36525.0}, longNote});
    Add(*rows, {1});
    Add(*rows, {-7, u"Ærø", false, -0.0001, -2.25, platform::OleDate{0.0}, u"kurz"});
    mDatabase->Close();

    EXPECT_EQ(OutputOf("mdb-tables -1 " + Path()), "Sales 2000\n");
    const std::string schema = OutputOf("mdb-schema --indexes " + Path() + " postgres");
    EXPECT_THAT(schema, HasSubstr("PRIMARY KEY (\"id\")"));
    EXPECT_THAT(schema, HasSubstr("(\"name\")"));
    EXPECT_EQ(OutputOf("mdb-export -T %Y-%m-%d -b strip " + Path() + " 'Sales 2000'"),
              "Id,Name,Open,Price,Ratio,Day,Note\n"
              "2,\"Zoë “Quote”\",1,12.3400,0.5,\"1999-12-31\",\"" +
                  std::string(150, 'n') +
                  "\"\n"
                  "1,,0,,,,\n"
                  "-7,\"Ærø\",0,-0.0001,-2.25,\"1899-12-30\",\"kurz\"\n");
}

}  // namespace
}  // namespace dao
