// A whole run on a catalogue in the format of Access 97, which the program itself cannot make.
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/export/export_fixture.h"

namespace {

using Rows = std::vector<std::string>;
using test::Bytes;

class Jet3Catalogue : public test::ExportFixture, public testing::WithParamInterface<const char*> {
  protected:
    void SetUp() override {
        const char* const samples = std::getenv("VANTORA_SAMPLES");
        if (samples == nullptr) GTEST_SKIP() << "VANTORA_SAMPLES does not name the folder of sample files";
        if (std::system("command -v python3 > /dev/null") != 0) GTEST_SKIP() << "python3 is not installed";
        Catalogue.reset();
        const std::filesystem::path sample = std::filesystem::path(samples) / GetParam();
        const std::string command =
            "python3 '" JET3_CATALOGUE_PROGRAM "' '" + sample.string() + "' '" + CatalogueFile.string() + "'";
        ASSERT_EQ(std::system(command.c_str()), 0);
        AddIndex("PARTX", {{Bytes("\0\1"), 1}, {Bytes("\0\2"), 2}, {Bytes("\0\7"), 3}});
        AddRecords("PARTF", {Bytes("\0\1WIDGET\0\1\xF4       "), Bytes("\0\2GADGET\0\0\x63       "),
                             Bytes("\0\7SPROCK\0\0\1       ")});
    }

    Rows Keys() const { return RowsOf(CatalogueFile, u"LogicalIndexDefinition"); }
};

TEST_P(Jet3Catalogue, IsListedReadAndWrittenAsOneOfTheLaterFormat) {
    ASSERT_EQ(Keys(), (Rows{"STORE_X|Store|I|-5|70000|4|0|8|a remark", "PARTX|Part|U|1|99|2|-3|2|a remark"}));
    StartWithTarget();
    EXPECT_EQ(List.Caption(0), u"NOTES");
    EXPECT_EQ(List.At(0).Colour, catalogue::TableColour::Purple) << "of the last row by the primary key";
    EXPECT_EQ(List.Caption(1), u"PARTS");
    EXPECT_EQ(List.Caption(2), u"");
    EXPECT_EQ(Keys(), (Rows{"STORE_X|Store|I|-5|70000|4|0|0|a remark", "PARTX|Part|U|1|99|2|0|0|a remark"}));

    State.IndexDefinitionRecordset->SetIndex(u"PrimaryKey");
    State.IndexDefinitionRecordset->Seek("=", std::u16string(u"partx"));
    ASSERT_FALSE(State.IndexDefinitionRecordset->NoMatch());
    State.IndexDefinitionRecordset->Edit();
    State.IndexDefinitionRecordset->Fields(u"overrideEnd").SetValue(std::int32_t{5});
    State.IndexDefinitionRecordset->Update();
    EXPECT_EQ(Keys().at(1), "PARTX|Part|U|1|99|2|5|0|a remark") << "while the catalogue is open";

    Export(u"PARTS");
    EXPECT_EQ(LastStatus(), "Complete");
    EXPECT_EQ(RowsOfTarget(u"PARTS"), (Rows{"1|WIDGET|5.0000", "2|GADGET|0.9900"}));
}

INSTANTIATE_TEST_SUITE_P(Samples, Jet3Catalogue, testing::Values("testV1997.mdb", "indexTestV1997.mdb"));

}  // namespace
