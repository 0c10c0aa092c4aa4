#include "platform/window_services.h"

#include "platform/numbers.h"

namespace platform {

std::string ProgressText(std::int32_t count, std::int32_t total) {
    return "Processing: " + LeadingBlankDecimal(count) + " of " + LeadingBlankDecimal(total);
}

}  // namespace platform
