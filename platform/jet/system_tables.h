// The four system tables of a new Jet 4 database, with their rows: what an empty file made by the engine
// holds.
#pragma once

#include <cstdint>

#include "platform/jet/header_page.h"
#include "platform/jet/page_file.h"

namespace jet {

// Objects that every database has. Tables lie in the first container.
inline constexpr std::uint32_t RootContainerId = 0x0F000000;
inline constexpr std::uint32_t TablesContainerId = 0x0F000001;
inline constexpr std::uint32_t DatabasesContainerId = 0x0F000002;
inline constexpr std::uint32_t RelationshipsContainerId = 0x0F000003;
inline constexpr std::uint32_t DatabaseObjectId = 0x10000000;  // MSysDb: its owner is the database's owner

/// Values of MSysObjects.Type.
enum class ObjectType : std::int32_t { Table = 1, Database = 2, Container = 3 };

/// MSysObjects.Flags of objects that users do not see: any of these bits.
inline constexpr std::uint32_t SystemObjectFlag = 0x80000000;
inline constexpr std::uint32_t HiddenObjectFlags = SystemObjectFlag | 0x00000002;

/// Permissions that a new table gives its owner and all users.
inline constexpr std::uint32_t FullTableAccess = 0x000FFEFF;

/// Makes the system tables in a file that holds header and global map only.
void CreateSystemTables(PageFile& file);

}  // namespace jet
