// The switch of the builder's relation step. A header of its own, so that a test program can put a header of
// the same name, with the step switched on, before this one.
#pragma once

namespace catalogue {

/// Whether the target database gets the relations of `LogicalRelations`, enforced when
/// `EnforceReferentialIntegrity` says so.
inline constexpr bool CreateRelations = false;

}  // namespace catalogue
