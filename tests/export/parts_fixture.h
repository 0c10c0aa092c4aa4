// A site with one file of parts, which the catalogue lists twice: PARTS is keyed by number, STOCK walks the
// same file by record number.
#pragma once

#include <string>
#include <vector>

#include "tests/export/export_fixture.h"

namespace test {

using Rows = std::vector<std::string>;

/// Record of 16 bytes: status, number, name.
inline ByteString Part(std::int32_t status, std::int32_t number, std::string name) {
    name.resize(12, ' ');
    return Big(status, 2) + Big(number, 2) + name;
}

inline std::string Row(int number, std::string name) {
    name.resize(12, ' ');
    return std::to_string(number) + "|" + name;
}

class PartsFixture : public ExportFixture {
  protected:
    PartsFixture() {
        Catalogue->AddMap({.TableName = u"PARTS",
                           .Files = {u"PARTX", u"PARTF"},
                           .LogicalIndex = std::u16string(u"PARTX"),
                           .IndexFieldinDataFile = std::u16string(u"Number")});
        Catalogue->AddMap({.TableName = u"STOCK",
                           .Files = {std::nullopt, u"PARTF"},
                           .LogicalIndex = std::u16string(u"NONE"),
                           .StartingStatus = 1,
                           .EndingStatus = 2});
        AddFields(u"PARTS");
        AddFields(u"STOCK");
        Catalogue->AddIndexColumn(u"PARTS", u"ByNumber", u"Number", true);
    }

    void AddFields(const std::u16string& table) {
        Catalogue->AddField(table, u"Number", u"U", 2, 3);
        Catalogue->AddField(table, u"Name", u"A", 12, 5);
    }

    /// Keys 10 to 50 over records 5 to 1.
    void AddFiveParts() {
        AddIndex("PARTX",
                 {{Big(10, 2), 5}, {Big(20, 2), 4}, {Big(30, 2), 3}, {Big(40, 2), 2}, {Big(50, 2), 1}});
        AddRecords("PARTF", {Part(1, 50, "E"), Part(2, 40, "D"), Part(3, 30, "C"), Part(0, 20, "B"),
                             Part(-1, 10, "A")});
    }

    void StartFiveParts(const KeyRow& key = {.Name = u"PARTX", .StartValue = 1, .EndValue = 999}) {
        AddFiveParts();
        Catalogue->AddKey(key);
        StartWithTarget();
    }

    void SetOverrides(std::int32_t start, std::int32_t end) {
        dao::Recordset& row = *State.IndexDefinitionRecordset;
        row.SetIndex(u"PrimaryKey");
        row.Seek("=", std::u16string(u"PARTX"));
        row.Edit();
        row.Fields(u"overrideStart").SetValue(start);
        row.Fields(u"overrideEnd").SetValue(end);
        row.Update();
    }
};

}  // namespace test
