// What the fuzz programs share. libFuzzer knows no file that is in order, so a sound input for mutations to
// start from is made now and then.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/error.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t room);

namespace test {

/// The work of LLVMFuzzerCustomMutator: mutates data, or what makeSound gives for the seed when data is
/// shorter than least bytes and once in 16 times.
template <typename MakeSound>
std::size_t MutateOrMake(std::uint8_t* data, std::size_t size, std::size_t room, unsigned seed,
                         std::size_t least, MakeSound makeSound) {
    constexpr unsigned SoundOneIn = 16;
    if (size < least || seed % SoundOneIn == 0) {
        const std::string input = makeSound(seed);
        size = std::min(input.size(), room);
        std::copy_n(input.begin(), size, data);
    }
    return LLVMFuzzerMutate(data, size, room);
}

/// Whether action came to its end. That it raises a platform::Error is what bad input may lead to; anything
/// else is a finding.
template <typename Action>
bool Try(Action action) {
    try {
        action();
        return true;
    } catch (const platform::Error&) {
        return false;
    }
}

}  // namespace test
