#include "platform/dao/relation_list.h"

#include <algorithm>
#include <initializer_list>
#include <set>

#include "platform/code_page.h"
#include "platform/dao/value.h"
#include "platform/jet/errors.h"

namespace dao {

namespace {

using jet::DataError;

constexpr std::u16string_view RelationsTable = u"MSysRelationships";
constexpr std::u16string_view NameColumn = u"szRelationship";

void RequireColumn(const jet::Table& table, std::u16string_view name) {
    if (!table.Definition().FindColumn(name)) throw DataError(jet::ItemNotFound);
}

std::size_t PositionOf(const jet::Table& table, std::u16string_view column) {
    const auto position = table.Definition().FindColumn(column);
    if (!position) throw DataError(jet::DamagedDatabase);
    return *position;
}

}  // namespace

std::vector<std::u16string> RelationList::Names() const {
    const jet::Table& table = mConnection->Table(RelationsTable, jet::DamagedDatabase);
    const std::size_t column = PositionOf(table, NameColumn);
    std::vector<std::u16string> names;
    for (auto row = table.FirstRow(); row; row = table.NextRow(*row)) {
        const Value name = table.ReadColumn(*row, column);
        if (!IsNull(name)) names.push_back(ToText(name));
    }
    return names;
}

int RelationList::Count() const {
    const std::vector<std::u16string> names = Names();
    return static_cast<int>(std::set<std::u16string>(names.begin(), names.end()).size());
}

void RelationList::Append(const Relation& relation) {
    jet::CheckName(relation.Name);
    const auto sameName = [&relation](const std::u16string& other) {
        return platform::EqualFolded(other, relation.Name);
    };
    if (std::ranges::any_of(Names(), sameName)) throw DataError(jet::ObjectExists, relation.Name);
    if (relation.Fields.empty()) throw DataError(jet::NoFieldDefined);
    const jet::Table& one = mConnection->Table(relation.Table, jet::ItemNotFound);
    const jet::Table& many = mConnection->Table(relation.ForeignTable, jet::ItemNotFound);
    for (const Field& field : relation.Fields) {
        RequireColumn(one, field.Name);
        RequireColumn(many, field.ForeignName);
    }

    jet::Table& relations = mConnection->Table(RelationsTable, jet::DamagedDatabase);
    std::int32_t place = 0;
    for (const Field& field : relation.Fields) {
        const std::initializer_list<std::pair<std::u16string_view, Value>> columns{
            {NameColumn, relation.Name},
            {u"grbit", std::int32_t{relation.Attributes}},
            {u"ccolumn", static_cast<std::int32_t>(relation.Fields.size())},
            {u"icolumn", place++},
            {u"szObject", relation.ForeignTable},
            {u"szColumn", field.ForeignName},
            {u"szReferencedObject", relation.Table},
            {u"szReferencedColumn", field.Name}};
        std::vector<Value> row(relations.Definition().Columns.size());
        for (const auto& [name, value] : columns) row[PositionOf(relations, name)] = value;
        relations.Insert(row);
    }
    mConnection->CountChange();
}

}  // namespace dao
