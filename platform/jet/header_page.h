// Page 0: the engine's name, the version, and a masked area with the pages of the system tables, locale,
// build and creation date. The mask is the key stream of RC4 under a fixed key of four bytes.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "platform/jet/format.h"

namespace jet {

// Where the system tables' definitions begin; page 0 names them.
inline constexpr std::uint32_t AcesPage = 3;
inline constexpr std::uint32_t QueriesPage = 4;
inline constexpr std::uint32_t RelationshipsPage = 5;

/// The version and with it the layout; nothing for bytes that are not the head of a Jet 3 or Jet 4 database
/// without encryption. head holds at least HeaderHeadLength bytes.
inline constexpr std::size_t HeaderHeadLength = 0x98;
const Layout* RecogniseHeader(std::span<const std::uint8_t> head);

/// Fills an empty page 0 of a new Jet 4 database.
void BuildHeader(std::span<std::uint8_t> page);

// The owners of objects and the bearers of permissions. They are stored under a key that follows from build
// and creation date of page 0 in a way that is not known; these belong to the build and date that BuildHeader
// writes.
using SecurityId = std::array<std::uint8_t, 2>;
inline constexpr SecurityId EngineSecurityId{0x65, 0x89};
inline constexpr SecurityId AdminSecurityId{0x64, 0x8B};
inline constexpr SecurityId UsersSecurityId{0x65, 0x8B};
inline constexpr SecurityId CreatorSecurityId{0x65, 0x8E};

}  // namespace jet
