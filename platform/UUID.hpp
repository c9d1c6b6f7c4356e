// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <string>

namespace quillo {

/// A universally unique identifier. Each one that is made differs from all others.
class UUID {
public:
    /// A fresh random identifier (version 4), of one request to the system's own generator: the processor's,
    /// which is slow on many machines, is not asked. A fatal error where there is no generator.
    UUID();

    /// As text: 8-4-4-4-12 upper-case hexadecimal digits.
    [[nodiscard]] std::string text() const;

    /// An arbitrary order that stays. Named, and not deduced: older libraries cannot compare arrays in one
    /// step.
    std::strong_ordering operator<=>(const UUID&) const = default;

private:
    std::array<std::uint8_t, 16> bytes_{};
};

}  // namespace quillo
