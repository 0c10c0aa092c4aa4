// What a keyed index holds, level by level.
#pragma once

#include <memory>
#include <ostream>

#include "engine/logical_file.h"

namespace site_dump {

/// Writes the header's words, then for every level from the root down its blocks and entries, and what is
/// wrong with them: children beyond the last block, blocks met twice, leaves among interior blocks, keys that
/// do not ascend. Raises the errors of reading.
void DumpIndex(const std::shared_ptr<engine::cLogicalFile>& file, std::ostream& out);

}  // namespace site_dump
