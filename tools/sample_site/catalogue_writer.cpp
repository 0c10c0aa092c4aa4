#include "tools/sample_site/catalogue_writer.h"

#include <initializer_list>
#include <memory>
#include <set>
#include <string>
#include <utility>

#include "platform/code_page.h"
#include "platform/dao/database.h"

namespace sample {

namespace {

using platform::WideFromBytes;
using Database = std::shared_ptr<dao::Database>;

constexpr const char* Locale = ";LANGID=0x0409;CP=1252;COUNTRY=0";
constexpr int NameSize = 64;
constexpr int DescriptionSize = 100;
constexpr int LogicalNameSize = 30;
constexpr std::size_t MostDataFiles = 4;

struct Column {
    const char16_t* Name;
    dao::FieldType Type;
    int Size = 0;
};

constexpr dao::FieldType Text = dao::FieldType::Text;
constexpr dao::FieldType Long = dao::FieldType::Long;
constexpr dao::FieldType YesNo = dao::FieldType::Boolean;

/// One table of the catalogue that is being filled.
class CatalogueTable {
  public:
    CatalogueTable(dao::Database& database, const char16_t* name, std::initializer_list<Column> columns,
                   std::initializer_list<const char16_t*> key) {
        const auto definition = database.CreateTableDef(name);
        for (const Column& column : columns)
            definition->AppendField(definition->CreateField(column.Name, column.Type, column.Size));
        database.TableDefs().Append(definition);

        dao::Index primary = definition->CreateIndex(u"PrimaryKey");
        primary.SetPrimary(true);
        for (const char16_t* const column : key) primary.Fields.push_back(definition->CreateField(column));
        database.TableDefs().Item(name)->Indexes().Append(primary);
        mRows = database.OpenRecordset(name);
    }

    /// Values in the order of the columns; Null leaves a column unset.
    void Add(std::initializer_list<dao::Value> values) {
        mRows->AddNew();
        int position = 0;
        for (const dao::Value& value : values) {
            if (!dao::IsNull(value)) mRows->Fields(position).SetValue(value);
            ++position;
        }
        mRows->Update();
    }

