// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <variant>

#include <nlohmann/json_fwd.hpp>

namespace quillo {

/// A whole number: unsigned from 0 on, signed below.
using ExactInteger = std::variant<std::uint64_t, std::int64_t>;

/// The whole number that a JSON number's text stands for, however it is written: `5.0`, `1e1` and `-0.0` are
/// whole numbers, `255.0000000000000001` is not. Nothing when it is not whole, below -2^63, or 2^64 or more.
/// Decided on the digits, so no rounding of a floating-point type can make a number whole or bring it into
/// range.
[[nodiscard]] std::optional<ExactInteger> exactInteger(std::string_view number);

/// A JSON value. A number is a whole one exactly when its text is (see `exactInteger`), else a double.
using JSON = nlohmann::json;

/// The deepest nesting of arrays and objects that is read, in levels. Our documents have at most ten.
inline constexpr std::size_t maximumNesting = 512;

/// Parses one JSON value from UTF-8, with or without a byte-order mark; of equal keys the last one holds.
/// Throws a `DecodingError` for anything else; where the text is not JSON it names line and column, in bytes
/// from 1, or the column alone in a text of one line.
[[nodiscard]] JSON parseJSON(std::span<const std::uint8_t> bytes);

}  // namespace quillo
