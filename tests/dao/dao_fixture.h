// A new database in a scratch folder, and short ways to make and fill its tables.
#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/dao/database.h"
#include "tests/support/expect_error.h"
#include "tests/support/scratch.h"

namespace test {

inline constexpr std::string_view Locale = ";LANGID=0x0409;CP=1252;COUNTRY=0";

struct ColumnOf {
    std::u16string Name;
    dao::FieldType Type;
    int Size = 0;
};

struct IndexOf {
    std::u16string Name;
    std::vector<std::u16string> Columns;
    bool Primary = false;
    bool Unique = false;
    bool Descending = false;
};

class DaoFixture : public testing::Test {
  protected:
    std::string Path(const std::string& name = "t.mdb") const { return (mFolder / name).string(); }

    void Create() { mDatabase = dao::CreateDatabase(Path(), Locale); }

    std::shared_ptr<dao::TableDef> MakeTable(std::u16string_view name, const std::vector<ColumnOf>& columns,
                                             const std::vector<IndexOf>& indexes = {}) {
        if (!mDatabase) Create();
        auto table = mDatabase->CreateTableDef(name);
        for (const ColumnOf& column : columns)
            table->AppendField(table->CreateField(column.Name, column.Type, column.Size));
        mDatabase->TableDefs().Append(table);
        for (const IndexOf& index : indexes) AppendIndex(*table, index);
        return table;
    }

    static void AppendIndex(dao::TableDef& table, const IndexOf& asked) {
        dao::Index index = table.CreateIndex(asked.Name);
        if (asked.Primary) index.SetPrimary(true);
        if (asked.Unique) index.Unique = true;
        for (const std::u16string& column : asked.Columns) {
            index.Fields.push_back(table.CreateField(column));
            if (asked.Descending) index.Fields.back().Attributes = dao::DescendingField;
        }
        table.Indexes().Append(index);
    }

    static void Add(dao::Recordset& rows, const std::vector<dao::Value>& values) {
        rows.AddNew();
        for (std::size_t i = 0; i < values.size(); ++i) rows.Fields(static_cast<int>(i)).SetValue(values[i]);
        rows.Update();
    }

    /// Changes columns of the current row.
    static void Edit(dao::Recordset& rows,
                     const std::vector<std::pair<std::u16string, dao::Value>>& changes) {
        rows.Edit();
        for (const auto& [column, value] : changes) rows.Fields(column).SetValue(value);
        rows.Update();
    }

    /// The values of one column in the recordset's order.
    static std::vector<dao::Value> ColumnValues(dao::Recordset& rows, std::u16string_view column) {
        std::vector<dao::Value> values;
        if (rows.RecordCount() == 0) return values;
        for (rows.MoveFirst(); !rows.AtEnd(); rows.MoveNext())
            values.push_back(rows.Fields(column).GetValue());
        return values;
    }

    void Reopen() {
        mDatabase->Close();
        mDatabase = dao::OpenDatabase(Path());
    }

    ScratchFolder mFolder;
    std::shared_ptr<dao::Database> mDatabase;
};

}  // namespace test
