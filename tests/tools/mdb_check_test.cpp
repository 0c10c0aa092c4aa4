// The file checker: it accepts what the format's own engine wrote, and finds what was damaged on purpose.
#include <filesystem>

#include "platform/jet/bytes.h"
#include "tests/jet/database_fixture.h"

namespace {

using jet::Jet4Layout;
using Bytes = std::string;

/// Where the sound file has its structures.
struct Places {
    std::uint32_t Definition = 0;
    std::uint32_t Rows = 0;  // the first page of rows
    std::uint32_t Memo = 0;  // the first page of a chain
    std::uint32_t Root = 0;  // of the primary key, a node
    std::uint32_t Leaf = 0;  // its first leaf
    std::uint32_t Maps = 0;
    std::uint32_t Aces = 0;  // the last page of permissions
};

std::uint8_t* At(Bytes& bytes, std::uint32_t page, std::size_t offset) {
    return reinterpret_cast<std::uint8_t*>(bytes.data()) + page * std::size_t{4096} + offset;
}

void Flip(Bytes& bytes, std::uint32_t page, std::size_t offset, std::uint8_t bits) {
    std::uint8_t& byte = *At(bytes, page, offset);
    byte = static_cast<std::uint8_t>(byte ^ bits);
}

/// Where a row of a data page starts.
std::size_t RowAt(Bytes& bytes, std::uint32_t page, unsigned row) {
    return jet::LoadU16(At(bytes, page, Jet4Layout.RowTableAt + 2 * row)) & 0x1FFFU;
}

/// Flips a page's bit in an inline map, which is a row of the page of maps.
void FlipInMap(Bytes& bytes, std::uint32_t mapPage, unsigned map, std::uint32_t page) {
    const std::size_t row = RowAt(bytes, mapPage, map);
    const std::uint32_t bit = page - jet::LoadU32(At(bytes, mapPage, row + jet::MapStartPageAt));
    Flip(bytes, mapPage, row + jet::InlineBitmapAt + bit / 8, static_cast<std::uint8_t>(1U << (bit % 8)));
}

struct Damage {
    const char* Name;
    void (*Make)(Bytes& bytes, const Places& at);
    const char* Finding;
};

// The maps stand in the order owned, free, memo owned, memo free, primary key, name.
const Damage Damages[]{
    {"RowCount", [](Bytes& b, const Places& at) { Flip(b, at.Definition, Jet4Layout.TableRowsAt, 1); },
     "rows, there"},
    {"DistinctCount",
     [](Bytes& b, const Places& at) { Flip(b, at.Definition, Jet4Layout.TableHeaderLength + 4, 1); },
     "different keys"},
    {"DeletedRow", [](Bytes& b, const Places& at) { Flip(b, at.Rows, Jet4Layout.RowTableAt + 1, 0xC0); },
     "which the table does not have"},
    {"FreeBytes", [](Bytes& b, const Places& at) { Flip(b, at.Rows, jet::PageFreeBytes, 2); },
     "count of free bytes"},
    {"OwnerOfRows", [](Bytes& b, const Places& at) { Flip(b, at.Rows, jet::PageOwner, 1); }, "another owner"},
    {"ValueInAKey", [](Bytes& b, const Places& at) { Flip(b, at.Rows, RowAt(b, at.Rows, 0) + 2, 0x40); },
     "is not the one that its values make"},
    {"KeyOnALeaf", [](Bytes& b, const Places& at) { Flip(b, at.Leaf, Jet4Layout.IndexEntriesAt + 4, 1); },
     "values make"},
    {"RowOfAnEntry",
     [](Bytes& b, const Places& at) { Flip(b, at.Leaf, Jet4Layout.IndexEntriesAt + 8, 0x80); },
     "which the table does not have"},
    {"NextLeaf", [](Bytes& b, const Places& at) { Flip(b, at.Leaf, Jet4Layout.IndexNextAt, 1); },
     "is not the next one"},
    {"PreviousLeaf", [](Bytes& b, const Places& at) { Flip(b, at.Leaf, Jet4Layout.IndexPreviousAt, 1); },
     "does not name the leaf before it"},
    {"Separator", [](Bytes& b, const Places& at) { Flip(b, at.Root, Jet4Layout.IndexEntriesAt + 4, 1); },
     "is not the last one below its child"},
    {"ChildOfANode",
     [](Bytes& b, const Places& at) { Flip(b, at.Root, Jet4Layout.IndexEntriesAt + 11, 0x80); },
     "which the file does not have"},
    {"PageOutOfTheIndexMap", [](Bytes& b, const Places& at) { FlipInMap(b, at.Maps, 4, at.Leaf); },
     "is not in the index's map"},
    {"PageOutOfTheOwnedMap", [](Bytes& b, const Places& at) { FlipInMap(b, at.Maps, 0, at.Rows); },
     "which the table does not have"},
    {"ForeignPageWithRoom", [](Bytes& b, const Places& at) { FlipInMap(b, at.Maps, 1, at.Root); },
     "but is not owned"},
    {"PageOfTwoOwners", [](Bytes& b, const Places& at) { FlipInMap(b, at.Maps, 0, at.Leaf); }, "is used by"},
    {"UsedPageFree", [](Bytes& b, const Places& at) { FlipInMap(b, jet::GlobalMapPage, 0, at.Leaf); },
     "is free in the global map"},
    {"LostPage",
     [](Bytes& b, const Places&) {
         const auto page = static_cast<std::uint32_t>(b.size() / 4096);
         b.append(4096, '\0');
         FlipInMap(b, jet::GlobalMapPage, 0, page);
     },
     "neither free nor used"},
    {"CutChain", [](Bytes& b, const Places& at) { jet::StoreU32(At(b, at.Memo, RowAt(b, at.Memo, 0)), 0); },
     "A problem occurred in your database"},
    {"Permissions",
     [](Bytes& b, const Places& at) {
         for (const unsigned row : {0U, 1U}) Flip(b, at.Aces, RowAt(b, at.Aces, row) + 2, 0x40);
     },
     "has no permissions"},
};

class MdbCheck : public test::NewDatabase {
  protected:
    /// Makes the sound file and says where its structures are.
    Places MakeSound() {
        const auto table = MakeTable({{u"Id", jet::ColumnType::Long},
                                      {u"Name", jet::ColumnType::Text, 60},
                                      {u"Memo", jet::ColumnType::Memo}},
                                     {{u"PrimaryKey", {{u"Id"}}, true}, {u"Name", {{u"Name"}}}});
        for (std::int32_t i = 0; i < 1200; ++i) {
            const std::u16string name(static_cast<std::size_t>(i % 50), static_cast<char16_t>(u'a' + i % 26));
            table->Insert(test::Row{i, name, std::u16string(i == 7 ? 6000 : 3, u'\u0416')});
        }
        table->Publish();
        const jet::TableDef& definition = table->Definition();
        Places at;
        at.Definition = definition.Page;
        at.Rows = table->FirstRow()->Page;
        at.Maps = definition.OwnedMap.Page;
        at.Root = definition.RealIndexes[0].RootPage;
        at.Leaf = jet::IndexPage::Read(mDatabase->File(), at.Root, at.Definition).Child(0);
        at.Memo = *jet::UsageMap(mDatabase->File(), definition.LongValues[0].Owned).Next(0);
        const auto aces = mDatabase->FindTable(u"MSysACEs");
        for (auto row = aces->FirstRow(); row; row = aces->NextRow(*row)) at.Aces = row->Page;
        mDatabase->Close();
        return at;
    }
};

TEST_F(MdbCheck, FindsEveryKindOfDamage) {
    const Places at = MakeSound();
    ASSERT_THAT(test::FindingsIn(Path(), true), testing::IsEmpty());
    const Bytes sound = test::ReadBytes(Path());
    for (const Damage& damage : Damages) {
        Bytes bytes = sound;
        damage.Make(bytes, at);
        test::WriteBytes(Path(), bytes);
        EXPECT_THAT(test::FindingsIn(Path(), true), testing::Contains(testing::HasSubstr(damage.Finding)))
            << damage.Name;
    }
}

TEST_F(MdbCheck, MakesTheKeysOfTheFormatsOwnEngineAgain) {
    const char* const folder = std::getenv("VANTORA_SAMPLES");
    if (folder == nullptr) GTEST_SKIP() << "VANTORA_SAMPLES does not name the folder of sample files";
    std::size_t keys = 0;
    std::size_t textKeys = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".mdb") continue;
        mdb_check::Report report(false, [&](mdb_check::Report::Kind kind, const std::string& text) {
            EXPECT_EQ(kind, mdb_check::Report::Kind::Note) << entry.path() << ": " << text;
        });
        mdb_check::CheckFile(entry.path().string(), report);
        keys += report.Keys();
        textKeys += report.TextKeys();
    }
    std::cout << keys << " keys made again, " << textKeys << " of them with text\n";
    EXPECT_GT(textKeys, 7'000U);
}

}  // namespace
