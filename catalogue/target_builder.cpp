// The schema follows three walks in `PrimaryKey` order. In each, consecutive rows of one name form a run that
// becomes one object: a table from `VantoraFileDefinitions`, an index from `LogicalIndex`, a relation from
// `LogicalRelations`. An object is appended when the next run begins, the last one after the walk.

#include "catalogue/target_builder.h"

#include <memory>

#include "catalogue/create_relations.h"
#include "catalogue/row_fields.h"
#include "platform/error.h"

namespace catalogue {

namespace {

constexpr const char* TargetLocale = ";LANGID=0x0409;CP=1252;COUNTRY=0";
constexpr std::int32_t OneToOne = 1;  // `Type` of a relation

dao::Field ColumnOf(dao::Recordset& row, const dao::TableDef& table) {
    const ColumnShape shape = ShapeOfColumn(TextOf(row, u"FieldType"), row.Fields(u"FieldLength").GetValue(),
                                            row.Fields(u"FieldSpecifier").GetValue());
    return table.CreateField(TextOf(row, u"FieldName"), shape.Type, shape.Size);
}

void AppendTables(InterfaceState& state) {
    dao::Recordset& rows = *state.FileDefinitionsRecordset;
    dao::TableDefs& tables = state.TargetDatabase->TableDefs();
    std::u16string PreviousTable;
    std::shared_ptr<dao::TableDef> table;
    for (MoveToFirstByPrimaryKey(rows); !rows.AtEnd(); rows.MoveNext()) {
        const std::u16string TableName = TextOf(rows, u"TableName");
        if (TableName != PreviousTable) {
            if (!PreviousTable.empty()) tables.Append(table);
            PreviousTable = TableName;
            table = state.TargetDatabase->CreateTableDef(TableName);
        }
        if (!table) throw platform::Error(platform::ObjectNotSet);
        table->AppendField(ColumnOf(rows, *table));
    }
    tables.Append(table);
}

dao::Index NewIndex(dao::Recordset& row, const dao::TableDef& table) {
    dao::Index index = table.CreateIndex(TextOf(row, u"IndexName"));
    index.SetPrimary(TruthOf(row, u"Primary"));
    if (!index.Primary()) index.Unique = TruthOf(row, u"Unique");
    return index;
}

void AppendIndexes(InterfaceState& state) {
    dao::Recordset& rows = *state.LogicalIndexRecordset;
    dao::TableDefs& tables = state.TargetDatabase->TableDefs();
    std::u16string PreviousTable;
    std::shared_ptr<dao::TableDef> table;
    dao::Index index;
    for (MoveToFirstByPrimaryKey(rows); !rows.AtEnd(); rows.MoveNext()) {
        const std::u16string TableName = TextOf(rows, u"TableName");
        if (TableName != PreviousTable || TextOf(rows, u"IndexName") != index.Name) {
            if (!PreviousTable.empty()) table->Indexes().Append(index);
            table = tables.Item(TableName);
            index = NewIndex(rows, *table);
            PreviousTable = TableName;
        }
        if (!table) throw platform::Error(platform::ObjectNotSet);
        dao::Field column = table->CreateField(TextOf(rows, u"FieldName"));
        if (TruthOf(rows, u"Descending")) column.Attributes = dao::DescendingField;
        index.Fields.push_back(column);
    }
    table->Indexes().Append(index);
}

std::shared_ptr<dao::Relation> NewRelation(dao::Recordset& row, const InterfaceState& state) {
    auto relation = state.TargetDatabase->CreateRelation(TextOf(row, u"RelationName"));
    relation->Table = TextOf(row, u"TableName");
    relation->ForeignTable = TextOf(row, u"ForeignTable");
    relation->Attributes = state.EnforceReferentialIntegrity ? 0 : dao::RelationDoNotEnforce;
    const dao::Value type = row.Fields(u"Type").GetValue();
    if (!dao::IsNull(type) && dao::ToLong(type) == OneToOne) relation->Attributes += dao::UniqueRelation;
    return relation;
}

void AppendRelations(InterfaceState& state) {
    dao::Recordset& rows = *state.RelationsRecordset;
    dao::Relations& relations = state.TargetDatabase->Relations();
    std::shared_ptr<dao::Relation> relation;
    for (MoveToFirstByPrimaryKey(rows); !rows.AtEnd(); rows.MoveNext()) {
        if (!relation || TextOf(rows, u"RelationName") != relation->Name) {
            if (relation) relations.Append(*relation);
            relation = NewRelation(rows, state);
        }
        dao::Field column;
        column.Name = TextOf(rows, u"FieldName");
        column.ForeignName = TextOf(rows, u"ForeignName");
        relation->Fields.push_back(column);
    }
    relations.Append(*relation);
}

}  // namespace

void BuildTargetDatabase(InterfaceState& state, const std::string& path) {
    state.FileDefinitionsRecordset = state.CatalogueDatabase->OpenRecordset(u"VantoraFileDefinitions");
    state.TargetDatabase = dao::CreateDatabase(path, TargetLocale);
    AppendTables(state);
    AppendIndexes(state);
    if (CreateRelations) AppendRelations(state);
}

}  // namespace catalogue
