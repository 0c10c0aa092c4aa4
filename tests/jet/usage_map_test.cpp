#include "platform/jet/usage_map.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <set>

#include "platform/jet/bytes.h"
#include "platform/jet/data_page.h"
#include "tests/support/expect_error.h"
#include "tests/support/hex.h"
#include "tests/support/scratch.h"

namespace jet {
namespace {

class UsageMaps : public testing::Test {
  protected:
    UsageMaps() : mFile(PageFile::Create((mFolder / "maps.mdb").string())), mMap(*mFile, MakeMap()) {}

    RowPointer MakeMap() {
        while (mFile->PageCount() < 6) mFile->Allocate();
        DataPage page = DataPage::Make(*mFile, mFile->Allocate(), MapOwner);
        const std::vector<std::uint8_t> empty(mFile->Format().MapRowLength);
        page.Append(empty);
        return {page.Number(), page.Append(empty)};
    }

    std::string RowBytes(RowPointer row) {
        const DataPage page(*mFile, row.Page);
        const auto bytes = page.Row(row.Row);
        return {bytes.begin(), bytes.end()};
    }

    std::vector<std::uint32_t> Pages() const {
        std::vector<std::uint32_t> pages;
        for (auto page = mMap.Next(0); page; page = mMap.Next(*page + 1)) pages.push_back(*page);
        return pages;
    }

    void GrowTo(std::uint32_t pages) {
        while (mFile->PageCount() < pages) mFile->Allocate();
    }

