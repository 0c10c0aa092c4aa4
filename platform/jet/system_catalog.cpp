#include "platform/jet/system_catalog.h"

#include <bit>

#include "platform/code_page.h"

namespace jet {

namespace {

// MSysObjects.Id of a table: the page of its definition, and possibly bits above it.
constexpr std::uint32_t DefinitionPageMask = 0x00FFFFFF;

Value LongOf(std::uint32_t value) {
    return std::bit_cast<std::int32_t>(value);
}

std::size_t Position(const Table& table, std::u16string_view column) {
    const auto position = table.Definition().FindColumn(column);
    if (!position) throw DataError(DamagedDatabase);
    return *position;
}

/// The value of a Long or Integer column; 0 for Null.
std::uint32_t NumberAt(const Table& table, RowPointer row, std::u16string_view column) {
    const Value value = table.ReadColumn(row, Position(table, column));
    const auto* number = std::get_if<std::int32_t>(&value);
    return number == nullptr ? 0 : std::bit_cast<std::uint32_t>(*number);
}

template <typename T>
T ValueAt(const Table& table, RowPointer row, std::u16string_view column) {
    const Value value = table.ReadColumn(row, Position(table, column));
    const T* held = std::get_if<T>(&value);
    return held == nullptr ? T{} : *held;
}

}  // namespace

Binary BinaryOf(const SecurityId& id) {
    return {std::string(id.begin(), id.end())};
}

void AddObjectRow(Table& objects, const ObjectRow& row) {
    std::vector<Value> values(objects.Definition().Columns.size());
    const auto set = [&](std::u16string_view column, Value value) {
        values[Position(objects, column)] = std::move(value);
    };
    set(u"Id", LongOf(row.Id));
    set(u"ParentId", LongOf(row.ParentId));
    set(u"Name", std::u16string(row.Name));
    set(u"Type", static_cast<std::int32_t>(row.Type));
    set(u"DateCreate", row.Created);
    set(u"DateUpdate", row.Created);
    set(u"Owner", row.Owner);
    set(u"Flags", LongOf(row.Flags));
    objects.Insert(values);
}

void AddPermissionRow(Table& aces, const PermissionRow& row) {
    std::vector<Value> values(aces.Definition().Columns.size());
    values[Position(aces, u"ObjectId")] = LongOf(row.ObjectId);
    values[Position(aces, u"SID")] = row.Bearer;
    values[Position(aces, u"ACM")] = LongOf(row.Access);
    values[Position(aces, u"FInheritable")] = row.Inheritable;
    aces.Insert(values);
}

SystemCatalog::SystemCatalog(PageFile& file)
    : mObjectsTable(std::make_shared<Table>(file, ObjectsPage)),
      mAcesTable(std::make_shared<Table>(file, AcesPage)),
      mObjects(*mObjectsTable),
      mAces(*mAcesTable) {
    for (const std::u16string_view column : {u"Id", u"ParentId", u"Name", u"Type", u"Flags"}) {
        Position(mObjects, column);
    }
}

/// Calls visit(row, name) for every local table until it returns true.
template <typename Visit>
void SystemCatalog::ForEachTable(Visit visit) const {
    for (auto row = mObjects.FirstRow(); row; row = mObjects.NextRow(*row)) {
        const bool isTable =
            NumberAt(mObjects, *row, u"Type") == static_cast<std::uint32_t>(ObjectType::Table) &&
            NumberAt(mObjects, *row, u"ParentId") == TablesContainerId;
        if (isTable && visit(*row, ValueAt<std::u16string>(mObjects, *row, u"Name"))) return;
    }
}

std::optional<std::uint32_t> SystemCatalog::FindTable(std::u16string_view name) const {
    std::optional<std::uint32_t> page;
    ForEachTable([&](RowPointer row, const std::u16string& tableName) {
        if (!platform::EqualFolded(tableName, name)) return false;
        page = NumberAt(mObjects, row, u"Id") & DefinitionPageMask;
        return true;
    });
    return page;
}

std::u16string SystemCatalog::NameOf(std::uint32_t definitionPage) const {
    std::u16string found;
    ForEachTable([&](RowPointer row, const std::u16string& name) {
        if ((NumberAt(mObjects, row, u"Id") & DefinitionPageMask) != definitionPage) return false;
        found = name;
        return true;
    });
    return found;
}

std::vector<std::u16string> SystemCatalog::TableNames() const {
    std::vector<std::u16string> names;
    ForEachTable([&](RowPointer row, const std::u16string& name) {
        if ((NumberAt(mObjects, row, u"Flags") & HiddenObjectFlags) == 0) names.push_back(name);
        return false;
    });
    return names;
}

void SystemCatalog::AddTable(std::u16string_view name, std::uint32_t definitionPage) {
    const Binary owner = OwnerOfDatabase();
    AddObjectRow(mObjects, {definitionPage, TablesContainerId, name, ObjectType::Table, 0, owner,
                            platform::LocalNow()});
    AddPermissionRow(mAces, {definitionPage, owner, FullTableAccess, false});
    AddPermissionRow(mAces, {definitionPage, BearerOfAllUsers(), FullTableAccess, false});
}

/// How ids are stored differs from file to file, so a new object takes them from the objects that there are.
Binary SystemCatalog::OwnerOfDatabase() const {
    for (auto row = mObjects.FirstRow(); row; row = mObjects.NextRow(*row)) {
        if (NumberAt(mObjects, *row, u"Id") == DatabaseObjectId)
            return ValueAt<Binary>(mObjects, *row, u"Owner");
    }
    throw DataError(DamagedDatabase);
}

/// Everybody inherits full access to new tables from their container.
Binary SystemCatalog::BearerOfAllUsers() const {
    for (auto row = mAces.FirstRow(); row; row = mAces.NextRow(*row)) {
        const bool inherited = NumberAt(mAces, *row, u"ObjectId") == TablesContainerId &&
                               NumberAt(mAces, *row, u"ACM") == FullTableAccess &&
                               ValueAt<bool>(mAces, *row, u"FInheritable");
        if (inherited) return ValueAt<Binary>(mAces, *row, u"SID");
    }
    return OwnerOfDatabase();
}

std::map<std::uint32_t, std::shared_ptr<Table>> SystemCatalog::Tables() const {
    return {{ObjectsPage, mObjectsTable}, {AcesPage, mAcesTable}};
}

}  // namespace jet
