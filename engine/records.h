// Record operations on a logical file of type "L", by record number, and the locks that grant nothing.
//
// Record r lies at byte offset Position * 512 + r * RecordLength of the container. Records 1 to LastRecord
// hold data; record 0 is the header, whose first 16 bytes are
//   bytes  1-2   (J) without a meaning here
//   bytes  3-6   (L) first record of the chain of deleted ones; below 1 when there is none
//   bytes  7-10  (L) high-water mark: the highest record number ever handed out
//   bytes 11-14  (L) number of active records
//   bytes 15-16  not used
// A data record is active when its bytes 1-2 (J) are greater than 0. A deleted one is all NULs save bytes 3-6
// (L), the next record of the chain.
//
// Offsets are 32-bit numbers: beyond that every operation raises 6. Whatever iReadFile and iWriteFile raise
// propagates, 91 among them when the container is missing.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "engine/logical_file.h"
#include "platform/byte_string.h"

namespace engine {

inline constexpr std::int32_t RecordHeaderLength = 16;
inline constexpr std::int32_t HeaderStatePosition = 1;
inline constexpr std::int32_t ChainHeadPosition = 3;
inline constexpr std::int32_t HighWaterPosition = 7;
inline constexpr std::int32_t ActiveCountPosition = 11;
inline constexpr std::int32_t RecordStatePosition = 1;
inline constexpr std::int32_t NextDeletedPosition = 3;

using LogicalFileHandle = std::shared_ptr<cLogicalFile>;

/// Byte offset of a record, or of a block of a keyed file.
std::int32_t RecordOffset(const cLogicalFile& LogicalFile, std::int32_t RecordNumber);

/// The first 16 bytes of record zero.
ByteString ReadRecordZero(const cLogicalFile& LogicalFile);

/// The RecordLength bytes of a record. Raises -10 "iLreadFile" for an empty handle, 81 "iLreadFile" for a
/// record number outside 1 to LastRecord.
ByteString iLreadFile(const LogicalFileHandle& LogicalFile, std::int32_t RecordNumber);

/// Writes a record. Raises -10 "iLwriteFile" for an empty handle, 81 "iLwriteFile" for a record number
/// outside 1 to LastRecord (its text shows LastRecord), 36 "iLwriteFile" when Data is not RecordLength bytes
/// long.
void iLwriteFile(const LogicalFileHandle& LogicalFile, std::int32_t RecordNumber, std::string_view Data);

/// Obtains a free record number under a lock on record zero. No lock is ever granted, so it raises 57
/// "iGetRec".
void iGetRec(const LogicalFileHandle& LogicalFile, std::int32_t& RecordNumber);

/// What iGetRec does once it holds its lock: takes the head of the deleted chain, else the number above the
/// high-water mark (which is not compared with LastRecord), and counts one active record more.
std::int32_t TakeFreeRecord(const LogicalFileHandle& LogicalFile);

/// Puts an active record at the head of the deleted chain; the count of active records goes down by one,
/// never below 0. Raises 81 "DelRec" for a deleted record, and the errors of iLreadFile.
void DelRec(const LogicalFileHandle& LogicalFile, std::int32_t RecordNumber);

/// Empties a file. A keyed file becomes an index header and one leaf of the terminator entry, in the two
/// blocks of 512 bytes from Position on; a plain file gets an empty header and NULs in every record. Other
/// types stay as they are. Raises -10 "iLwriteFile" for an empty handle, 11 for the KeyLength -4.
void InitFile(const LogicalFileHandle& LogicalFile, std::int32_t KeyLength, bool DuplicateKeys,
              std::int32_t BlockingFactor);

/// Locks nothing and returns 0: no lock is ever granted.
std::int32_t PhysicalLock(std::string_view FileName, std::int32_t Position, std::int32_t LockLength);

/// PhysicalLock of the bytes of a record. Raises 91 for an empty handle or a missing container.
std::int32_t LogicalLock(const LogicalFileHandle& LogicalFile, std::int32_t RecordNumber);

/// Does nothing and returns 0.
std::int32_t ReleaseLock(std::int32_t LockNumber);

}  // namespace engine
