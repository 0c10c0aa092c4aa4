// How often this program has asked for memory: a program that links allocations.cpp has its own operator new,
// which counts.
#pragma once

#include <cstdint>

namespace bench {

/// The requests since the program began.
std::int64_t Allocations();

}  // namespace bench
