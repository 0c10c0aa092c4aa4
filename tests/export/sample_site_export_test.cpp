// A whole site, exported table by table and read back by another program, must hold cell for cell what the
// site's generator expects: all of it, ranges of it, and what was written before a cancel.
// VANTORA_EQUIVALENCE_RECORDS sets the size of the site.
#include <array>
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "catalogue/metadata_catalogue.h"
#include "catalogue/row_fields.h"
#include "catalogue/target_builder.h"
#include "export/export_run.h"
#include "export/key_range.h"
#include "platform/code_page.h"
#include "tests/catalogue/scripted_window.h"
#include "tests/catalogue/table_list_fake.h"
#include "tests/tools/site_fixture.h"
#include "tools/sample_site/canonical_cell.h"

namespace {

namespace fs = std::filesystem;

using Lines = std::vector<std::string>;

Lines Split(const std::string& text, char separator) {
    Lines parts(1);
    for (const char c : text) {
        if (c == separator) {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

/// The lines that a command prints, the line of names first.
Lines OutputOf(const std::string& command) {
    std::FILE* const pipe = popen(("LC_ALL=C.UTF-8 MDBICONV=UTF-8 " + command).c_str(), "r");
    std::string output;
    std::array<char, 65536> buffer;
    while (const std::size_t length = std::fread(buffer.data(), 1, buffer.size(), pipe))
        output.append(buffer.data(), length);
    EXPECT_EQ(pclose(pipe), 0) << command;
    Lines lines = Split(output, '\n');
    lines.pop_back();
    return lines;
}

/// A line without its last two columns.
std::string WithoutLastTwo(const std::string& line) {
    return line.substr(0, line.rfind(',', line.rfind(',') - 1));
}

class SampleSiteExport : public test::SiteFixture {
  protected:
    void SetUp() override {
        if (std::system("command -v mdb-export > /dev/null 2>&1") != 0)
            GTEST_SKIP() << "mdbtools is not installed";
        const char* const records = std::getenv("VANTORA_EQUIVALENCE_RECORDS");
        sample::WriteSampleSite(
            Folder,
            {.Records = records == nullptr ? 1500 : std::atoll(records), .Seed = 7, .WriteExpected = true});
        StartEngine();
        catalogue::StartCatalogue(mState, mList);
        for (int box = 0; box < catalogue::TableList::BoxCount; ++box)
            if (!mList.Caption(box).empty()) mTables.push_back(platform::Utf8FromWide(mList.Caption(box)));
    }

    void BuildTarget() {
        fs::remove(mTarget);
        catalogue::BuildTargetDatabase(mState, mTarget.string());
    }

    void OpenTable(std::size_t box) {
        catalogue::EmptyTableFiles(mState);
        catalogue::OpenFiles(mState, mList, mWindow, static_cast<std::int16_t>(box));
        catalogue::BuildCollection(mState, mList, static_cast<std::int16_t>(box));
    }

    void ExportTable(std::size_t box) {
        OpenTable(box);
        exporting::AddData(mState, mList, mWindow, static_cast<std::int16_t>(box));
    }

    /// The rows of the closed target in the form of the expected tables: only reals are written differently.
    Lines Exported(const std::string& table) {
        const auto database = dao::OpenDatabase(mTarget.string());
        const std::vector<dao::Field> fields =
            database->TableDefs().Item(platform::WideFromUtf8(table))->Fields();
        Lines lines =
            OutputOf("mdb-export -e -Q -d '\t' -D %Y-%m-%d -T %Y-%m-%d '" + mTarget.string() + "' " + table);
        for (std::size_t row = 1; row < lines.size(); ++row) {
            Lines cells = Split(lines[row], '\t');
            lines[row].clear();
            for (std::size_t i = 0; i < cells.size(); ++i) {
                if (fields.at(i).Type == dao::FieldType::Single && !cells[i].empty())
                    cells[i] = sample::SingleCell(std::strtof(cells[i].c_str(), nullptr));
                lines[row] += (i == 0 ? "" : "\t") + cells[i];
            }
        }
        return lines;
    }

    Lines Expected(const std::string& table) const {
        std::ifstream stream(Folder / "expected" / (table + ".tsv"), std::ios::binary);
        Lines lines;
        for (std::string line; std::getline(stream, line);) lines.push_back(line);
        return lines;
    }

    /// Compares every cell and counts them.
    void ExpectLines(const Lines& found, const Lines& wanted, const std::string& table) {
        ASSERT_EQ(found.size(), wanted.size()) << table;
        for (std::size_t i = 0; i < found.size(); ++i)
            ASSERT_EQ(found[i], wanted[i]) << table << ", line " << i;
        mCells += (wanted.size() - 1) * Split(wanted[0], '\t').size();
    }

    /// The bytes of every file of the site but the catalogue, whose rows stand for it without their
    /// overrides.
    std::map<std::string, std::string> SiteContent() const {
        std::map<std::string, std::string> content;
        for (const auto& entry : fs::recursive_directory_iterator(Folder)) {
            const std::string name = entry.path().filename().string();
            if (!entry.is_regular_file()) continue;
            if (!name.ends_with(".mdb")) {
                content[entry.path().string()] = test::ReadBytes(entry.path());
                continue;
            }
            const std::string catalogue = "'" + entry.path().string() + "'";
            for (const std::string& table : OutputOf("mdb-tables -1 " + catalogue)) {
                const bool hasOverrides = table == "LogicalIndexDefinition";
                for (const std::string& row : OutputOf("mdb-export " + catalogue + " " + table))
                    content[table] += (hasOverrides ? WithoutLastTwo(row) : row) + "\n";
            }
        }
        return content;
    }

    const fs::path mTarget = Scratch / "target.mdb";
    catalogue::InterfaceState mState;
    test::TableListFake mList;
    test::ScriptedWindow mWindow;
    Lines mTables;  // by box
    std::size_t mCells = 0;
};

TEST_F(SampleSiteExport, EveryCellOfEveryTableArrivesAndTheSiteStaysAsItWas) {
    const auto before = SiteContent();
    BuildTarget();
    for (std::size_t box = 0; box < mTables.size(); ++box) ExportTable(box);
    mState.TargetDatabase->Close();
    for (const std::string& table : mTables) ExpectLines(Exported(table), Expected(table), table);
    EXPECT_EQ(mTables.size(), 15U);
    EXPECT_TRUE(mWindow.Messages.empty());
    EXPECT_TRUE(SiteContent() == before);
    std::printf("%zu cells are equal\n", mCells);
}

/// What is left of a table's expected lines between the bounds, by the column that holds the key. The walk is
/// in the order of the keys as unsigned numbers, and ends at the first one above the upper bound.
Lines InRange(const Lines& lines, std::size_t column, std::int32_t start, std::int32_t end) {
    Lines chosen{lines[0]};
    for (std::size_t i = 1; i < lines.size(); ++i) {
        const auto key = static_cast<std::int32_t>(std::stol(Split(lines[i], '\t').at(column)));
        if (static_cast<std::uint32_t>(key) < static_cast<std::uint32_t>(start)) continue;
        if (key > end) break;
        chosen.push_back(lines[i]);
    }
    return chosen;
}

TEST_F(SampleSiteExport, ARangeOfAKeyedTableIsThatPartOfIt) {
    const auto before = SiteContent();
    BuildTarget();
    std::map<std::string, Lines> wanted;
    for (std::size_t box = 0; box < mTables.size(); ++box) {
        OpenTable(box);
        const auto& keyFile = mState.TableFiles[1];
        if (!keyFile) continue;
        dao::Recordset& key = *mState.IndexDefinitionRecordset;
        catalogue::MoveToFirstByPrimaryKey(key);
        key.Seek("=", platform::WideFromBytes(keyFile->FileName));
        const std::u16string type = catalogue::TextOf(key, u"DataType");
        if (type != u"U" && type != u"I") continue;

        const Lines all = Expected(mTables[box]);
        const Lines names = Split(all[0], '\t');
        const std::string name =
            platform::Utf8FromWide(catalogue::TextOf(*mState.LogicalMapRecordset, u"IndexFieldinDataFile"));
        const auto column =
            static_cast<std::size_t>(std::find(names.begin(), names.end(), name) - names.begin());
        const std::string start = Split(all[1 + all.size() / 4], '\t').at(column);
        const std::string end = Split(all[1 + all.size() / 2], '\t').at(column);
        for (const auto side : {exporting::RangeBox::Start, exporting::RangeBox::End})
            ASSERT_FALSE(exporting::LeaveRangeBox(key, side, start, end)) << mTables[box];
        wanted[mTables[box]] = InRange(all, column, std::stoi(start), std::stoi(end));
        ExportTable(box);
    }
    mState.TargetDatabase->Close();
    for (const auto& [table, lines] : wanted) {
        EXPECT_GT(lines.size(), 1U) << table;
        ExpectLines(Exported(table), lines, table);
    }
    EXPECT_GE(wanted.size(), 8U);
    EXPECT_TRUE(SiteContent() == before);
    std::printf("%zu cells of ranges are equal\n", mCells);
}

TEST_F(SampleSiteExport, ACancelLeavesTheRowsWrittenBefore) {
    BuildTarget();
    for (std::size_t box = 0; box < mTables.size(); ++box) {
        mState.CancelRequested = false;
        mWindow.Yields = 0;
        const auto stop = static_cast<int>(Expected(mTables[box]).size() / 2);
        mWindow.OnYield = [&] { mState.CancelRequested = mWindow.Yields > stop; };
        ExportTable(box);
    }
    mState.TargetDatabase->Close();
    for (const std::string& table : mTables) {
        const Lines found = Exported(table);
        Lines wanted = Expected(table);
        ASSERT_LE(found.size(), wanted.size() / 2 + 1);
        // Rows that are refused or passed over count as processed and leave no line.
        EXPECT_GE(found.size(), wanted.size() / 4) << table;
        wanted.resize(found.size());
        ExpectLines(found, wanted, table);
    }
}

}  // namespace
