// The last error of the routines that suppress their errors: the caller sees an empty result, and the error
// that led to it stays available here.
#pragma once

#include <optional>

#include "platform/error.h"

namespace engine {

/// Replaces the recorded error.
void RecordError(platform::Error error);

/// From now on there is no recorded error.
void ForgetRecordedError();

/// The error recorded last, if any was since the program started or the last one was forgotten.
const std::optional<platform::Error>& LastRecordedError();

}  // namespace engine