    test::ScratchFolder mFolder;
    std::unique_ptr<PageFile> mFile;
    UsageMap mMap;
};

TEST_F(UsageMaps, SmallPageNumbersAreBitsInTheRow) {
    for (const std::uint32_t page : {0U, 9U, 511U}) mMap.Add(page);
    std::string expected = test::Hex("00 00 00 00 00 01 02") + std::string(62, '\0');
    expected.back() = '\x80';
    EXPECT_EQ(RowBytes(mMap.Row()), expected);
    EXPECT_THAT(Pages(), testing::ElementsAre(0, 9, 511));
    mMap.Remove(9);
    mMap.Remove(100);
    for (const std::uint32_t page : {9U, 512U}) EXPECT_FALSE(mMap.Contains(page));
    EXPECT_THAT(Pages(), testing::ElementsAre(0, 511));
}

TEST_F(UsageMaps, APageBeyondTheBitmapTurnsTheRowIntoReferences) {
    GrowTo(1000);
    for (const std::uint32_t page : {7U, 300U}) mMap.Add(page);
    mMap.Add(512);
    EXPECT_THAT(Pages(), testing::ElementsAre(7, 300, 512));
    const std::string row = RowBytes(mMap.Row());
    EXPECT_EQ(row.size(), 69U);
    EXPECT_EQ(test::ToHex(row.substr(0, 9)), "01 E8 03 00 00 00 00 00 00") << "bitmap page 1000";
    EXPECT_EQ(test::ToHex({reinterpret_cast<const char*>(mFile->Read(1000).Data()), 5}), "05 01 00 00 80");
    const UsageMap free(*mFile, {GlobalMapPage, 0});
    EXPECT_FALSE(free.Contains(1000)) << "a bitmap page is in use";

    mMap.MoveTo(MakeMap());
    EXPECT_TRUE(free.Contains(1000)) << "it moved with its map";
    EXPECT_EQ(mMap.BitmapPages().size(), 1U);
    EXPECT_THAT(Pages(), testing::ElementsAre(7, 300, 512));
    mMap.Add(40'000);
    EXPECT_EQ(mMap.Last(), 40'000U);
    for (const std::uint32_t page : {40'000U, 512U}) mMap.Remove(page);
    EXPECT_EQ(mMap.Last(), 300U);
    for (const std::uint32_t page : {300U, 7U}) mMap.Remove(page);
    EXPECT_EQ(mMap.Last(), std::nullopt);
}

TEST_F(UsageMaps, RemembersAnySetOfPages) {
    std::mt19937 random(4711);
    std::set<std::uint32_t> expected;
    for (int i = 0; i < 3000; ++i) {
        const auto page = static_cast<std::uint32_t>(random() % (i < 1000 ? 512 : 80'000));
        if (random() % 3 == 0) {
            mMap.Remove(page);
            expected.erase(page);
        } else {
            mMap.Add(page);
            expected.insert(page);
        }
    }
    EXPECT_THAT(Pages(), testing::ElementsAreArray(expected));
    for (std::uint32_t page = 0; page < 2000; ++page) ASSERT_EQ(mMap.Contains(page), expected.contains(page));
}

TEST_F(UsageMaps, AnotherStartPageCounts) {
    StoreU32(DataPage(*mFile, mMap.Row().Page).ChangeRow(mMap.Row().Row).data() + 1, 640);
    mMap.Add(641);
    EXPECT_EQ(test::ToHex(RowBytes(mMap.Row()).substr(0, 6)), "00 80 02 00 00 02");
    EXPECT_THAT(Pages(), testing::ElementsAre(641));
    GrowTo(700);
    mMap.Add(5);
    EXPECT_THAT(Pages(), testing::ElementsAre(5, 641));
    // The global map too takes pages in front of its first one.
    StoreU32(DataPage(*mFile, GlobalMapPage).ChangeRow(0).data() + 1, 640);
    mFile->Free(400);
    EXPECT_EQ(mFile->Allocate(), 400U);
}

TEST_F(UsageMaps, RowsThatCannotBeMapsAreDamage) {
    const RowPointer row = mMap.Row();
    const auto next = [&](RowPointer place) {
        return test::NumberRaised([&] { UsageMap(*mFile, place).Next(0); });
    };
    EXPECT_EQ(next({row.Page, 2}), 3428) << "no such slot";
    EXPECT_EQ(next({HeaderPage, 0}), 3428) << "no data page";
    DataPage(*mFile, row.Page).ChangeRow(row.Row)[0] = 2;
    EXPECT_EQ(next(row), 3428) << "unknown type";
    DataPage(*mFile, row.Page).ChangeRow(row.Row)[0] = 0;
    StoreU32(DataPage(*mFile, row.Page).ChangeRow(row.Row).data() + 1, 0xFFFFFFF0);
    EXPECT_EQ(next(row), 3428) << "start page far out";
    DataPage(*mFile, row.Page).ChangeRow(row.Row)[0] = 1;
    EXPECT_EQ(next(row), 3428) << "reference to a page that is no bitmap";
    // Rows that have fewer bytes than every program gives them.
    GrowTo(32'800);
    DataPage(*mFile, row.Page).ResizeRow(row.Row, 5);
    EXPECT_EQ(test::NumberRaised([&] { mMap.Add(32'736); }), 3428) << "a page beyond its references";
    DataPage(*mFile, row.Page).ResizeRow(row.Row, 4);
    EXPECT_EQ(next(row), 3428) << "too short";
    DataPage(*mFile, GlobalMapPage).ResizeRow(0, 5);
    EXPECT_EQ(test::NumberRaised([&] { mFile->Allocate(); }), 3428) << "a page beyond the global map";
}

struct Growth {
    std::uint32_t Pages;
    std::size_t RowLength;
    int Type;
};

class GlobalMapGrowth : public UsageMaps, public testing::WithParamInterface<Growth> {};

TEST_P(GlobalMapGrowth, KeepsEveryPageInUse) {
    const auto [pages, length, type] = GetParam();
    GrowTo(300);
    mFile->Free(100);
    while (mFile->PageCount() < pages) mFile->Allocate(mFile->PageCount());
    const std::string row = RowBytes({GlobalMapPage, 0});
    EXPECT_EQ(row.size(), length);
    EXPECT_EQ(row[0], type);
    EXPECT_EQ(RowBytes({GlobalMapPage, 1}), std::string(69, '\0'));
    const UsageMap freePages(*mFile, {GlobalMapPage, 0});
    EXPECT_EQ(freePages.Next(0), 100U) << "a free page stays free";
    EXPECT_GE(freePages.Next(101).value_or(pages), pages);

    mFile->Free(pages / 2);
    EXPECT_EQ(mFile->Allocate(), 100U);
    EXPECT_EQ(mFile->Allocate(), pages / 2) << "a freed page is found again";
    const std::uint32_t end = mFile->PageCount();
    EXPECT_EQ(mFile->Allocate(), end);
}

INSTANTIATE_TEST_SUITE_P(Sizes, GlobalMapGrowth,
                         testing::Values(Growth{512, 69, 0}, Growth{513, 5 + 68, 0}, Growth{743, 101, 0},
                                         Growth{1466, 189, 0}, Growth{32'032, 4009, 0}, Growth{32'033, 69, 1},
                                         Growth{32'736, 69, 1}, Growth{70'000, 69, 1}));

TEST_F(UsageMaps, RowsMoveTogetherWhenOneIsResized) {
    DataPage page = DataPage::Make(*mFile, mFile->Allocate(), MapOwner);
    const std::vector<std::uint8_t> first{1, 2, 3};
    const std::vector<std::uint8_t> second{4, 5};
    page.Append(first);
    page.Append(second);
    ASSERT_TRUE(page.ResizeRow(0, 5));
    EXPECT_THAT(page.Row(0), testing::ElementsAre(1, 2, 3, 0, 0));
    EXPECT_THAT(page.Row(1), testing::ElementsAre(4, 5));
    ASSERT_TRUE(page.ResizeRow(0, 1));
    EXPECT_THAT(page.Row(1), testing::ElementsAre(4, 5));
    EXPECT_FALSE(page.ResizeRow(0, 4080));
    EXPECT_TRUE(page.ResizeRow(0, 4076));
    EXPECT_FALSE(page.HasRoom(0)) << "no room for a slot";
    StoreU16(mFile->Read(page.Number()).Change() + 14, 0x1FFF);
    EXPECT_EQ(test::NumberRaised([&] { page.Row(1); }), 3428) << "the row before it reaches out of the page";
}

}  // namespace
}  // namespace jet
