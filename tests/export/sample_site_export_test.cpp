// A whole site, exported table by table and read back, must hold cell for cell what its manifest's expected
// tables say.
#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "catalogue/metadata_catalogue.h"
#include "catalogue/target_builder.h"
#include "export/export_run.h"
#include "platform/code_page.h"
#include "tests/catalogue/table_list_fake.h"
#include "tests/tools/site_fixture.h"
#include "tools/sample_site/canonical_cell.h"
#include "tools/sample_site/sample_site.h"

namespace {

namespace fs = std::filesystem;

using Lines = std::vector<std::string>;

class SampleSiteExport : public test::SiteFixture {
  protected:
    void ExportEverything() {
        StartEngine();
        engine::gCodeChars.replace(0, 4, " ,-.");  // as the window does
        catalogue::StartCatalogue(mState, mList);
        catalogue::BuildTargetDatabase(mState, mTarget.string());
        for (std::int16_t box = 0; box < catalogue::TableList::BoxCount; ++box) {
            if (mList.Caption(box).empty()) continue;
            catalogue::EmptyTableFiles(mState);
            catalogue::OpenFiles(mState, mList, Window, box);
            catalogue::BuildCollection(mState, mList, box);
            exporting::AddData(mState, mList, Window, box);
        }
        mState.TargetDatabase->Close();
    }

    /// A line of column names, then one line a row, as the expected tables have them.
    static Lines LinesOf(dao::Database& database, const std::u16string& table) {
        const auto rows = database.OpenRecordset(table);
        Lines lines;
        const auto addLine = [&](auto cellOf) {
            std::string line;
            for (int column = 0; column < rows->FieldCount(); ++column) {
                line += (column == 0 ? "" : "\t") + cellOf(rows->Fields(column));
            }
            lines.push_back(line);
        };
        addLine([](dao::RecordsetField& field) { return platform::Utf8FromWide(field.Name()); });
        for (; !rows->AtEnd(); rows->MoveNext()) {
            addLine([](dao::RecordsetField& field) {
                return sample::CanonicalCell(field.GetValue(), field.Type());
            });
        }
        return lines;
    }

    static Lines LinesOf(const fs::path& file) {
        std::ifstream stream(file, std::ios::binary);
        Lines lines;
        for (std::string line; std::getline(stream, line);) lines.push_back(line);
        return lines;
    }

    const fs::path mTarget = Scratch / "target.mdb";
    catalogue::InterfaceState mState;
    test::TableListFake mList;
};

TEST_F(SampleSiteExport, EveryCellOfEveryTableArrives) {
    sample::WriteSampleSite(Folder, {.Records = 1500, .Seed = 7, .WriteExpected = true});
    ExportEverything();
    EXPECT_TRUE(Window.Messages.empty());

    const auto database = dao::OpenDatabase(mTarget.string());
    int tables = 0;
    for (const auto& entry : fs::directory_iterator(Folder / "expected")) {
        const std::string table = entry.path().stem().string();
        const Lines expected = LinesOf(entry.path());
        const Lines exported = LinesOf(*database, platform::WideFromUtf8(table));
        ASSERT_GT(expected.size(), 1U) << table;
        EXPECT_EQ(exported.size(), expected.size()) << table;
        const auto [found, wanted] =
            std::mismatch(exported.begin(), exported.end(), expected.begin(), expected.end());
        if (found != exported.end() && wanted != expected.end()) {
            ADD_FAILURE() << table << ", line " << found - exported.begin() << "\n  exported: " << *found
                          << "\n  expected: " << *wanted;
        }
        ++tables;
    }
    EXPECT_GE(tables, 10);
    EXPECT_EQ(static_cast<std::size_t>(tables), database->TableDefs().Names().size());
}

}  // namespace
