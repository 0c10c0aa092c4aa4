#include "platform/jet/system_tables.h"

#include <array>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "platform/jet/schema.h"
#include "platform/jet/system_catalog.h"
#include "platform/jet/table.h"

namespace jet {

namespace {

constexpr std::uint16_t LongestText = 2 * MaxTextLength;
constexpr std::uint16_t LongestBinary = 510;

Column SystemColumn(std::u16string_view name, ColumnType type, std::uint8_t extraFlags = 0) {
    Column column;
    column.Name = name;
    column.Type = type;
    column.Flags = static_cast<std::uint8_t>(Column::SystemFlag | Column::UpdatableFlag | extraFlags);
    column.Size = static_cast<std::uint16_t>(FixedSize(type));
    if (column.Size != 0) column.Flags |= Column::FixedFlag;
    if (type == ColumnType::Text) column.Size = LongestText;
    if (type == ColumnType::Binary) column.Size = LongestBinary;
    return column;
}

/// An index over columns in the order of their numbers, all ascending.
struct SystemIndex {
    std::u16string_view Name;
    std::vector<std::uint16_t> Columns;
    std::uint8_t Flags;
    LogicalIndexType Type;
};

struct SystemTable {
    std::uint32_t Page;
    std::vector<Column> Columns;       // by number
    std::vector<SystemIndex> Indexes;  // by number
};

constexpr std::uint8_t UniqueFlags = RealIndex::Jet4Flag | RealIndex::UniqueFlag;
constexpr std::uint8_t RequiredFlags = RealIndex::Jet4Flag | RealIndex::RequiredFlag;
constexpr std::uint8_t IgnoreNullsFlags = RealIndex::Jet4Flag | RealIndex::IgnoreNullsFlag;

SystemTable ObjectsTable() {
    using enum ColumnType;
    return {
        ObjectsPage,
        {SystemColumn(u"Id", Long), SystemColumn(u"ParentId", Long), SystemColumn(u"Name", Text),
         SystemColumn(u"Type", Integer), SystemColumn(u"DateCreate", Date), SystemColumn(u"DateUpdate", Date),
         SystemColumn(u"Owner", Binary, Column::SecurityFlag), SystemColumn(u"Flags", Long),
         SystemColumn(u"Database", Memo), SystemColumn(u"Connect", Memo), SystemColumn(u"ForeignName", Text),
         SystemColumn(u"RmtInfoShort", Binary), SystemColumn(u"RmtInfoLong", LongBinary),
         SystemColumn(u"Lv", LongBinary), SystemColumn(u"LvProp", LongBinary),
         SystemColumn(u"LvModule", LongBinary), SystemColumn(u"LvExtra", LongBinary)},
        {{u"ParentIdName", {1, 2}, UniqueFlags, LogicalIndexType::Plain},
         {u"Id", {0}, UniqueFlags, LogicalIndexType::Primary}}};
}

SystemTable AcesTable() {
    using enum ColumnType;
    return {AcesPage,
            {SystemColumn(u"ObjectId", Long), SystemColumn(u"SID", Binary, Column::SecurityFlag),
             SystemColumn(u"ACM", Long), SystemColumn(u"FInheritable", Boolean)},
            {{u"ObjectId", {0}, RequiredFlags, LogicalIndexType::Plain}}};
}

SystemTable QueriesTable() {
    using enum ColumnType;
    return {
        QueriesPage,
        {SystemColumn(u"ObjectId", Long), SystemColumn(u"Attribute", Byte), SystemColumn(u"Order", Binary),
         SystemColumn(u"Name1", Text), SystemColumn(u"Name2", Text), SystemColumn(u"Expression", Memo),
         SystemColumn(u"Flag", Integer), SystemColumn(u"LvExtra", Long)},
        {{u"ObjectIdAttribute", {0, 1, 2}, UniqueFlags, LogicalIndexType::Primary}}};
}

SystemTable RelationshipsTable() {
    using enum ColumnType;
    return {
        RelationshipsPage,
        {SystemColumn(u"szRelationship", Text), SystemColumn(u"grbit", Long), SystemColumn(u"ccolumn", Long),
         SystemColumn(u"icolumn", Long), SystemColumn(u"szObject", Text), SystemColumn(u"szColumn", Text),
         SystemColumn(u"szReferencedObject", Text), SystemColumn(u"szReferencedColumn", Text)},
        {{u"szRelationship", {0}, IgnoreNullsFlags, LogicalIndexType::Plain},
         {u"szObject", {4}, IgnoreNullsFlags, LogicalIndexType::Plain},
         {u"szReferencedObject", {6}, IgnoreNullsFlags, LogicalIndexType::Plain}}};
}

void MakeTable(PageFile& file, SystemTable system, MapRows& maps) {
    TableDef table = LayOutTable(system.Page, TableType::System, std::move(system.Columns));
    PlaceTable(table, maps);
    for (const SystemIndex& index : system.Indexes) {
        RealIndex real;
        real.Flags = index.Flags;
        for (const std::uint16_t number : index.Columns) real.Columns.push_back({number, true});
        PlaceIndex(file, table.Page, real, maps);
        table.RealIndexes.push_back(std::move(real));

        LogicalIndex logical;
        logical.Name = index.Name;
        logical.Number = logical.RealIndexNumber = static_cast<std::uint32_t>(table.LogicalIndexes.size());
        logical.Type = index.Type;
        table.LogicalIndexes.push_back(std::move(logical));
    }
    WriteTableDef(file, table);
}

void AddObjects(Table& objects) {
    const platform::OleDate now = platform::LocalNow();
    const auto add = [&](std::uint32_t id, std::uint32_t parent, std::u16string_view name, ObjectType type,
                         const SecurityId& owner) {
        AddObjectRow(objects, {id, parent, name, type, SystemObjectFlag, BinaryOf(owner), now});
    };
    add(TablesContainerId, RootContainerId, u"Tables", ObjectType::Container, EngineSecurityId);
    add(DatabasesContainerId, RootContainerId, u"Databases", ObjectType::Container, EngineSecurityId);
    add(RelationshipsContainerId, RootContainerId, u"Relationships", ObjectType::Container, EngineSecurityId);
    add(DatabaseObjectId, DatabasesContainerId, u"MSysDb", ObjectType::Database, AdminSecurityId);
    add(ObjectsPage, TablesContainerId, u"MSysObjects", ObjectType::Table, EngineSecurityId);
    add(AcesPage, TablesContainerId, u"MSysACEs", ObjectType::Table, EngineSecurityId);
    add(QueriesPage, TablesContainerId, u"MSysQueries", ObjectType::Table, EngineSecurityId);
    add(RelationshipsPage, TablesContainerId, u"MSysRelationships", ObjectType::Table, EngineSecurityId);
}

struct Permission {
    std::uint32_t ObjectId;
    SecurityId Bearer;
    std::uint32_t Access;
    bool Inheritable;
};

constexpr std::array SystemPermissions{
    Permission{ObjectsPage, AdminSecurityId, 0x00060000, false},
    Permission{AcesPage, AdminSecurityId, 0x00060000, false},
    Permission{QueriesPage, AdminSecurityId, 0x00060000, false},
    Permission{RelationshipsPage, AdminSecurityId, 0x000E0000, false},
    Permission{TablesContainerId, CreatorSecurityId, 0x000F00FE, true},
    Permission{TablesContainerId, AdminSecurityId, 0x00060001, false},
    Permission{RelationshipsContainerId, CreatorSecurityId, 0x000F00FE, true},
    Permission{RelationshipsContainerId, AdminSecurityId, 0x00060001, false},
    Permission{DatabasesContainerId, AdminSecurityId, 0x00060000, false},
    Permission{DatabaseObjectId, AdminSecurityId, 0x0006000E, false},
    Permission{DatabaseObjectId, UsersSecurityId, 0x0000000E, false},
    Permission{QueriesPage, UsersSecurityId, 0x00000014, false},
    Permission{RelationshipsPage, UsersSecurityId, 0x00000014, false},
    Permission{ObjectsPage, UsersSecurityId, 0x00000014, false},
    Permission{TablesContainerId, UsersSecurityId, FullTableAccess, true},
    Permission{RelationshipsContainerId, UsersSecurityId, 0x000FFFFF, true}};

}  // namespace

void CreateSystemTables(PageFile& file) {
    for (const std::uint32_t page : {ObjectsPage, AcesPage, QueriesPage, RelationshipsPage}) {
        if (file.Allocate() != page) throw file.Damaged();
        file.MakeNew(page, PageType::TableDef);
    }
    MapRows maps(file);
    MakeTable(file, ObjectsTable(), maps);
    MakeTable(file, AcesTable(), maps);
    MakeTable(file, QueriesTable(), maps);
    MakeTable(file, RelationshipsTable(), maps);

    Table objects(file, ObjectsPage);
    AddObjects(objects);
    objects.Publish();
    Table aces(file, AcesPage);
    for (const Permission& permission : SystemPermissions) {
        AddPermissionRow(aces, {permission.ObjectId, BinaryOf(permission.Bearer), permission.Access,
                                permission.Inheritable});
    }
    aces.Publish();
}

}  // namespace jet
