// Moving on from a place in a keyed index, and counting its entries. KNext and KPrev need a work buffer left
// by KFind, KNext, KPrev or KLast on the same file; KLast and KCount start from scratch. The end of the index
// is no error: Rec is 0. All raise 91 for an empty handle and what iReadFile and the codec raise.
#pragma once

#include <cstdint>
#include <memory>

#include "engine/logical_file.h"
#include "platform/byte_string.h"
#include "platform/window_services.h"

namespace engine {

/// Steps to the following entry: its key into Key, its record number into Rec. On the last entry of the last
/// leaf Rec becomes 0 and Key and Buff stay; stepping onto the terminator gives Rec 0 and a key of 255s.
/// Reads one block at most.
void KNext(const std::shared_ptr<cLogicalFile>& LogicalFile, ByteString& Buff, ByteString& Key,
           std::int32_t& Rec);

/// Steps to the preceding entry; 512-byte format only. On the first entry Rec becomes 0 and Buff stays as it
/// was, while Key may hold a scratch image of an entry. Raises 5 when the path in Buff does not fit the
/// blocks.
void KPrev(const std::shared_ptr<cLogicalFile>& LogicalFile, ByteString& Buff, ByteString& Key,
           std::int32_t& Rec);

/// Steps to the entry before the terminator; 512-byte format only. Buff is lengthened to 544 bytes. Raises 81
/// "KLast" for blocks that run in a circle.
void KLast(const std::shared_ptr<cLogicalFile>& LogicalFile, ByteString& Buff, ByteString& Key,
           std::int32_t& Rec);

/// The number of entries, duplicates included and the terminator not, by a walk along all leaves. The status
/// text says so meanwhile and stays when an error ends the walk. Raises 81 "KCount" for leaves that run in a
/// circle.
std::int32_t KCount(const std::shared_ptr<cLogicalFile>& LogicalFile, platform::WindowServices& Window);

}  // namespace engine
