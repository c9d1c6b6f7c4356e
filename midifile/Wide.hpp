// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <compare>
#include <cstdint>

namespace quillo {

/// A whole number from 0 to 2^128 - 1. Compilers have one of their own for 64-bit processors alone.
struct Wide {
    std::uint64_t high = 0;
    std::uint64_t low = 0;

    auto operator<=>(const Wide&) const = default;
};

/// The sum is below 2^128.
[[nodiscard]] Wide operator+(const Wide& first, const Wide& second);

/// `second` is not the greater one.
[[nodiscard]] Wide operator-(const Wide& first, const Wide& second);

[[nodiscard]] Wide product(std::uint64_t first, std::uint64_t second);

/// Rounded down; 2^64 - 1 where it would be greater. `divisor` from 1 to 2^63.
[[nodiscard]] std::uint64_t quotient(const Wide& dividend, std::uint64_t divisor);

}  // namespace quillo
