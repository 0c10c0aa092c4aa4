#include "tests/catalogue/catalogue_builder.h"

namespace test {

using enum dao::FieldType;

CatalogueBuilder::CatalogueBuilder(const std::filesystem::path& file, const std::u16string& omitted)
    : mDatabase(std::filesystem::exists(file)
                    ? dao::OpenDatabase(file.string())
                    : dao::CreateDatabase(file.string(), ";LANGID=0x0409;CP=1252;COUNTRY=0")),
      mOmitted(omitted) {
    const Column fields[]{{u"TableName", Text},        {u"RowNumber", Long},      {u"FieldName", Text},
                          {u"FieldType", Text},        {u"FieldLength", Integer}, {u"StartPosition", Integer},
                          {u"FieldSpecifier", Integer}};
    AddTable(u"VantoraFileDefinitions", fields, {u"TableName", u"RowNumber"});
    const Column map[]{{u"TableName", Text},
                       {u"TableHierarchy", Text},
                       {u"KeyFile", Text},
                       {u"DataFile1", Text},
                       {u"DataFile2", Text},
                       {u"DataFile3", Text},
                       {u"DataFile4", Text},
                       {u"LogicalIndex", Text},
                       {u"StartingStatus", Long},
                       {u"EndingStatus", Long},
                       {u"IndexFieldinDataFile", Text},
                       {u"RowNumber", Long}};
    AddTable(u"LogicalMap", map, {u"TableName", u"RowNumber"});
    const Column keys[]{{u"KeyName", Text},     {u"KeyFieldDescription", Text},
                        {u"DataType", Text},    {u"StartValue", Long},
                        {u"EndValue", Long},    {u"Size", Integer},
                        {u"overrideEnd", Long}, {u"overrideStart", Long}};
    AddTable(u"LogicalIndexDefinition", keys, {u"KeyName"});
    const Column indexes[]{{u"TableName", Text},    {u"IndexName", Text}, {u"RowNumber", Long},
                           {u"Primary", Boolean},   {u"Unique", Boolean}, {u"FieldName", Text},
                           {u"Descending", Boolean}};
    AddTable(u"LogicalIndex", indexes, {u"TableName", u"IndexName", u"RowNumber"});
    const Column relations[]{{u"RelationName", Text}, {u"RowNumber", Long}, {u"TableName", Text},
                             {u"ForeignTable", Text}, {u"Type", Integer},   {u"FieldName", Text},
                             {u"ForeignName", Text}};
    AddTable(u"LogicalRelations", relations, {u"RelationName", u"RowNumber"});
}

void CatalogueBuilder::AddTable(const std::u16string& name, std::span<const Column> columns,
                                std::initializer_list<std::u16string> primaryKey) {
    const auto table = mDatabase->CreateTableDef(name);
    for (const Column& column : columns) {
        if (column.Name != mOmitted) table->AppendField(table->CreateField(column.Name, column.Type));
    }
    table->AppendField(table->CreateField(u"Remark", Memo));
    mDatabase->TableDefs().Append(table);
    const auto appended = mDatabase->TableDefs().Item(name);
    dao::Index further = appended->CreateIndex(u"Further");
    further.Fields.push_back(appended->CreateField(*primaryKey.begin()));
    appended->Indexes().Append(further);
    dao::Index index = appended->CreateIndex(u"PrimaryKey");
    index.SetPrimary(true);
    for (const std::u16string& column : primaryKey) index.Fields.push_back(appended->CreateField(column));
    appended->Indexes().Append(index);
}

void CatalogueBuilder::AddRow(const std::u16string& table,
                              std::initializer_list<std::pair<std::u16string, dao::Value>> values) {
    const auto rows = mDatabase->OpenRecordset(table);
    rows->AddNew();
    for (const auto& [column, value] : values) {
        if (!dao::IsNull(value) && column != mOmitted) rows->Fields(column).SetValue(value);
    }
    rows->Update();
    rows->Close();
}

void CatalogueBuilder::AddField(const std::u16string& table, const std::u16string& name,
                                const dao::Value& type, const dao::Value& length, std::int32_t start,
                                std::int32_t specifier) {
    AddRow(u"VantoraFileDefinitions", {{u"TableName", table},
                                       {u"RowNumber", ++mRowNumber},
                                       {u"FieldName", name},
                                       {u"FieldType", type},
                                       {u"FieldLength", length},
                                       {u"StartPosition", start},
                                       {u"FieldSpecifier", specifier}});
}

void CatalogueBuilder::AddMap(const MapRow& row) {
    const auto file = [&row](std::size_t position) {
        return row.Files[position] ? dao::Value(*row.Files[position]) : dao::Value();
    };
    AddRow(u"LogicalMap", {{u"TableName", row.TableName},
                           {u"TableHierarchy", row.TableHierarchy},
                           {u"KeyFile", file(0)},
                           {u"DataFile1", file(1)},
                           {u"DataFile2", file(2)},
                           {u"DataFile3", file(3)},
                           {u"DataFile4", file(4)},
                           {u"LogicalIndex", row.LogicalIndex},
                           {u"StartingStatus", row.StartingStatus},
                           {u"EndingStatus", row.EndingStatus},
                           {u"IndexFieldinDataFile", row.IndexFieldinDataFile},
                           {u"RowNumber", ++mRowNumber}});
}

void CatalogueBuilder::AddKey(const KeyRow& row) {
    AddRow(u"LogicalIndexDefinition", {{u"KeyName", row.Name},
                                       {u"KeyFieldDescription", u"Key of " + row.Name},
                                       {u"DataType", row.DataType},
                                       {u"StartValue", row.StartValue},
                                       {u"EndValue", row.EndValue},
                                       {u"Size", row.Size},
                                       {u"overrideEnd", row.overrideEnd},
                                       {u"overrideStart", row.overrideStart}});
}

void CatalogueBuilder::AddIndexColumn(const std::u16string& table, const std::u16string& index,
                                      const std::u16string& field, bool primary, bool unique,
                                      bool descending) {
    AddRow(u"LogicalIndex", {{u"TableName", table},
                             {u"IndexName", index},
                             {u"RowNumber", ++mRowNumber},
                             {u"Primary", primary},
                             {u"Unique", unique},
                             {u"FieldName", field},
                             {u"Descending", descending}});
}

void CatalogueBuilder::AddRelation(const std::u16string& name, const std::u16string& table,
                                   const std::u16string& foreign, const dao::Value& type,
                                   const std::u16string& field, const std::u16string& foreignField) {
    AddRow(u"LogicalRelations", {{u"RelationName", name},
                                 {u"RowNumber", ++mRowNumber},
                                 {u"TableName", table},
                                 {u"ForeignTable", foreign},
                                 {u"Type", type},
                                 {u"FieldName", field},
                                 {u"ForeignName", foreignField}});
}

}  // namespace test
