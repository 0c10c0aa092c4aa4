// Index keys of texts in the General sort order (LCID 1033, version 0), byte for byte those of the engine.
// Two texts are duplicates in an index when their keys are equal, and keys compare as unsigned bytes.
// Letter case and blanks at the end never reach a key; accents, hyphens and apostrophes do.
#pragma once

#include <string>
#include <string_view>

namespace jet {

/// Appends the Jet 4 key part of a text that is not Null, its leading 7F (ascending) or 80 (descending)
/// included. Only the first 255 characters count. Raises 3001 for a character outside code page 1252, whose
/// weight this order does not know; key is unchanged then.
void AppendTextKey4(std::string& key, std::u16string_view text, bool ascending);

/// The same for Jet 3, whose keys are made from bytes of code page 1252: a character outside it counts as
/// the "?" that takes its place in the row.
void AppendTextKey3(std::string& key, std::u16string_view text, bool ascending);

}  // namespace jet
