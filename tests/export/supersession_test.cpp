#include "export/supersession.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/export/export_fixture.h"
#include "tests/export/history_record.h"

namespace {

using test::ByteString;
using test::Compressed;

/// A key of 30 bytes: old part number, mark, a filler, new part number, four bytes of ordering.
ByteString Key(std::string oldPart, char mark, const std::string& newPart, const std::string& order) {
    oldPart.resize(14, ' ');
    return oldPart + mark + '.' + Compressed(newPart, 10) + order;
}

std::string Padded(std::string text) {
    text.resize(15, ' ');
    return text;
}

class Supersession : public test::ExportFixture {
  protected:
    Supersession() {
        Catalogue->AddMap({.TableName = u"SUPERCEDES",
                           .Files = {u"SUPERX"},
                           .LogicalIndex = std::u16string(u"SUPERX"),
                           .IndexFieldinDataFile = std::u16string(u"OldPart")});
        Catalogue->AddKey({.Name = u"SUPERX", .DataType = u"C", .Size = 30});
        Catalogue->AddField(u"SUPERCEDES", u"OldPart", u"A", 14, 1);
        Catalogue->AddField(u"SUPERCEDES", u"Cleared", u"W", 4, 27);
        Catalogue->AddField(u"SUPERCEDES", u"First", u"C", 10, 31);
        Catalogue->AddField(u"SUPERCEDES", u"Second", u"C", 10, 41);
        Catalogue->AddField(u"SUPERCEDES", u"Third", u"C", 10, 51);
        Catalogue->AddIndexColumn(u"SUPERCEDES", u"ByOld", u"OldPart", false);
    }

    void ExportKeys(const std::vector<test::KeyAndPointer>& entries) {
        AddIndex("SUPERX", entries);
        StartWithTarget();
        Export(u"SUPERCEDES");
    }
};

TEST_F(Supersession, AMarkedKeyTakesTheTwoAfterItAlong) {
    ExportKeys({{Key("A", 'X', "A1", "0001"), 1},
                {Key("B", 'Z', "B1", "0001"), 2},
                {Key("B", 'Z', "B2", "0002"), 3},
                {Key("B", 'Z', "B3", "0003"), 4},
                {Key("C", 'X', "C1", "0001"), 5}});
    const std::string blanks = Padded("") + "|" + Padded("") + "|" + Padded("");
    EXPECT_EQ(RowsOfTarget(u"SUPERCEDES"),
              (std::vector<std::string>{
                  "A             |808464433.0000|" + blanks,
                  "B             |0.0000|" + Padded("B1") + "|" + Padded("B2") + "|" + Padded("B3"),
                  "C             |808464433.0000|" + blanks}));
    EXPECT_EQ(LastStatus(), "Complete");
    EXPECT_EQ(Window.Statuses.at(Window.Statuses.size() - 2), "Processing:  3 of  5");
}

TEST_F(Supersession, AGroupAtTheEndOfTheIndexEndsTheRun) {
    ExportKeys({{Key("B", 'Z', "B1", "0001"), 2}, {Key("B", 'Z', "B2", "0002"), 3}});
    const std::vector<std::string> rows = RowsOfTarget(u"SUPERCEDES");
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_TRUE(rows[0].starts_with("B             |0.0000|" + Padded("B1") + "|" + Padded("B2")));
    EXPECT_EQ(LastStatus(), "Complete");
}

}  // namespace
