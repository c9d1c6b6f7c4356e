// SPDX-License-Identifier: GPL-3.0-or-later
#include "midifile/Wide.hpp"

#include <limits>

namespace quillo {

Wide operator+(const Wide& first, const Wide& second) {
    const auto low = first.low + second.low;
    const auto carry = std::uint64_t{low < first.low};
    return {first.high + second.high + carry, low};
}

Wide operator-(const Wide& first, const Wide& second) {
    const auto borrow = std::uint64_t{first.low < second.low};
    return {first.high - second.high - borrow, first.low - second.low};
}

/// As on paper, with digits of 32 bits.
Wide product(std::uint64_t first, std::uint64_t second) {
    constexpr auto digit = 32U;
    constexpr auto mask = (std::uint64_t{1} << digit) - 1;
    const auto lowest = (first & mask) * (second & mask);
    const auto middle = (first >> digit) * (second & mask) + (lowest >> digit);
    const auto other = (first & mask) * (second >> digit) + (middle & mask);
    return {(first >> digit) * (second >> digit) + (middle >> digit) + (other >> digit),
            (other << digit) | (lowest & mask)};
}

/// As on paper, with digits of one bit.
std::uint64_t quotient(const Wide& dividend, std::uint64_t divisor) {
    if (dividend.high >= divisor) {
        return std::numeric_limits<std::uint64_t>::max();
    }
    auto rest = dividend.high;
    std::uint64_t result = 0;
    for (auto bit = 64U; bit > 0; --bit) {
        rest = 2 * rest + (dividend.low >> (bit - 1) & 1U);
        const bool fits = rest >= divisor;
        rest -= fits ? divisor : 0;
        result = 2 * result + (fits ? 1 : 0);
    }
    return result;
}

}  // namespace quillo
