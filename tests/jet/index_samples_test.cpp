// Indexes that the engine itself wrote, in both formats: every tree keeps every rule, and every entry is made
// again from its row.
#include <filesystem>
#include <gtest/gtest.h>
#include <map>

#include "platform/code_page.h"
#include "platform/jet/database.h"
#include "platform/jet/index_key.h"
#include "tests/jet/hex.h"
#include "tests/jet/index_checker.h"

namespace jet {
namespace {

constexpr const char* SamplesVariable = "VANTORA_SAMPLES";

struct Counts {
    int Indexes = 0;
    int Entries = 0;
    int TextEntries = 0;
    int Skipped = 0;  // indexes over columns whose order this program does not make
};

bool IsText(const Column& column) {
    return column.Type == ColumnType::Text || column.Type == ColumnType::Memo;
}

/// The key columns of an index as positions in a row; nothing when one of them is not ours to order.
std::optional<std::vector<std::size_t>> KeyPositions(const TableDef& table, const RealIndex& index,
                                                     Version version) {
    std::vector<std::size_t> positions;
    for (const IndexKeyColumn& part : index.Columns) {
        const auto position = table.FindColumnNumber(part.ColumnNumber);
        if (!position) return std::nullopt;
        const Column& column = table.Columns[*position];
        const bool foreign = column.SortOrder != GeneralSortOrder || column.SortVersion != 0;
        if (!IsIndexable(column.Type, version) || (IsText(column) && foreign)) return std::nullopt;
        positions.push_back(*position);
    }
    return positions;
}

class SampleIndexes : public testing::Test {
  protected:
    void SetUp() override {
        if (std::getenv(SamplesVariable) == nullptr)
            GTEST_SKIP() << SamplesVariable << " does not name the folder of sample files";
    }

    static std::vector<std::string> Files() {
        std::vector<std::string> files;
        for (const auto& entry : std::filesystem::directory_iterator(std::getenv(SamplesVariable))) {
            if (entry.path().extension() == ".mdb") files.push_back(entry.path().string());
        }
        std::sort(files.begin(), files.end());
        return files;
    }

    void CheckFile(const std::string& path) {
        const auto database = Database::Open(path, Sharing::Shared);
        std::vector<std::u16string> names = database->TableNames();
        for (const char16_t* system : {u"MSysObjects", u"MSysACEs", u"MSysQueries", u"MSysRelationships"})
            names.emplace_back(system);
        for (const std::u16string& name : names) {
            SCOPED_TRACE(path + ", table " + platform::Utf8FromWide(name));
            const auto table = database->FindTable(name);
            ASSERT_NE(table, nullptr);
            for (std::size_t i = 0; i < table->Definition().RealIndexes.size(); ++i)
                CheckIndex(database->File(), *table, i);
        }
    }

    void CheckIndex(PageFile& file, Table& table, std::size_t number) {
        const TableDef& definition = table.Definition();
        const RealIndex& index = definition.RealIndexes[number];
        test::IndexChecker checker(file, definition.Page);
        checker.Check(index.RootPage, UsageMap(file, index.Map));
        EXPECT_TRUE(checker.BrokenRules.empty()) << "index " << number << ": " << checker.BrokenRules.front();

        Counts& counts = mCounts[file.FileVersion()];
        const auto positions = KeyPositions(definition, index, file.FileVersion());
        if (!positions) {
            ++counts.Skipped;
            return;
        }
        ++counts.Indexes;
        std::size_t walked = 0;
        for (auto cursor = table.Index(number).First(); !cursor.AtEnd(); cursor.Next(), ++walked) {
            CompareKey(table, index, *positions, cursor, file.FileVersion());
            ++counts.Entries;
            for (const std::size_t position : *positions)
                counts.TextEntries += IsText(definition.Columns[position]);
        }
        EXPECT_EQ(walked, checker.Entries.size());
    }

    static void CompareKey(Table& table, const RealIndex& index, const std::vector<std::size_t>& positions,
                           const IndexTree::Cursor& cursor, Version version) {
        std::string key;
        for (std::size_t i = 0; i < positions.size(); ++i) {
            AppendKey(key, table.ReadColumn(cursor.Row(), positions[i]),
                      table.Definition().Columns[positions[i]].Type, index.Columns[i].Ascending, version);
        }
        EXPECT_EQ(test::ToHex(key), test::ToHex(cursor.Key()))
            << "page " << cursor.Row().Page << " row " << int{cursor.Row().Row};
    }

    std::map<Version, Counts> mCounts;
};

TEST_F(SampleIndexes, AreMadeAgainByteForByte) {
    for (const std::string& file : Files()) CheckFile(file);
    for (const auto& [version, counts] : mCounts) {
        std::cout << (version == Version::Jet3 ? "Jet 3: " : "Jet 4: ") << counts.Indexes << " indexes, "
                  << counts.Entries << " entries, " << counts.TextEntries << " text parts equal; "
                  << counts.Skipped << " indexes left out\n";
        EXPECT_GT(counts.TextEntries, 0);
    }
    EXPECT_EQ(mCounts.size(), 2U);
}

TEST_F(SampleIndexes, EveryKeyIsFoundAgain) {
    for (const char* name : {"nwind.mdb", "testIndexCodesV1997.mdb", "indexTestV2000.mdb"}) {
        const auto database =
            Database::Open(std::string(std::getenv(SamplesVariable)) + "/" + name, Sharing::Shared);
        for (const std::u16string& tableName : database->TableNames()) {
            const auto table = database->FindTable(tableName);
            for (std::size_t i = 0; i < table->Definition().RealIndexes.size(); ++i) {
                const IndexTree& tree = table->Index(i);
                std::string before;
                for (auto cursor = tree.First(); !cursor.AtEnd(); cursor.Next()) {
                    const std::string key(cursor.Key());
                    if (key == before) continue;
                    before = key;
                    const auto found = tree.LowerBound(key);
                    ASSERT_FALSE(found.AtEnd());
                    ASSERT_EQ(found.Row(), cursor.Row());
                    ASSERT_FALSE(tree.Contains(key + '\0'));
                }
            }
        }
    }
}

}  // namespace
}  // namespace jet
