// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include <nlohmann/json_fwd.hpp>

namespace quillo {

/// A JSON value. A number is a whole one exactly when its text is (see `exactInteger`), else a double.
using JSON = nlohmann::json;

/// The deepest nesting of arrays and objects that is read, in levels. No document of ours has more than ten.
inline constexpr std::size_t maximumNesting = 512;

/// Parses one JSON value from UTF-8, with or without a byte-order mark; of equal keys the last one holds.
/// Throws a `DecodingError` for anything else; where the text is not JSON it names line and column, in bytes
/// from 1, or the column alone in a text of one line.
[[nodiscard]] JSON parseJSON(std::span<const std::uint8_t> bytes);

}  // namespace quillo
