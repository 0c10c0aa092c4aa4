#include "tools/site_dump/site_dump.h"

#include <gmock/gmock.h>
#include <sstream>

#include "tests/engine/index_builder.h"
#include "tests/engine/site_builder.h"

namespace {

using testing::HasSubstr;

TEST(SiteDump, ShowsWhatTheEngineSeesAndWritesNothing) {
    constexpr test::IndexFormat Small{4, false, false};
    test::SiteBuilder site;
    site.AddFile("PARTS", 'I', 512, 2,
                 test::HeaderBytes(Small, 1) + test::BlockBytes(Small, 0, {{"bbbb", 2}, {"aaaa", 9}}) +
                     test::BlockBytes(Small, 0xFFFF, {{"bbbb", 7}, test::Terminator(Small)}));
    site.AddFile("ORDERS", 'L', 64, 5, test::Hex("FF FE 00 00 00 02 00 00 00 04 00 00 00 03"));
    site.Write();
    const auto dump = [&](std::vector<std::string> words, int status) {
        std::ostringstream out;
        words.insert(words.begin(), site.Folder().Path().string());
        EXPECT_EQ(site_dump::Run(words, out, out), status) << out.str();
        return out.str();
    };
    EXPECT_THAT(dump({}, 0),
                HasSubstr(":D01:PARTS -> KSW:D01: type I, block 1, records of 512 bytes, last 2"));
    const std::string index = dump({"PARTS"}, 0);
    EXPECT_THAT(index,
                HasSubstr("level 1: 1 blocks, 2 entries, 0 leaves\n    block 1: keys do not ascend\n"));
    EXPECT_THAT(index,
                HasSubstr("level 2: 2 blocks, 2 entries, 1 leaves\n    block 9: not a block of this file\n"));
    EXPECT_THAT(dump({"ORDERS"}, 0),
                HasSubstr("first deleted 2, highest used 4, active 3\n  deleted records in the chain: 1"));
    EXPECT_THAT(dump({"ORDERS", "0"}, 0), HasSubstr("000001 FF FE 00 00 00 02"));
    EXPECT_THAT(dump({"NOTHING"}, 1), HasSubstr("no link :D01:NOTHING"));
    std::filesystem::remove(site.InShare("LINKSFILE"));
    EXPECT_THAT(dump({}, 1), HasSubstr("LINKSFILE is missing"));
    EXPECT_FALSE(std::filesystem::exists(site.InShare("LINKSFILE")));
}

}  // namespace
