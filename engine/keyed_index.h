// Searching a keyed index (its layout: index_layout.h). The place in the index lives in the caller's work
// buffer Buff alone; no block is kept between calls, so a program may hold any number of places in one index.
//
// A walk that comes back to a block it has visited, as only a damaged index makes it, ends with error 81
// (source: the operation) "Index blocks run in a circle. ..."; otherwise it would never end.
#pragma once

#include <cstdint>
#include <memory>

#include "engine/logical_file.h"
#include "platform/byte_string.h"
#include "platform/window_services.h"

namespace engine {

/// Places Buff on the first entry whose key is not below Key. Key is cut, or padded with zero bytes, to the
/// index's key length. Rec is the entry's record number for an equal key; minus that number for a greater
/// key, which Key then holds; 0 when the terminator was reached or the leaves ended. Buff is lengthened to
/// RecordLength + 32 bytes.
/// A block number above LastRecord on the way down is told in a message box and gives Rec 0; Buff then holds
/// the header. Raises 91 for an empty handle, 5 for a header whose entry length leaves no room for a key, 81
/// for a circle, and what iReadFile and the codec raise.
void KFind(const std::shared_ptr<cLogicalFile>& LogicalFile, ByteString& Buff, ByteString& Key,
           std::int32_t& Rec, platform::WindowServices& Window);

/// Entry length - 4 of the 512 bytes at byte offset Position: the property itself, not multiplied by 512, and
/// without regard to duplicate keys, as it has always been. Raises as KFind.
std::int32_t KLength(const std::shared_ptr<cLogicalFile>& LogicalFile);

}  // namespace engine
