// Stands before the builder's own header: the relation step is switched on.
#pragma once

namespace catalogue {

inline constexpr bool CreateRelations = true;

}  // namespace catalogue
