// The list of a database's objects (MSysObjects) and of the permissions on them (MSysACEs).
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/jet/system_tables.h"
#include "platform/jet/table.h"

namespace jet {

/// A row of MSysObjects.
struct ObjectRow {
    std::uint32_t Id = 0;
    std::uint32_t ParentId = 0;
    std::u16string_view Name;
    ObjectType Type = ObjectType::Table;
    std::uint32_t Flags = 0;
    Binary Owner;
    platform::OleDate Created;
};

/// A row of MSysACEs.
struct PermissionRow {
    std::uint32_t ObjectId = 0;
    Binary Bearer;
    std::uint32_t Access = 0;
    bool Inheritable = false;
};

/// The bytes of an identity as a value.
Binary BinaryOf(const SecurityId& id);
/// Adds a row to the table, which must be the one of that name in the file.
void AddObjectRow(Table& objects, const ObjectRow& row);
void AddPermissionRow(Table& aces, const PermissionRow& row);

class SystemCatalog {
  public:
    /// Raises 3428 for system tables that lack one of their columns.
    explicit SystemCatalog(PageFile& file);

    /// The page of the definition of a local table, system tables included; nothing when there is none.
    std::optional<std::uint32_t> FindTable(std::u16string_view name) const;

    /// The name of the table whose definition begins on page; empty when there is none.
    std::u16string NameOf(std::uint32_t definitionPage) const;

    /// The user's tables in the order of the list.
    std::vector<std::u16string> TableNames() const;

    /// Puts a new table into the list and gives its permissions.
    void AddTable(std::u16string_view name, std::uint32_t definitionPage);

    /// The two tables, by the pages of their definitions. Whoever works on them works on these.
    std::map<std::uint32_t, std::shared_ptr<Table>> Tables() const;

  private:
    template <typename Visit>
    void ForEachTable(Visit visit) const;
    Binary OwnerOfDatabase() const;
    Binary BearerOfAllUsers() const;

    std::shared_ptr<Table> mObjectsTable;
    std::shared_ptr<Table> mAcesTable;
    Table& mObjects;
    Table& mAces;
};

}  // namespace jet
