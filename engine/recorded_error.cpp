#include "engine/recorded_error.h"

#include <utility>

namespace engine {

namespace {

std::optional<platform::Error> lastError;

}  // namespace

void RecordError(platform::Error error) {
    lastError.emplace(std::move(error));
}

void ForgetRecordedError() {
    lastError.reset();
}

const std::optional<platform::Error>& LastRecordedError() {
    return lastError;
}

}  // namespace engine
