// Makes a catalogue database row by row, with the tables, columns and indexes that the tool relies on, and a
// further column and index in every table.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "platform/dao/database.h"

namespace test {

/// The files of a table, by column: the key file, then up to four data files.
using MapFiles = std::array<std::optional<std::u16string>, 5>;

struct MapRow {
    std::u16string TableName = {};
    dao::Value TableHierarchy = std::u16string(u"Top Level");
    MapFiles Files = {};
    dao::Value LogicalIndex = {};
    dao::Value StartingStatus = 0;
    std::int32_t EndingStatus = 0;
    dao::Value IndexFieldinDataFile = {};
};

struct KeyRow {
    std::u16string Name = {};
    dao::Value DataType = u"U";
    dao::Value Size = 2;
    dao::Value StartValue = 0;
    dao::Value EndValue = 0;
    std::int32_t overrideStart = 0;
    std::int32_t overrideEnd = 0;
};

class CatalogueBuilder {
  public:
    /// In a new database, or in the one that stands at file. Columns of the name omitted are left out.
    explicit CatalogueBuilder(const std::filesystem::path& file, const std::u16string& omitted = {});
    ~CatalogueBuilder() { mDatabase->Close(); }
    CatalogueBuilder(const CatalogueBuilder&) = delete;
    CatalogueBuilder& operator=(const CatalogueBuilder&) = delete;

    void AddField(const std::u16string& table, const std::u16string& name, const dao::Value& type,
                  const dao::Value& length, std::int32_t start, std::int32_t specifier = 0);
    void AddMap(const MapRow& row);
    void AddKey(const KeyRow& row);
    void AddIndexColumn(const std::u16string& table, const std::u16string& index, const std::u16string& field,
                        bool primary, bool unique = false, bool descending = false);
    void AddRelation(const std::u16string& name, const std::u16string& table, const std::u16string& foreign,
                     const dao::Value& type, const std::u16string& field, const std::u16string& foreignField);

    dao::Database& Database() { return *mDatabase; }

  private:
    struct Column {
        std::u16string Name;
        dao::FieldType Type;
    };

    void AddTable(const std::u16string& name, std::span<const Column> columns,
                  std::initializer_list<std::u16string> primaryKey);
    void AddRow(const std::u16string& table,
                std::initializer_list<std::pair<std::u16string, dao::Value>> values);

    std::shared_ptr<dao::Database> mDatabase;
    std::u16string mOmitted;
    std::int32_t mRowNumber = 0;  // keeps rows of one name in the order in which they were added
};

}  // namespace test
