// What is wrong in a catalogue or in the files of a site: whether a column, a row or the run ends, and with
// which error.
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "catalogue/target_builder.h"
#include "platform/code_page.h"
#include "tests/export/export_fixture.h"

namespace {

using test::Big;

struct Field {
    std::u16string Table;
    std::u16string Name;
    dao::Value Type;
    dao::Value Length;
    std::int32_t Start;
    std::int32_t Specifier = 0;
};

/// A sound site with two parts, keyed in PARTS and walked by record number in STOCK.
struct PartsSite {
    test::MapRow Parts{.TableName = u"PARTS",
                       .Files = {u"PARTX", u"PARTF"},
                       .LogicalIndex = u"PARTX",
                       .IndexFieldinDataFile = u"Number"};
    test::MapRow Stock{
        .TableName = u"STOCK", .Files = {std::nullopt, u"PARTF"}, .StartingStatus = 1, .EndingStatus = 1};
    test::KeyRow Key{.Name = u"PARTX", .EndValue = 999};
    std::vector<Field> Fields{{u"PARTS", u"Number", u"U", 2, 3},
                              {u"PARTS", u"Name", u"A", 1, 5},
                              {u"STOCK", u"Number", u"U", 2, 3}};
    std::vector<test::KeyAndPointer> Entries{{Big(10, 2), 1}, {Big(20, 2), 2}};
    std::vector<std::string> Records{Big(1, 2) + Big(10, 2) + "A" + test::Nul(11),
                                     Big(1, 2) + Big(20, 2) + "B" + test::Nul(11)};
    std::u16string OmittedColumn;
    std::u16string IndexedTable = u"PARTS";

    void AddColumn(const char16_t* type, std::int32_t length, std::int32_t start,
                   std::int32_t specifier = 0) {
        Fields.push_back(
            {u"PARTS", u"Bad" + std::u16string(Fields.size(), u'_'), type, length, start, specifier});
    }
};

struct BadCase {
    std::string Name;
    std::function<void(PartsSite&)> Damage;
    std::string Failure;            // the step that fails and its error's number; empty: none
    std::vector<std::string> Rows;  // of PARTS
};

void PrintTo(const BadCase& tested, std::ostream* stream) {
    *stream << tested.Name;
}

const std::vector<std::string> Whole{"10|A", "20|B"};
const std::vector<std::string> None;

class BadInput : public test::ExportFixture, public testing::WithParamInterface<BadCase> {
  protected:
    void Write(const PartsSite& site) {
        Catalogue.reset();
        std::filesystem::remove(CatalogueFile);
        Catalogue = std::make_unique<test::CatalogueBuilder>(CatalogueFile, site.OmittedColumn);
        Catalogue->AddMap(site.Parts);
        Catalogue->AddMap(site.Stock);
        Catalogue->AddKey(site.Key);
        for (const Field& field : site.Fields)
            Catalogue->AddField(field.Table, field.Name, field.Type, field.Length, field.Start,
                                field.Specifier);
        if (!site.IndexedTable.empty())
            Catalogue->AddIndexColumn(site.IndexedTable, u"ByNumber", u"Number", true);
        AddRecords("PARTF", site.Records);
        AddRecords("SHORTF", {site.Records.front()});
        Site.AddFile("TINYF", 'L', 1, 20, Big(-2, 2) + Big(-1, 4) + Big(20, 4) + Big(20, 4) + test::Nul(20));
        AddIndex("PARTX", site.Entries);
        *Site.Links += test::LinkEntry(":D01:AWAYF", "AWAY:D01") + test::LinkEntry(":D01:FARX", "KSW:D01");
        constexpr std::int32_t BeyondAllPlaces = 0x400000;  // times 512 bytes
        Site.Directory += test::DirectoryEntryBytes("FARX", BeyondAllPlaces, 512, 'I', 1);
    }

