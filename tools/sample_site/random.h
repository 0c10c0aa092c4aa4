// Pseudo-random numbers with distributions of their own, so that a seed gives the same site on every system.
#pragma once

#include <cstdint>
#include <random>
#include <span>
#include <string_view>

namespace sample {

/// Scatters the bits of a number: near numbers give results that have nothing in common.
constexpr std::uint64_t Scatter(std::uint64_t number) {
    number += 0x9E3779B97F4A7C15U;
    number = (number ^ (number >> 30U)) * 0xBF58476D1CE4E5B9U;
    number = (number ^ (number >> 27U)) * 0x94D049BB133111EBU;
    return number ^ (number >> 31U);
}

class Random {
  public:
    explicit Random(std::uint64_t seed) : mEngine(seed) {}

    /// A stream of its own for a purpose that has a name.
    Random(std::uint64_t seed, std::string_view purpose) : mEngine(Mixed(seed, purpose)) {}

    /// 0 to limit - 1; limit is positive.
    std::int64_t Below(std::int64_t limit) {
        return static_cast<std::int64_t>(mEngine() % static_cast<std::uint64_t>(limit));
    }

    /// lowest to highest, both included.
    std::int64_t Between(std::int64_t lowest, std::int64_t highest) {
        return lowest + Below(highest - lowest + 1);
    }

    bool OneIn(std::int64_t chances) { return Below(chances) == 0; }

    template <typename Item>
    const Item& Pick(std::span<const Item> items) {
        return items[static_cast<std::size_t>(Below(static_cast<std::int64_t>(items.size())))];
    }

  private:
    static std::uint64_t Mixed(std::uint64_t seed, std::string_view purpose) {
        std::uint64_t mixed = Scatter(seed);
        for (const char c : purpose) mixed = Scatter(mixed ^ static_cast<std::uint8_t>(c));
        return mixed;
    }

    std::mt19937_64 mEngine;
};

}  // namespace sample
