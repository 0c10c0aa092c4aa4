// The supersession table has no data file: its rows are made of the keys of its index alone.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "catalogue/interface_state.h"

namespace exporting {

inline constexpr std::u16string_view SupersessionTable = u"SUPERCEDES";

/// Completes `CurrentRecord`, which holds `CurrentKey`. A key marked "Z" stands for a group of three: the two
/// that follow it in keyFile are consumed, and Rec, `CurrentKey` and `KeyBuffer` then stand on the last one.
/// Any other key is followed by compressed blanks. Raises 5 for a marked key that is too short.
void FoldSupersession(catalogue::InterfaceState& state, const std::shared_ptr<engine::cLogicalFile>& keyFile,
                      std::int32_t& Rec);

}  // namespace exporting
