// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>

namespace quillo {

/// A whole number: unsigned from 0 on, signed below.
using ExactInteger = std::variant<std::uint64_t, std::int64_t>;

/// The whole number that a JSON number's text stands for, however it is written: `5.0`, `1e1` and `-0.0` are
/// whole numbers, `255.0000000000000001` is not. Nothing when it is not whole, below -2^63, or 2^64 or more.
/// Decided on the digits, so no rounding of a floating-point type can make a number whole or bring it into
/// range.
[[nodiscard]] std::optional<ExactInteger> exactInteger(std::string_view number);

}  // namespace quillo
