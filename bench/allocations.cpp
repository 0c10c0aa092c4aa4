#include "bench/allocations.h"

#include <cstdlib>
#include <new>

namespace {

std::int64_t count = 0;  // the benchmarks have one thread

}  // namespace

namespace bench {

std::int64_t Allocations() {
    return count;
}

}  // namespace bench

void* operator new(std::size_t size) {
    ++count;
    if (void* const memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