  private:
    std::shared_ptr<dao::Recordset> mRows;
};

dao::Value TextValue(const std::string& text) {
    if (text.empty()) return dao::Null{};
    return WideFromBytes(text);
}

dao::Value Number(std::size_t number) {
    return static_cast<std::int32_t>(number);
}

void WriteFileDefinitions(dao::Database& database, const std::vector<TableSpec>& tables) {
    CatalogueTable rows(database, u"VantoraFileDefinitions",
                        {{u"TableName", Text, NameSize},
                         {u"FieldNumber", Long},
                         {u"FieldName", Text, NameSize},
                         {u"FieldType", Text, 1},
                         {u"FieldLength", Long},
                         {u"StartPosition", Long},
                         {u"FieldSpecifier", Long}},
                        {u"TableName", u"FieldNumber"});
    for (const TableSpec& table : tables) {
        std::size_t number = 0;
        for (const FieldSpec& field : table.Fields) {
            rows.Add({TextValue(table.Name), Number(++number), TextValue(field.Name),
                      TextValue(std::string(1, field.Code)), field.Length, field.Start, field.Specifier});
        }
    }
}

/// The key file must be the third column and the data files the four after it.
void WriteLogicalMap(dao::Database& database, const std::vector<TableSpec>& tables) {
    CatalogueTable rows(database, u"LogicalMap",
                        {{u"TableName", Text, NameSize},
                         {u"TableHierarchy", Text, NameSize},
                         {u"KeyFile", Text, LogicalNameSize},
                         {u"DataFile1", Text, LogicalNameSize},
                         {u"DataFile2", Text, LogicalNameSize},
                         {u"DataFile3", Text, LogicalNameSize},
                         {u"DataFile4", Text, LogicalNameSize},
                         {u"LogicalIndex", Text, LogicalNameSize},
                         {u"StartingStatus", Long},
                         {u"EndingStatus", Long},
                         {u"IndexFieldinDataFile", Text, NameSize}},
                        {u"TableName"});
    for (const TableSpec& table : tables) {
        std::vector<DataFileSpec> files = table.DataFiles;
        files.resize(MostDataFiles);
        rows.Add({TextValue(table.Name), TextValue(table.Hierarchy), TextValue(table.Key.FileName),
                  TextValue(files[0].Name), TextValue(files[1].Name), TextValue(files[2].Name),
                  TextValue(files[3].Name), TextValue(table.Key.FileName), table.Status.Lowest,
                  table.Status.Highest, TextValue(table.Key.FieldName)});
    }
}

/// The start value must be the fourth column and the start override the eighth. Tables may share a key file.
void WriteIndexDefinitions(dao::Database& database, const std::vector<TableSpec>& tables) {
    CatalogueTable rows(database, u"LogicalIndexDefinition",
                        {{u"LogicalIndex", Text, LogicalNameSize},
                         {u"KeyFieldDescription", Text, DescriptionSize},
                         {u"DataType", Text, 1},
                         {u"StartValue", Long},
                         {u"EndValue", Long},
                         {u"Size", Long},
                         {u"DuplicateKeys", YesNo},
                         {u"overrideStart", Long},
                         {u"overrideEnd", Long}},
                        {u"LogicalIndex"});
    std::set<std::string> described;
    for (const TableSpec& table : tables) {
        const KeySpec& key = table.Key;
        if (!table.IsKeyed() || !described.insert(key.FileName).second) continue;
        rows.Add({TextValue(key.FileName), TextValue(key.Description),
                  TextValue(std::string(1, key.DataType)), key.StartValue, key.EndValue, key.Size,
                  key.Duplicates, 0, 0});
    }
}

void WriteIndexes(dao::Database& database, const std::vector<TableSpec>& tables) {
    CatalogueTable rows(database, u"LogicalIndex",
                        {{u"TableName", Text, NameSize},
                         {u"IndexName", Text, NameSize},
                         {u"ColumnNumber", Long},
                         {u"Primary", YesNo},
                         {u"Unique", YesNo},
                         {u"FieldName", Text, NameSize},
                         {u"Descending", YesNo}},
                        {u"TableName", u"IndexName", u"ColumnNumber"});
    for (const TableSpec& table : tables) {
        for (const IndexSpec& index : table.Indexes) {
            std::size_t number = 0;
            for (const IndexColumn& column : index.Columns) {
                rows.Add({TextValue(table.Name), TextValue(index.Name), Number(++number), index.Primary,
                          index.Unique, TextValue(column.Field), column.Descending});
            }
        }
    }
}

void WriteRelations(dao::Database& database) {
    constexpr std::int32_t OneToMany = 0;
    CatalogueTable rows(database, u"LogicalRelations",
                        {{u"RelationName", Text, NameSize},
                         {u"ColumnNumber", Long},
                         {u"TableName", Text, NameSize},
                         {u"ForeignTable", Text, NameSize},
                         {u"Type", Long},
                         {u"FieldName", Text, NameSize},
                         {u"ForeignName", Text, NameSize}},
                        {u"RelationName", u"ColumnNumber"});
    const auto add = [&](const char* name, const char* table, const char* foreign, const char* field) {
        rows.Add({TextValue(name), std::int32_t{1}, TextValue(table), TextValue(foreign), OneToMany,
                  TextValue(field), TextValue(field)});
    };
    add("CustomerInvoices", "CUSTOMERS", "INVOICES", "CustomerNumber");
    add("HistoryLines", "INVOICE_HISTORY", "INVOICE_HISTORY_DETAIL", "InvoiceNumber");
    add("PartPrices", "PARTS", "PRICE_HISTORY", "PartId");
    add("VendorParts", "VENDORS", "PARTS", "VendorNumber");
}

}  // namespace

void WriteCatalogue(const std::filesystem::path& path, const std::vector<TableSpec>& tables) {
    std::filesystem::create_directories(path.parent_path());
    const Database database = dao::CreateDatabase(path.string(), Locale);
    WriteFileDefinitions(*database, tables);
    WriteLogicalMap(*database, tables);
    WriteIndexDefinitions(*database, tables);
    WriteIndexes(*database, tables);
    WriteRelations(*database);
    database->Close();
}

}  // namespace sample
