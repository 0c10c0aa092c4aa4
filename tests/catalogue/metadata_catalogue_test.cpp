#include "catalogue/metadata_catalogue.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "engine/business_basic.h"
#include "tests/catalogue/catalogue_fixture.h"
#include "tests/support/expect_error.h"

namespace {

using catalogue::TableColour;
using test::MapRow;

constexpr int NoCurrentRecord = 3021;

class MetadataCatalogue : public test::CatalogueFixture {
  protected:
    /// A catalogue in which every table has at least one row.
    void FillSmall() {
        Catalogue->AddMap({.TableName = u"PARTS",
                           .Files = {u"PARTX", u"PARTF", std::nullopt, std::nullopt, std::nullopt},
                           .LogicalIndex = std::u16string(u"PARTX")});
        Catalogue->AddKey({.Name = u"PARTX", .StartValue = 1, .EndValue = 99});
    }

    std::vector<std::string> SlotNames() const {
        std::vector<std::string> names;
        for (const auto& slot : State.TableFiles) names.push_back(slot ? slot->FileName : "");
        return names;
    }
};

TEST_F(MetadataCatalogue, EveryRunOfRowsGivesOneBoxWithTheColourOfItsLastRow) {
    FillSmall();
    Catalogue->AddMap({.TableName = u"A", .TableHierarchy = std::u16string(u"Mid-Level")});
    Catalogue->AddMap({.TableName = u"A", .TableHierarchy = std::u16string(u"Bottom Level")});
    Catalogue->AddMap({.TableName = u"B", .TableHierarchy = std::u16string(u"Mid-Level")});
    Catalogue->AddMap({.TableName = u"C", .TableHierarchy = std::u16string(u"mid-level")});
    List.SetColour(2, TableColour::Green);
    StartCatalogue();

    EXPECT_EQ(List.Caption(0), u"A");
    EXPECT_EQ(List.At(0).Colour, TableColour::Purple);
    EXPECT_EQ(List.Caption(1), u"B");
    EXPECT_EQ(List.At(1).Colour, TableColour::Green);
    EXPECT_EQ(List.Caption(2), u"C");
    EXPECT_EQ(List.At(2).Colour, TableColour::Green) << "an unknown level leaves the colour alone";
    EXPECT_EQ(List.Caption(3), u"PARTS");
    EXPECT_EQ(List.At(3).Colour, TableColour::AsDesigned);
    EXPECT_EQ(List.Caption(4), u"");
}

/// Made by the format's own engine; its format is kept, and its own tables stay.
TEST_F(MetadataCatalogue, ADatabaseOfTheFormatsOwnEngineServesAsCatalogue) {
    const char* const samples = std::getenv("VANTORA_SAMPLES");
    if (samples == nullptr) GTEST_SKIP() << "VANTORA_SAMPLES does not name the folder of sample files";
    for (const char* const sample : {"adox_jet4.mdb", "emptyJet4.mdb", "indexTestV2000.mdb"}) {
        Catalogue.reset();
        State = {};
        std::filesystem::remove(CatalogueFile);
        test::WriteBytes(CatalogueFile, test::ReadBytes(std::filesystem::path(samples) / sample));
        Catalogue = std::make_unique<test::CatalogueBuilder>(CatalogueFile);
        FillSmall();
        Catalogue->AddMap({.TableName = u"A", .TableHierarchy = std::u16string(u"Mid-Level")});
        Catalogue->AddKey({.Name = u"AAA", .overrideStart = 4});
        StartCatalogue();
        EXPECT_EQ(List.Caption(0), u"A") << sample;
        EXPECT_EQ(List.Caption(1), u"PARTS") << sample;
        State = {};
        EXPECT_EQ(
            RowsOf(CatalogueFile, u"LogicalIndexDefinition"),
            (std::vector<std::string>{"PARTX|Key of PARTX|U|1|99|2|0|0|-", "AAA|Key of AAA|U|0|0|2|0|0|-"}));
    }
}

TEST_F(MetadataCatalogue, ListedBoxesAreVisibleAndOtherwiseUntouched) {
    FillSmall();
    List.SetTicked(0, true);
    StartCatalogue();
    EXPECT_TRUE(List.At(0).Visible);
    EXPECT_FALSE(List.At(0).Enabled);
    EXPECT_TRUE(List.At(0).Ticked);
    EXPECT_FALSE(List.At(1).Visible);
}

TEST_F(MetadataCatalogue, ThereIsNo77thBox) {
    Catalogue->AddKey({.Name = u"X"});
    for (int table = 0; table < 77; ++table) {
        const std::string name = "T" + std::to_string(100 + table);
        Catalogue->AddMap({.TableName = std::u16string(name.begin(), name.end())});
    }
    const auto error = test::ErrorOf([this] { StartCatalogue(); });
    EXPECT_EQ(error.Number, 340);
    EXPECT_EQ(error.Description, "Control array element '76' doesn't exist");
    EXPECT_EQ(List.Caption(75), u"T175");
}

TEST_F(MetadataCatalogue, StartFailsOnACatalogueThatCannotBeListed) {
    Catalogue->AddKey({.Name = u"X"});
    EXPECT_EQ(test::ErrorOf([this] { StartCatalogue(); }).Number, NoCurrentRecord) << "empty LogicalMap";

    Catalogue = std::make_unique<test::CatalogueBuilder>(Scratch / "home" / "second.mdb");
    Catalogue->AddKey({.Name = u"X"});
    Catalogue->AddMap({.TableName = u"A", .TableHierarchy = dao::Value()});
    Catalogue.reset();
    State = {};
    std::filesystem::rename(Scratch / "home" / "second.mdb", CatalogueFile);
    EXPECT_EQ(test::ErrorOf([this] { StartCatalogue(); }).Number, platform::InvalidUseOfNull);

    State = {};
    std::filesystem::remove(CatalogueFile);
    constexpr int FileMissing = 3024;
    EXPECT_EQ(test::ErrorOf([this] { StartCatalogue(); }).Number, FileMissing);
}

TEST_F(MetadataCatalogue, EveryStartResetsTheRangeOverridesInTheFile) {
    FillSmall();
    Catalogue->AddKey(
        {.Name = u"AAA", .StartValue = 3, .EndValue = 9, .overrideStart = 4, .overrideEnd = -5});
    Catalogue->AddKey({.Name = u"ZZZ", .DataType = u"I", .Size = 4, .overrideStart = 7});
    StartCatalogue();
    State = {};

    EXPECT_EQ(RowsOf(CatalogueFile, u"LogicalIndexDefinition"),
              (std::vector<std::string>{"PARTX|Key of PARTX|U|1|99|2|0|0|-", "AAA|Key of AAA|U|3|9|2|0|0|-",
                                        "ZZZ|Key of ZZZ|I|0|0|4|0|0|-"}));
}

TEST_F(MetadataCatalogue, FilesGoIntoTheSlotsOfTheirColumns) {
    FillSmall();
    Catalogue->AddMap(
        {.TableName = u"GAPS", .Files = {u"KEYX", std::nullopt, u"DATAB", u"NOFILE", std::nullopt}});
    AddIndex("KEYX", {{"AB", 1}});
    AddRecords("DATAB", {test::ByteString(16, 'x')});
    StartEngine();
    StartCatalogue();
    Caption(u"GAPS");

    const auto former = std::make_shared<engine::cLogicalFile>();
    former->FileName = "FORMER";
    State.TableFiles.fill(former);
    catalogue::OpenFiles(State, List, Window, 0);
    EXPECT_EQ(SlotNames(), (std::vector<std::string>{"FORMER", "KEYX", "FORMER", "DATAB", "", "FORMER"}))
        << "a column without a name leaves its slot, a file that is not there empties it";

    catalogue::EmptyTableFiles(State);
    catalogue::OpenFiles(State, List, Window, 0);
    EXPECT_EQ(SlotNames(), (std::vector<std::string>{"", "KEYX", "", "DATAB", "", ""}));
    EXPECT_EQ(State.LogicalMapRecordset->Fields(u"TableName").GetValue(),
              dao::Value(std::u16string(u"GAPS")));
    EXPECT_TRUE(Window.Messages.empty());
}

TEST_F(MetadataCatalogue, ANameThatDiffersInLetterCaseIsReportedAndOpensNothing) {
    FillSmall();
    StartEngine();
    StartCatalogue();
    Caption(u"Parts");
    catalogue::OpenFiles(State, List, Window, 0);

    ASSERT_EQ(Window.Messages.size(), 1U);
    EXPECT_EQ(Window.Messages[0].Text, "Problem finding files for Parts");
    EXPECT_EQ(Window.Messages[0].Title, "OpenFiles");
    EXPECT_TRUE(Window.Messages[0].Critical);
    EXPECT_EQ(SlotNames(), std::vector<std::string>(6));
}

TEST_F(MetadataCatalogue, TheQueryTakesTheNameAsItStands) {
    FillSmall();
    StartCatalogue();
    constexpr int SyntaxError = 3075;
    Caption(u"O'NEILL");
    EXPECT_EQ(test::ErrorOf([this] { catalogue::OpenFiles(State, List, Window, 0); }).Number, SyntaxError);
    EXPECT_EQ(test::ErrorOf([this] { catalogue::BuildCollection(State, List, 0); }).Number, SyntaxError);
    Caption(u"UNKNOWN");
    EXPECT_EQ(test::ErrorOf([this] { catalogue::OpenFiles(State, List, Window, 0); }).Number,
              NoCurrentRecord);
    EXPECT_EQ(test::ErrorOf([this] { catalogue::BuildCollection(State, List, 0); }).Number, NoCurrentRecord);
}

TEST_F(MetadataCatalogue, TheFieldListHoldsTheTablesFieldsInTheOrderOfTheRows) {
    FillSmall();
    Catalogue->AddField(u"PARTS", u"Part", u"P", 14, 3);
    Catalogue->AddField(u"OTHER", u"Code", u"L", 2, 1);
    Catalogue->AddField(u"PARTS", u"Amount", u"m", 3, 17, 2);
    Catalogue->AddField(u"PARTS", u"Amount signed", u"M", 3, 17, -2);
    StartCatalogue();
    Caption(u"OTHER");
    catalogue::BuildCollection(State, List, 0);
    Caption(u"PARTS");
    catalogue::BuildCollection(State, List, 0);

    std::vector<std::string> fields;
    for (const catalogue::cInterface& field : State.FieldList) {
        fields.push_back(platform::Utf8FromWide(field.Name) + "|" + platform::Utf8FromWide(field.DataType) +
                         "|" + std::to_string(field.Length) + "|" + std::to_string(field.Start) + "|" +
                         std::to_string(field.TypeSpec));
    }
    EXPECT_EQ(fields,
              (std::vector<std::string>{"Part|P|14|3|0", "Amount|m|3|17|2", "Amount signed|M|3|17|-2"}));
}

}  // namespace