    std::string FirstFailure() {
        std::string step = "start";
        try {
            StartEngine();
            StartCatalogue();
            step = "build";
            catalogue::BuildTargetDatabase(State, TargetFile.string());
            for (const char16_t* const table : {u"PARTS", u"STOCK"}) {
                step = platform::Utf8FromWide(table);
                Export(table);
            }
        } catch (const platform::Error& error) {
            return step + " " + std::to_string(error.Number);
        } catch (const catalogue::StopRequested&) {
            return step + " stops";
        }
        return "";
    }
};

TEST_P(BadInput, EndsAColumnARowOrTheRun) {
    PartsSite site;
    GetParam().Damage(site);
    Write(site);
    EXPECT_EQ(FirstFailure(), GetParam().Failure);
    if (State.TargetDatabase) {
        EXPECT_EQ(RowsOfTarget(u"PARTS"), GetParam().Rows);
    }
}

std::string NameOf(const testing::TestParamInfo<BadCase>& tested) {
    return tested.param.Name;
}

INSTANTIATE_TEST_SUITE_P(
    Columns, BadInput,
    testing::Values(BadCase{"Nothing", [](PartsSite&) {}, "", Whole},
                    BadCase{"Integers",
                            [](PartsSite& site) {
                                site.AddColumn(u"U", 2, 16);       // beyond the record
                                site.AddColumn(u"m", 0, 1);        // no length
                                site.AddColumn(u"W", 5, 1);        // too long
                                site.AddColumn(u"I", 2, -1);       // negative start
                                site.AddColumn(u"I", 2, 3, 400);   // decimals out of range
                                site.AddColumn(u"I", 2, 3, -307);  // a value out of range
                                site.AddColumn(u"B", 1, 3, 31);    // bit out of range
                            },
                            "",
                            {"10|A|-|-|-|-|-|-|-", "20|B|-|-|-|-|-|-|-"}},
                    BadCase{"Texts",
                            [](PartsSite& site) {
                                site.AddColumn(u"A", 4, 99);    // nothing is left of it
                                site.AddColumn(u"A", 4, 0);     // position below 1
                                site.AddColumn(u"P", 14, -3);   // the same
                                site.AddColumn(u"X", 2, 3, 0);  // the same for the character
                                site.AddColumn(u"Y", -1, 3);    // negative length
                            },
                            "",
                            {"10|A|-|-|-|-|-", "20|B|-|-|-|-|-"}},
                    BadCase{"NullIndexColumn",
                            [](PartsSite& site) {
                                site.AddColumn(u"U", 2, 16);
                                site.Parts.IndexFieldinDataFile = site.Fields.back().Name;
                            },
                            "",
                            {"10|A|-", "20|B|-"}}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(
    RowsOf, BadInput,
    testing::Values(
        BadCase{"RepeatedKey", [](PartsSite& site) { site.Records[1] = site.Records[0]; }, "", {"10|A"}},
        BadCase{"UnsetKey", [](PartsSite& site) { site.Fields[0].Start = 16; }, "", None},
        BadCase{"UnknownKeyType", [](PartsSite& site) { site.Key.DataType = u"K"; }, "", Whole}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(
    TheBuilding, BadInput,
    testing::Values(
        BadCase{"UnknownCode", [](PartsSite& site) { site.Fields[2].Type = u"K"; }, "build stops", None},
        BadCase{"NullCode", [](PartsSite& site) { site.Fields[2].Type = dao::Value(); }, "build 94", None},
        BadCase{"NullLengthOfAText",
                [](PartsSite& site) {
                    site.Fields[2] = {u"STOCK", u"N", u"C", {}, 1};
                },
                "build 94", None},
        BadCase{"TextTooLong",
                [](PartsSite& site) {
                    site.Fields[2] = {u"STOCK", u"N", u"C", 200, 1};
                },
                "build 3271", None},
        BadCase{"NegativeLengthOfAText",
                [](PartsSite& site) {
                    site.Fields[2] = {u"STOCK", u"N", u"A", -1, 1};
                },
                "build 3271", None},
        BadCase{"RepeatedColumn", [](PartsSite& site) { site.Fields.push_back(site.Fields[2]); },
                "build 3380", None},
        BadCase{"NoIndexes", [](PartsSite& site) { site.IndexedTable = u""; }, "build 3021", None},
        BadCase{"IndexOfNoTable", [](PartsSite& site) { site.IndexedTable = u"NOWHERE"; }, "build 3265",
                None},
        BadCase{"NoPrimary", [](PartsSite& site) { site.OmittedColumn = u"Primary"; }, "build 3265", None}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(
    TheRun, BadInput,
    testing::Values(
        BadCase{"NoOverrides", [](PartsSite& site) { site.OmittedColumn = u"overrideEnd"; }, "start 3265",
                None},
        BadCase{"NoStartPosition", [](PartsSite& site) { site.OmittedColumn = u"StartPosition"; },
                "PARTS 3265", None},
        BadCase{"NoEndValue", [](PartsSite& site) { site.OmittedColumn = u"EndValue"; }, "PARTS 3265", None},
        BadCase{"NoIndexField", [](PartsSite& site) { site.OmittedColumn = u"IndexFieldinDataFile"; },
                "PARTS 3265", None},
        BadCase{"NoStatus", [](PartsSite& site) { site.OmittedColumn = u"EndingStatus"; }, "STOCK 3265",
                Whole},
        BadCase{"NullLength", [](PartsSite& site) { site.Fields[0].Length = {}; }, "PARTS 94", None},
        BadCase{"NullStatus", [](PartsSite& site) { site.Stock.StartingStatus = {}; }, "STOCK 94", Whole},
        BadCase{"NullKeySize", [](PartsSite& site) { site.Key.Size = {}; }, "PARTS 94", None},
        BadCase{"NullStartValue", [](PartsSite& site) { site.Key.StartValue = {}; }, "PARTS 94", None},
        BadCase{"NullEndValue", [](PartsSite& site) { site.Key.EndValue = {}; }, "PARTS 94", None},
        BadCase{"NullKeyType", [](PartsSite& site) { site.Key.DataType = {}; }, "PARTS 94", None},
        BadCase{"NullIndexField", [](PartsSite& site) { site.Parts.IndexFieldinDataFile = {}; }, "PARTS 94",
                None},
        BadCase{"UnknownIndexField", [](PartsSite& site) { site.Parts.IndexFieldinDataFile = u"Nowhere"; },
                "PARTS 3265", None},
        BadCase{"NegativeKeySize", [](PartsSite& site) { site.Key.Size = -1; }, "PARTS 5", None},
        BadCase{"KeySizeOfNothing", [](PartsSite& site) { site.Key.Size = 0; }, "PARTS 5", None},
        BadCase{"KeySizeTooLarge", [](PartsSite& site) { site.Key.Size = 5; }, "PARTS 100", None},
        BadCase{"NoSuchKeyFile",
                [](PartsSite& site) {
                    site.Parts.Files[0] = u"NOWHERE";
                    site.Key.EndValue = {};  // read after the search
                },
                "PARTS 91", None},
        BadCase{"NoIndexFieldAndNoRow",
                [](PartsSite& site) {
                    site.OmittedColumn = u"IndexFieldinDataFile";
                    site.Key.EndValue = 5;
                },
                "", None},
        BadCase{"NoDataFile", [](PartsSite& site) { site.Stock.Files[1] = {}; }, "STOCK 91", Whole},
        BadCase{"FolderGone", [](PartsSite& site) { site.Stock.Files[1] = u"AWAYF"; }, "STOCK 91", Whole},
        BadCase{"KeysBeyondAllPlaces", [](PartsSite& site) { site.Parts.Files[0] = u"FARX"; }, "PARTS 6",
                None},
        BadCase{"FiveSlots",
                [](PartsSite& site) {
                    site.Parts.Files = {u"PARTX", u"PARTF", u"PARTF", u"PARTF", u"PARTF"};
                },
                "PARTS 9", None},
        BadCase{
            "EntryBeyondTheFile", [](PartsSite& site) { site.Entries[1].Pointer = 3; }, "PARTS 81", {"10|A"}},
        BadCase{"SecondFileTooShort",
                [](PartsSite& site) { site.Parts.Files[2] = u"SHORTF"; },
                "PARTS 81",
                {"10|A"}},
        BadCase{"NoRoomForAStatus", [](PartsSite& site) { site.Stock.Files[1] = u"TINYF"; }, "STOCK 31",
                Whole}),
    NameOf);

}  // namespace
