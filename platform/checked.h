// 32-bit signed arithmetic with overflow detection: every result that leaves 32 bits raises 6 "Overflow".
#pragma once

#include <cstdint>
#include <limits>

#include "platform/error.h"

namespace platform {

namespace detail {

/// value as 32 bits. Raises 6.
constexpr std::int32_t Narrow(std::int64_t value) {
    if (value < std::numeric_limits<std::int32_t>::min() ||
        value > std::numeric_limits<std::int32_t>::max()) {
        throw Error(Overflow);
    }
    return static_cast<std::int32_t>(value);
}

}  // namespace detail

/// a + b. Raises 6.
constexpr std::int32_t CheckedAdd(std::int32_t a, std::int32_t b) {
    return detail::Narrow(std::int64_t{a} + b);
}

/// a - b. Raises 6.
constexpr std::int32_t CheckedSubtract(std::int32_t a, std::int32_t b) {
    return detail::Narrow(std::int64_t{a} - b);
}

/// a * b. Raises 6.
constexpr std::int32_t CheckedMultiply(std::int32_t a, std::int32_t b) {
    return detail::Narrow(std::int64_t{a} * b);
}

/// -a. Raises 6 for the lowest number.
constexpr std::int32_t CheckedNegate(std::int32_t a) {
    return detail::Narrow(-std::int64_t{a});
}

}  // namespace platform
